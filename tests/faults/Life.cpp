#include "tests/faults/Life.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <new>
#include <unordered_set>

#include "model/RAIDHost.h"
#include "model/RAIDMember.h"
#include "platform/pelago/Logger.h"
#include "tests/support/FailingMemory.h"

namespace FaultTest {

using TestSupport::PlentyOfMemory;

using Pelago::Logger;
using RAIDMonitoring::RAIDHost;
using RAIDMonitoring::RAIDMember;
using RAIDMonitoring::RAIDMonitor;
using RAIDMonitoring::RAIDVolume;

namespace {

std::set<std::string>& texts() {
  static std::set<std::string> texts;
  return texts;
}

void noteLine(Logger::Level level, const std::string& category, const std::string& text) {
  const PlentyOfMemory plenty;
  SeamTrace::log(text);
  static std::unordered_set<std::string> noted;
  if (!noted.insert(nameOf(level) + text).second) return;
  // Quoted is what differs.
  const std::string common = text.substr(0, text.find(" '"));
  texts().insert(std::string(nameOf(level)) + " [" + category + "] " + common);
}

VolumeView viewOf(const RAIDVolume& volume) {
  VolumeView view{volume.name(), volume.level(), volume.state(), {}};
  for (const RAIDMember* member : volume.members())
    view.members[member->uuid()] = member->state();
  return view;
}

HostView viewOf(const RAIDHost& host) {
  HostView view;
  view.status = host.deviceStatus();
  view.identity = host.vendorName() + "/" + std::to_string(host.vendorID()) + "/" +
                  host.modelName() + "/" + std::to_string(host.modelID());
  view.bridge = host.pciBridgePath();
  for (const RAIDVolume* volume : host.raidVolumes())
    view.volumes[volume->uuid()] = viewOf(*volume);
  return view;
}

}  // namespace

// Linked in place of RAIDHost::addRAIDVolume (see CMakeLists.txt). What a host has on file when it
// ends is never given back, on purpose: the client sees to its end, whether it was told or not.
void realAddRAIDVolume(RAIDHost* host, RAIDVolume* volume) __asm__(
    "__real__ZN14RAIDMonitoring8RAIDHost13addRAIDVolumeEPNS_10RAIDVolumeE");
void wrapAddRAIDVolume(RAIDHost* host, RAIDVolume* volume) __asm__(
    "__wrap__ZN14RAIDMonitoring8RAIDHost13addRAIDVolumeEPNS_10RAIDVolumeE");

void wrapAddRAIDVolume(RAIDHost* host, RAIDVolume* volume) {
  realAddRAIDVolume(host, volume);
  if (AddingClient* client = AddingClient::keeping()) client->keep(volume);
}

bool operator==(const VolumeView& a, const VolumeView& b) {
  return a.name == b.name && a.level == b.level && a.state == b.state && a.members == b.members;
}

bool operator==(const HostView& a, const HostView& b) {
  return a.status == b.status && a.identity == b.identity && a.bridge == b.bridge &&
         a.volumes == b.volumes;
}

bool operator==(const View& a, const View& b) {
  return a.hosts == b.hosts && a.present == b.present && a.announced == b.announced;
}

AddingClient* AddingClient::_keeping = nullptr;

AddingClient::AddingClient(bool isKeeping) {
  if (isKeeping) _keeping = this;
}

AddingClient::~AddingClient() {
  if (_keeping == this) _keeping = nullptr;
}

// A volume that was destroyed has no references left: the place where it was tells so.
void AddingClient::hear(bool holds, const char* complaint, RAIDVolume* volume) {
  if (volume->references() < 1) {
    _complaints.emplace_back("a volume that has ended");
    return;
  }
  if (!holds) _complaints.push_back(complaint + (": '" + volume->uuid() + "'"));
  if (_keeping == this) keep(volume);
}

void AddingClient::RAIDAppeared(RAIDVolume* volume) {
  const PlentyOfMemory plenty;
  ++_announcements[volume];
  hear(_announced.insert(volume->uuid()).second, "announced twice", volume);
}

void AddingClient::RAIDDisappeared(RAIDVolume* volume) {
  const PlentyOfMemory plenty;
  --_announcements[volume];
  hear(_announced.erase(volume->uuid()) == 1, "withdrawn unannounced", volume);
}

void AddingClient::RAIDUpdated(RAIDVolume* volume) {
  const PlentyOfMemory plenty;
  hear(_announced.count(volume->uuid()) == 1, "updated unannounced", volume);
}

void AddingClient::keep(RAIDVolume* volume) {
  const PlentyOfMemory plenty;
  if (_volumes.insert(volume).second) volume->ref();
}

void AddingClient::endVolumes() {
  for (RAIDVolume* volume : _volumes) {
    while (volume->references() > 1)
      volume->deref();
    volume->deref();
  }
  _volumes.clear();
}

Life::Life(bool clientKeepsVolumes) : _client(clientKeepsVolumes) {
  MemoryRegistry::reset();
  _application = std::make_unique<Pelago::Application>(_clock);
  Logger::setSink(noteLine);
  _monitor.reset(RAIDMonitor::CreateRAIDMonitor());
  _monitor->addClient(&_client);
  _monitor->listenTo(&_manager);
  _monitor->startMonitoring();
}

Life::~Life() {
  end();
  Logger::setSink({});
}

bool Life::call(const std::function<void()>& action) {
  if (_beforeCall) _beforeCall();
  forgetTrace();
  SeamTrace::mark();
  try {
    action();
    SeamTrace::mark();
    return true;
  } catch (const std::bad_alloc&) {
    SeamTrace::mark(true);
    ++_exceptions;
    return false;
  }
}

// What is kept in a call shows in that call.
void Life::forgetTrace() {
  const PlentyOfMemory plenty;
  const Kept kept = keptReferences(_trace.events());
  for (const auto& [id, references] : kept.references)
    _kept.references[id] += references;
  for (const auto& [id, references] : kept.unsure)
    _kept.unsure[id] += references;
  SeamTrace::forget();
}

const Kept& Life::kept() {
  forgetTrace();
  return _kept;
}

void Life::change(const std::function<void()>& action) {
  const PlentyOfMemory plenty;
  action();
}

// Whoever reports a device and is told that memory ran out takes the report back and makes it
// again.
void Life::appear(std::uint64_t uid) {
  while (!call([&] { _manager.deviceAppeared({uid, Pelago::Device::ThunderboltType}); }))
    leave(uid);
}

void Life::leave(std::uint64_t uid) {
  while (!call([&] { _manager.deviceDisappeared({uid, Pelago::Device::ThunderboltType}); })) {
  }
}

// A loop that was left by an exception is entered again: what was due stays due.
void Life::passUntil(Pelago::Milliseconds moment) {
  constexpr Pelago::Milliseconds step = 2000;
  Pelago::Milliseconds next = 0;
  do {
    next = std::min(moment, _application->now() + step);
    while (!call([&] { _application->runBefore(next); })) {
    }
  } while (next < moment);
}

void Life::pass(Pelago::Milliseconds span) { passUntil(_application->now() + span); }

void Life::askForSlots() {
  std::vector<std::pair<RAIDHost*, RAIDMember*>> members;
  std::vector<RAIDHost*> hosts;
  {
    const PlentyOfMemory plenty;
    hosts = _monitor->raidHosts();
    for (RAIDHost* host : hosts) {
      for (const RAIDVolume* volume : host->raidVolumes()) {
        for (RAIDMember* member : volume->members())
          members.emplace_back(host, member);
      }
    }
  }
  for (const auto& [host, member] : members) {
    RAIDHost* asked = host;
    RAIDMember* about = member;
    call([asked, about] { asked->locationOfMember(about, true); });
  }
  for (RAIDHost* host : hosts) {
    for (const int slot : {1, 5})
      call([host, slot] { host->locationOfNotMember(slot); });
  }
}

View Life::view() const {
  const PlentyOfMemory plenty;
  View view;
  for (const RAIDHost* host : _monitor->raidHosts()) {
    view.hosts[host->deviceID()] = viewOf(*host);
    for (const RAIDVolume* volume : host->raidVolumes())
      view.present.insert(volume->uuid());
  }
  view.announced = _client.announced();
  return view;
}

void Life::end() {
  if (!_monitor) return;
  for (const RAIDHost* host : _monitor->raidHosts()) {
    for (RAIDVolume* volume : host->raidVolumes())
      _client.keep(volume);
  }
  _monitor->shutdown();
  _monitor.reset();
  _client.endVolumes();
  _application.reset();
}

const std::set<std::string>& loggedTexts() { return texts(); }

void noteLoggedText(const std::string& text) {
  const PlentyOfMemory plenty;
  texts().insert(text);
}

void forgetLoggedTexts() { texts().clear(); }

NoOutput::NoOutput() : _saved(dup(STDOUT_FILENO)) {
  std::fflush(stdout);
  const int nowhere = open("/dev/null", O_WRONLY);
  dup2(nowhere, STDOUT_FILENO);
  close(nowhere);
}

NoOutput::~NoOutput() {
  std::fflush(stdout);
  dup2(_saved, STDOUT_FILENO);
  close(_saved);
}

}  // namespace FaultTest
