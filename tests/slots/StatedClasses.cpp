#include "tests/slots/StatedClasses.h"

namespace SlotsTest {

namespace {

Slots withDestructor(Slots operations) {
  operations.insert(operations.begin(), {destructor, destructor});
  return operations;
}

// The framework's classes.
std::vector<StatedClass> frameworkClasses() {
  return {
      {"Pelago::Object", withDestructor({"Pelago::Object::event", "Pelago::Object::destroy"})},
      {"Pelago::Event", withDestructor({"Pelago::Event::destroy"})},
      {"Pelago::Timer", withDestructor({"Pelago::Timer::timeout"})},
      {"Pelago::DiscoveryClient",
       withDestructor(
           {"Pelago::Object::event", "Pelago::Object::destroy",
            "Pelago::DiscoveryClient::deviceAppeared", "Pelago::DiscoveryClient::deviceDisappeared",
            "Pelago::DiscoveryClient::deviceUpdated", "Pelago::DiscoveryClient::hostAppeared",
            "Pelago::DiscoveryClient::hostDisappeared", "Pelago::DiscoveryClient::hostUpdated"})},
      {"Pelago::Clock", withDestructor({"pure Pelago::Clock::now", "pure Pelago::Clock::waitUntil",
                                        "pure Pelago::Clock::interrupt"})},
      {"Pelago::SteadyClock",
       withDestructor({"Pelago::SteadyClock::now", "Pelago::SteadyClock::waitUntil",
                       "Pelago::SteadyClock::interrupt"})},
      {"Pelago::VirtualClock",
       withDestructor({"Pelago::VirtualClock::now", "Pelago::VirtualClock::waitUntil",
                       "Pelago::VirtualClock::interrupt"})},
      {"Pelago::PacedClock",
       withDestructor({"Pelago::VirtualClock::now", "Pelago::PacedClock::waitUntil",
                       "Pelago::PacedClock::interrupt"})},
  };
}

std::vector<StatedClass> monitorClasses() {
  return {
      {"RAIDMonitoring::RAIDMonitor",
       withDestructor({"RAIDMonitoring::RAIDMonitor::startMonitoring",
                       "RAIDMonitoring::RAIDMonitor::stopMonitoring",
                       "RAIDMonitoring::RAIDMonitor::deviceAppeared",
                       "RAIDMonitoring::RAIDMonitor::deviceDisappeared",
                       "pure RAIDMonitoring::RAIDMonitor::RAIDHostFromDevice"})},
      {"RAIDMonitoring::RAIDMonitorMac",
       withDestructor({"RAIDMonitoring::RAIDMonitorMac::startMonitoring",
                       "RAIDMonitoring::RAIDMonitorMac::stopMonitoring",
                       "RAIDMonitoring::RAIDMonitor::deviceAppeared",
                       "RAIDMonitoring::RAIDMonitor::deviceDisappeared",
                       "RAIDMonitoring::RAIDMonitorMac::RAIDHostFromDevice"})},
      {"RAIDMonitoring::RAIDMonitor::DeviceDiscovery",
       withDestructor({"Pelago::Object::event", "Pelago::Object::destroy",
                       "RAIDMonitoring::RAIDMonitor::DeviceDiscovery::deviceAppeared",
                       "RAIDMonitoring::RAIDMonitor::DeviceDiscovery::deviceDisappeared",
                       "RAIDMonitoring::RAIDMonitor::DeviceDiscovery::deviceUpdated",
                       "RAIDMonitoring::RAIDMonitor::DeviceDiscovery::hostAppeared",
                       "RAIDMonitoring::RAIDMonitor::DeviceDiscovery::hostDisappeared",
                       "RAIDMonitoring::RAIDMonitor::DeviceDiscovery::hostUpdated"})},
      {"RAIDMonitoring::RAIDMonitor::UpdateTimer",
       withDestructor({"RAIDMonitoring::RAIDMonitor::UpdateTimer::timeout"})},
      {"RAIDMonitoring::RAIDMonitorClient",
       withDestructor({"RAIDMonitoring::RAIDMonitorClient::identifier",
                       "pure RAIDMonitoring::RAIDMonitorClient::RAIDAppeared",
                       "pure RAIDMonitoring::RAIDMonitorClient::RAIDDisappeared",
                       "pure RAIDMonitoring::RAIDMonitorClient::RAIDUpdated"})},
      // The probe's own: shows the order of the three callbacks where pure slots have no names.
      {"Probe::Client",
       withDestructor({"RAIDMonitoring::RAIDMonitorClient::identifier",
                       "Probe::Client::RAIDAppeared", "Probe::Client::RAIDDisappeared",
                       "Probe::Client::RAIDUpdated"})},
  };
}

std::vector<StatedClass> modelClasses() {
  return {
      {"RAIDMonitoring::RAIDHost",
       withDestructor({"Pelago::Object::event", "Pelago::Object::destroy",
                       "RAIDMonitoring::RAIDHost::locationOfMember",
                       "RAIDMonitoring::RAIDHost::locationOfNotMember",
                       "pure RAIDMonitoring::RAIDHost::matchesDevice",
                       "pure RAIDMonitoring::RAIDHost::refresh",
                       "RAIDMonitoring::RAIDHost::addRAIDVolume",
                       "RAIDMonitoring::RAIDHost::removeRAIDVolume"})},
      {"RAIDMonitoring::ThunderboltDevice",
       withDestructor({"RAIDMonitoring::ThunderboltDevice::event", "Pelago::Object::destroy",
                       "RAIDMonitoring::ThunderboltDevice::locationOfMember",
                       "RAIDMonitoring::ThunderboltDevice::locationOfNotMember",
                       "RAIDMonitoring::ThunderboltDevice::matchesDevice",
                       "RAIDMonitoring::ThunderboltDevice::refresh",
                       "RAIDMonitoring::RAIDHost::addRAIDVolume",
                       "RAIDMonitoring::RAIDHost::removeRAIDVolume"})},
      {"RAIDMonitoring::RAIDVolume",
       withDestructor({"Pelago::Object::event", "Pelago::Object::destroy"})},
      {"RAIDMonitoring::RAIDMember",
       withDestructor({"Pelago::Object::event", "Pelago::Object::destroy",
                       "RAIDMonitoring::RAIDMember::refresh"})},
      {"RAIDMonitoring::AppleRAIDMember",
       withDestructor({"Pelago::Object::event", "Pelago::Object::destroy",
                       "RAIDMonitoring::AppleRAIDMember::refresh"})},
      {"RAIDMonitoring::PollingEvent", withDestructor({"Pelago::Event::destroy"})},
  };
}

}  // namespace

const std::vector<StatedClass>& statedClasses() {
  static const std::vector<StatedClass> all = [] {
    std::vector<StatedClass> classes = frameworkClasses();
    for (const auto& more : {monitorClasses(), modelClasses()})
      classes.insert(classes.end(), more.begin(), more.end());
    return classes;
  }();
  return all;
}

const std::vector<StatedFields>& statedFields() {
  static const std::vector<StatedFields> all = {
      {"RAIDMonitor", {"updateTimer", "discovery", "clients", "monitoring", "volumes", "hosts"}},
      {"RAIDMonitorMac", {}},
      {"RAIDMonitor::DeviceDiscovery", {"monitor"}},
      {"RAIDMonitor::UpdateTimer", {"monitor"}},
      {"RAIDMonitorClient", {}},
      {"RAIDHost",
       {"modelName", "modelID", "vendorName", "vendorID", "deviceStatus", "bayCount", "volumes"}},
      {"ThunderboltDevice", {"uid", "pciBridgePath"}},
      {"RAIDVolume", {"uuid", "name", "level", "state", "host", "membersByUUID"}},
      {"RAIDMember", {"uuid", "state", "volume"}},
      {"AppleRAIDMember", {"registryPath"}},
      {"PollingEvent", {"entry"}},
  };
  return all;
}

}  // namespace SlotsTest
