#include "tests/support/EnclosureBuilder.h"

#include <utility>

namespace TestSupport {

using MemoryRegistry::Dictionary;
using MemoryRegistry::number64;

namespace {

constexpr int LaneAdapter = 1;
constexpr int PCIDownAdapter = 0x100101;
constexpr int PCIUpAdapter = 0x100102;
constexpr int DisplayOutAdapter = 0x0E0102;

EntryID addPort(EntryID parent, const std::string& location, int adapter) {
  return addEntry(parent, "IOThunderboltPort", "", location, {{"Adapter Type", adapter}});
}

}  // namespace

EnclosureDescription twoBay(std::uint64_t uid, unsigned tunnel) {
  EnclosureDescription description;
  description.uid = uid;
  description.tunnel = tunnel;
  return description;
}

EnclosureDescription fiveBay(std::uint64_t uid, unsigned tunnel) {
  EnclosureDescription description = twoBay(uid, tunnel);
  description.modelID = 6;
  description.modelName = "Five Bay";
  description.threeBridges = true;
  return description;
}

EnclosureBuilder::EnclosureBuilder(const HostTree& host, EnclosureDescription description)
    : _host(host), _description(std::move(description)) {}

EnclosureBuilder& EnclosureBuilder::addSwitch() {
  _lanePort = addPort(_host.lanePort(_description.tunnel), "1", LaneAdapter);
  _switch = addEntry(_lanePort, "IOThunderboltSwitchType2", "", "",
                     {{"UID", number64(_description.uid)},
                      {"Depth", 1},
                      {"Device Vendor ID", number64(_description.vendorID)},
                      {"Device Vendor Name", _description.vendorName},
                      {"Device Model ID", number64(_description.modelID)},
                      {"Device Model Name", _description.modelName}});
  addPort(_switch, "2", LaneAdapter);
  addEntry(addPort(_switch, "7", PCIDownAdapter), "AppleThunderboltPCIDownAdapter");
  _upstreamPort = addPort(_switch, "A", PCIUpAdapter);
  addEntry(_upstreamPort, "AppleThunderboltPCIUpAdapter");
  addPort(_switch, "B", DisplayOutAdapter);
  return *this;
}

EnclosureBuilder& EnclosureBuilder::addPCIPath(int pciDevice) {
  const std::string tunnel = MemoryRegistry::path(_host.tunnel(_description.tunnel));
  MemoryRegistry::setProperty(_upstreamPort, "PCI Path", tunnel + "/UPS0@0");
  MemoryRegistry::setProperty(_upstreamPort, "PCI Device", pciDevice);
  return *this;
}

EnclosureBuilder& EnclosureBuilder::addUpstreamBridge() {
  _upstreamBridge = addPCIBridge(_host.tunnel(_description.tunnel), "UPS0", "0");
  return *this;
}

EnclosureBuilder& EnclosureBuilder::addBridges() {
  const EntryID upstream = behindBridge(_upstreamBridge);
  _bridge = addPCIBridge(upstream, "pci-bridge", "3");
  addPCIBridge(upstream, "pci-bridge", "4");
  const std::string tree = "IODeviceTree:/PCI0@0/PEG1@1,1/UPSB@0/DSB" +
                           std::to_string(_description.tunnel + 1) + "@" +
                           std::to_string(_description.tunnel + 3) + "/UPS0@0/pci-bridge@3";
  if (!_description.threeBridges) {
    addController(behindBridge(_bridge), tree, 1);
    return *this;
  }
  const EntryID middle = _innerBridges[0] = addPCIBridge(behindBridge(_bridge), "pci-bridge", "0");
  constexpr std::pair<int, int> firstBays[] = {{5, 5}, {7, 3}, {9, 1}};
  for (const auto& [location, firstBay] : firstBays) {
    const std::string text = std::to_string(location);
    _innerBridges[location] = addPCIBridge(behindBridge(middle), "pci-bridge", text);
    addController(behindBridge(_innerBridges[location]), tree + "/pci-bridge@0/pci-bridge@" + text,
                  firstBay);
  }
  return *this;
}

EnclosureBuilder& EnclosureBuilder::complete() {
  if (_switch == 0) addSwitch();
  addPCIPath();
  if (_upstreamBridge == 0) addUpstreamBridge();
  if (_bridge == 0) addBridges();
  return *this;
}

void EnclosureBuilder::unplug() {
  if (_upstreamBridge != 0) MemoryRegistry::terminate(_upstreamBridge);
  if (_lanePort != 0) MemoryRegistry::terminate(_lanePort);
  _bays.clear();
  _sets.clear();
  _innerBridges.clear();
  _lanePort = _switch = _upstreamPort = _upstreamBridge = _bridge = 0;
}

std::string EnclosureBuilder::bridgePath() const {
  return MemoryRegistry::path(_host.tunnel(_description.tunnel)) + "/UPS0@0/IOPP/pci-bridge@3";
}

void EnclosureBuilder::addController(EntryID parent, const std::string& treePath, int firstBay) {
  const std::string& name = _description.controller;
  const EntryID function = addEntry(parent, "IOPCIDevice", name, "0", {{"IOName", name}});
  const EntryID controller = addEntry(function, "AppleAHCI");
  for (int number = 0; number < 2; ++number) {
    const std::string text = std::to_string(number);
    Bay& bay = _bays[firstBay + number];
    bay.port = addEntry(controller, "AppleAHCIPort", "PRT" + text, text);
    bay.treePath = treePath + "/" + name + "@0/PRT" + text + "@" + text;
  }
}

}  // namespace TestSupport
