#include <memory>

#include "tests/faults/Scenarios.h"
#include "tests/support/EnclosureBuilder.h"
#include "tests/support/HostTree.h"

namespace FaultTest {
namespace {

using TestSupport::EnclosureBuilder;
using TestSupport::fiveBay;
using TestSupport::HostTree;
using TestSupport::twoBay;

constexpr std::uint64_t First = 0x0005000000000001;
constexpr std::uint64_t Second = 0x8005000000000002;  // a negative number, as the registry sees it
constexpr Pelago::Milliseconds Period = 2000;

// The enclosures that a scenario has, which it changes as it goes.
struct Desk {
  HostTree host;
  EnclosureBuilder one{host, twoBay(First)};
  EnclosureBuilder two{host, twoBay(Second, 1)};
  EnclosureBuilder five{host, fiveBay(Second, 2)};
};

std::unique_ptr<Desk> laid(Life& life, const std::function<void(Desk&)>& lay) {
  std::unique_ptr<Desk> desk;
  life.change([&] {
    desk = std::make_unique<Desk>();
    lay(*desk);
  });
  return desk;
}

void plugInInStages(Life& life) {
  const auto desk = laid(life, [](Desk& it) { it.one.addSwitch(); });
  life.appear(First);
  life.pass(200);
  life.change([&] { desk->one.addPCIPath(); });
  life.pass(200);
  life.change([&] { desk->one.addUpstreamBridge().addBridges(); });
  life.pass(200);
  life.change([&] { desk->one.addDisk(1).addDisk(2); });
  life.pass(Period);
  life.change([&] { desk->one.addSet({"SET-A", {1, 2}}); });
  life.pass(2 * Period);
  life.askForSlots();
}

void allThereAtOnce(Life& life) {
  laid(life, [](Desk& it) { it.one.complete().addDisks({1, 2}).addSet({"SET-A", {1, 2}}); });
  life.appear(First);
  life.pass(2 * Period);
}

void pullAndReturn(Life& life) {
  const auto desk = laid(life, [](Desk& it) {
    it.one.complete().addDisks({1, 2}).addSet({"SET-A", {1, 2}});
  });
  life.appear(First);
  life.pass(Period + 100);
  life.change([&] {
    desk->one.pullDisk(2);
    desk->one.setStatus("SET-A", "Degraded");
  });
  life.pass(Period);
  life.askForSlots();
  life.change([&] { desk->one.returnDisk(2, "Failed"); });
  life.pass(Period);
  life.change([&] {
    desk->one.setMemberStatus(2, "Online");
    desk->one.setStatus("SET-A", "Online");
  });
  life.pass(Period);
}

// The set hangs beneath members in both enclosures, and is listed by both.
void spanningSet(Life& life) {
  const auto desk = laid(life, [](Desk& it) {
    it.one.complete().addDisks({1, 2}).addSet({"SET-A", {1, 2}});
    it.two.complete().addDisks({1}).addMember(1, "SET-A");
    MemoryRegistry::attach(it.one.set("SET-A"), it.two.member(1));
  });
  life.appear(First);
  life.appear(Second);
  life.pass(2 * Period + 100);
  life.leave(Second);
  life.change([&] { desk->two.unplug(); });
  life.pass(Period);
}

void enclosureLeavesAndReturns(Life& life) {
  const auto desk = laid(life, [](Desk& it) {
    it.one.complete().addDisks({1, 2}).addSet({"SET-A", {1, 2}});
  });
  life.appear(First);
  life.pass(Period + 100);
  life.leave(First);
  life.change([&] { desk->one.unplug(); });
  life.pass(Period);
  life.change([&] { desk->one.complete().addDisks({1, 2}).addSet({"SET-A", {1, 2}}); });
  life.appear(First);
  life.pass(Period);
}

void leavesInMidBringUp(Life& life) {
  const auto desk = laid(life, [](Desk& it) {
    it.one.addSwitch();
    it.two.addSwitch().addPCIPath();
  });
  life.appear(First);
  life.appear(Second);
  life.pass(250);
  life.leave(First);
  life.leave(Second);
  life.pass(Period);
}

void stripeAndSlots(Life& life) {
  laid(life, [](Desk& it) {
    it.five.complete().addDisks({1, 2, 3, 5}).addSet({"SET-B", {1, 2, 3}, "Scratch", "Stripe"});
    it.five.setBootPaths("SET-B", {"IODeviceTree:/pci1b0a,10@0/PRT0@0", "/pci1b0b,10@0/PRT0@0"});
  });
  life.appear(Second);
  life.pass(Period + 100);
  life.askForSlots();
}

void slotsOfMissingDisks(Life& life) {
  const auto desk = laid(life, [](Desk& it) {
    it.one.complete().addDisks({1, 2}).addSet({"SET-A", {1, 2}});
    it.five.complete().addDisks({1, 3}).addSet({"SET-B", {1, 3}});
  });
  life.appear(First);
  life.appear(Second);
  life.pass(Period + 100);
  life.change([&] {
    desk->one.pullDisk(2);
    desk->five.pullDisk(3);
  });
  life.askForSlots();
  life.pass(Period);
  life.askForSlots();
}

// Discovery is ahead of the registry.
void unknownDevice(Life& life) {
  laid(life, [](Desk&) {});
  life.appear(First);
  life.pass(Period + 100);
}

}  // namespace

std::vector<Scenario> stagedScenarios() {
  return {{"plug-in in stages", plugInInStages},
          {"all there at once", allThereAtOnce},
          {"pull and return", pullAndReturn},
          {"spanning set", spanningSet},
          {"enclosure leaves and returns", enclosureLeavesAndReturns},
          {"departure in mid bring-up", leavesInMidBringUp},
          {"stripe set and slots", stripeAndSlots},
          {"slots of missing disks", slotsOfMissingDisks},
          {"unknown device", unknownDevice}};
}

}  // namespace FaultTest
