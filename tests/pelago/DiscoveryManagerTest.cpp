#include "platform/pelago/DiscoveryManager.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "platform/pelago/DiscoveryClient.h"
#include "tests/support/FailingMemory.h"

namespace PelagoTest {
namespace {

using Pelago::Device;
using Pelago::DiscoveryClient;
using Pelago::DiscoveryManager;
using Pelago::Host;
using testing::ElementsAre;
using testing::IsEmpty;

using Story = std::vector<std::string>;

// Writes down every call, then does what it was told to do.
class Listener : public DiscoveryClient {
 public:
  using Action = std::function<void(const std::string&)>;
  Listener(Story& story, std::string name, Action action = {})
      : _story(story), _name(std::move(name)), _action(std::move(action)) {}

  void deviceAppeared(const Device& device) override { heard("+", device); }
  void deviceDisappeared(const Device& device) override { heard("-", device); }
  void deviceUpdated(const Device& device) override { heard("*", device); }
  void hostAppeared(const Host& host) override { heard("+" + host.name); }
  void hostDisappeared(const Host& host) override { heard("-" + host.name); }
  void hostUpdated(const Host& host) override { heard("*" + host.name); }

 private:
  void heard(const std::string& sign, const Device& device) {
    heard(sign + std::to_string(device.id) + "/" + std::to_string(device.type));
  }
  void heard(const std::string& what) {
    const Action action = _action;  // which may end the listener
    _story.push_back(_name + what);
    if (action) action(what);
  }

  Story& _story;
  std::string _name;
  Action _action;
};

class Discovery : public testing::Test {
 protected:
  Story story;
  DiscoveryManager manager;
  const Device one{1, 4};
  const Device two{2, 4};
  const Host host{"h"};
};

TEST_F(Discovery, AClientHearsOfDevicesAndHostsThatComeGoOrChange) {
  Listener client(story, "a");
  manager.addClient(&client);
  manager.deviceAppeared(one);
  manager.deviceUpdated(one);
  manager.deviceDisappeared(one);
  manager.hostAppeared(host);
  manager.hostUpdated(host);
  manager.hostDisappeared(host);
  EXPECT_THAT(story, ElementsAre("a+1/4", "a*1/4", "a-1/4", "a+h", "a*h", "a-h"));
}

TEST_F(Discovery, ClientsHearInTheOrderInWhichTheyWereAdded) {
  Listener first(story, "a");
  Listener second(story, "b");
  manager.addClient(&second);
  manager.addClient(&first);
  manager.deviceAppeared(one);
  EXPECT_THAT(story, ElementsAre("b+1/4", "a+1/4"));
}

TEST_F(Discovery, AddClientReportsTheDevicesAndHostsThatArePresentInTheOrderOfAppearance) {
  manager.hostAppeared({"y"});
  manager.hostAppeared({"x"});
  manager.hostAppeared({"z"});
  manager.hostDisappeared({"x"});
  manager.deviceAppeared(two);
  manager.deviceAppeared({3, 4});
  manager.deviceAppeared(one);
  manager.deviceDisappeared({3, 4});
  Listener client(story, "a");
  manager.addClient(&client);
  EXPECT_THAT(story, ElementsAre("a+2/4", "a+1/4", "a+y", "a+z"));
}

TEST_F(Discovery, AClientAddedTwiceHearsTwiceTheReplayIncluded) {
  manager.deviceAppeared(one);
  Listener client(story, "a");
  manager.addClient(&client);
  EXPECT_THAT(story, ElementsAre("a+1/4"));
  manager.addClient(&client);
  EXPECT_THAT(story, ElementsAre("a+1/4", "a+1/4"));
  story.clear();
  manager.deviceDisappeared(one);
  EXPECT_THAT(story, ElementsAre("a-1/4", "a-1/4"));
}

TEST_F(Discovery, RemoveClientUndoesEveryRegistration) {
  Listener client(story, "a");
  Listener other(story, "b");
  manager.addClient(&client);
  manager.addClient(&other);
  manager.addClient(&client);
  manager.removeClient(&client);
  manager.removeClient(&client);
  manager.deviceAppeared(one);
  EXPECT_THAT(story, ElementsAre("b+1/4"));
}

TEST_F(Discovery, ANullClientIsIgnored) {
  manager.addClient(nullptr);
  manager.removeClient(nullptr);
  manager.deviceAppeared(one);
  EXPECT_THAT(manager.devices(), ElementsAre(one));
}

TEST_F(Discovery, ADeviceReportedTwiceIsPassedOnTwiceAndPresentOnce) {
  Listener client(story, "a");
  manager.addClient(&client);
  manager.deviceAppeared(one);
  manager.deviceAppeared(one);
  EXPECT_THAT(story, ElementsAre("a+1/4", "a+1/4"));
  EXPECT_THAT(manager.devices(), ElementsAre(one));
  manager.deviceDisappeared(one);
  EXPECT_THAT(manager.devices(), IsEmpty());
}

TEST_F(Discovery, ADepartureOrChangeOfSomethingUnknownIsPassedOn) {
  Listener client(story, "a");
  manager.addClient(&client);
  manager.deviceDisappeared(one);
  manager.deviceUpdated(two);
  manager.hostDisappeared(host);
  EXPECT_THAT(story, ElementsAre("a-1/4", "a*2/4", "a-h"));
  EXPECT_THAT(manager.devices(), IsEmpty());
}

TEST_F(Discovery, DevicesDifferByIdAndByType) {
  const struct {
    const char* name;
    Device other;
    bool equal;
  } rows[] = {
      {"the same", {1, 4}, true}, {"another id", {2, 4}, false}, {"another type", {1, 3}, false}};
  for (const auto& row : rows)
    EXPECT_EQ(row.equal, one == row.other) << row.name;
  EXPECT_EQ(4U, Device::ThunderboltType);
  manager.deviceAppeared(one);
  manager.deviceAppeared({1, 3});
  manager.deviceDisappeared(one);
  const Device left{1, 3};
  EXPECT_THAT(manager.devices(), ElementsAre(left));
}

TEST_F(Discovery, AReportMayBeAnElementOfTheManagersOwnList) {
  Listener client(story, "a");
  manager.addClient(&client);
  manager.deviceAppeared(one);
  manager.deviceAppeared(two);
  story.clear();
  manager.deviceUpdated(manager.devices().front());
  manager.deviceDisappeared(manager.devices().front());
  EXPECT_THAT(story, ElementsAre("a*1/4", "a-1/4"));
  EXPECT_THAT(manager.devices(), ElementsAre(two));
}

TEST_F(Discovery, TheBaseVersionsOfTheCallbacksDoNothing) {
  DiscoveryClient client;
  manager.addClient(&client);
  manager.deviceAppeared(one);
  manager.deviceUpdated(one);
  manager.deviceDisappeared(one);
  manager.hostAppeared(host);
  manager.hostUpdated(host);
  manager.hostDisappeared(host);
  EXPECT_EQ(0, client.references());
}

// ---- Lifetimes

TEST_F(Discovery, ADestroyedClientLeavesEveryManager) {
  DiscoveryManager other;
  {
    Listener client(story, "a");
    manager.addClient(&client);
    manager.addClient(&client);
    other.addClient(&client);
  }
  manager.deviceAppeared(one);
  other.deviceAppeared(one);
  EXPECT_THAT(story, IsEmpty());
}

TEST_F(Discovery, AManagerDestroyedFirstLeavesItsClientsToOthers) {
  Listener client(story, "a");
  {
    DiscoveryManager shortLived;
    shortLived.addClient(&client);
    manager.addClient(&client);
    shortLived.addClient(&client);
  }
  manager.deviceAppeared(one);
  EXPECT_THAT(story, ElementsAre("a+1/4"));
}

TEST_F(Discovery, TheManagerTakesNoReference) {
  Listener client(story, "a");
  manager.addClient(&client);
  EXPECT_EQ(0, client.references());
}

// ---- Inside callbacks

TEST_F(Discovery, AClientAddedInACallbackHearsByItsReplayOnly) {
  Listener late(story, "late");
  Listener client(story, "a", [&](const std::string& what) {
    if (what == "+2/4") manager.addClient(&late);
  });
  manager.addClient(&client);
  manager.deviceAppeared(one);
  manager.deviceAppeared(two);
  EXPECT_THAT(story, ElementsAre("a+1/4", "a+2/4", "late+1/4", "late+2/4"));
  story.clear();
  manager.deviceDisappeared(two);
  EXPECT_THAT(story, ElementsAre("a-2/4", "late-2/4"));
}

TEST_F(Discovery, AClientAddedWhileADeviceLeavesDoesNotHearOfIt) {
  Listener late(story, "late");
  Listener client(story, "a", [&](const std::string& what) {
    if (what == "-1/4") manager.addClient(&late);
  });
  manager.addClient(&client);
  manager.deviceAppeared(one);
  manager.deviceDisappeared(one);
  EXPECT_THAT(story, ElementsAre("a+1/4", "a-1/4"));
}

TEST_F(Discovery, AClientRemovedInACallbackIsNotCalledAnyMore) {
  Listener second(story, "b");
  Listener first(story, "a", [&](const std::string&) { manager.removeClient(&second); });
  Listener third(story, "c");
  manager.addClient(&first);
  manager.addClient(&second);
  manager.addClient(&third);
  manager.deviceAppeared(one);
  manager.deviceAppeared(two);
  EXPECT_THAT(story, ElementsAre("a+1/4", "c+1/4", "a+2/4", "c+2/4"));
}

TEST_F(Discovery, AClientMayRemoveItselfInACallback) {
  Listener client(story, "a", [&](const std::string&) { manager.removeClient(&client); });
  Listener other(story, "b");
  manager.addClient(&client);
  manager.addClient(&other);
  manager.deviceAppeared(one);
  manager.deviceAppeared(two);
  EXPECT_THAT(story, ElementsAre("a+1/4", "b+1/4", "b+2/4"));
}

TEST_F(Discovery, AClientMayBeDestroyedInItsOwnCallback) {
  std::unique_ptr<Listener> client;
  client = std::make_unique<Listener>(story, "a", [&](const std::string&) { client.reset(); });
  Listener other(story, "b");
  manager.addClient(client.get());
  manager.addClient(client.get());
  manager.addClient(&other);
  manager.deviceAppeared(one);
  EXPECT_THAT(story, ElementsAre("a+1/4", "b+1/4"));
}

TEST_F(Discovery, AnotherClientMayBeDestroyedInACallback) {
  auto before = std::make_unique<Listener>(story, "before");
  auto after = std::make_unique<Listener>(story, "after");
  Listener client(story, "a", [&](const std::string&) {
    before.reset();
    after.reset();
  });
  manager.addClient(before.get());
  manager.addClient(&client);
  manager.addClient(after.get());
  manager.deviceAppeared(one);
  manager.deviceAppeared(two);
  EXPECT_THAT(story, ElementsAre("before+1/4", "a+1/4", "a+2/4"));
}

TEST_F(Discovery, AClientMayLeaveOrEndDuringItsReplay) {
  manager.deviceAppeared(one);
  manager.deviceAppeared(two);
  manager.hostAppeared(host);
  Listener leaving(story, "a", [&](const std::string&) { manager.removeClient(&leaving); });
  manager.addClient(&leaving);
  std::unique_ptr<Listener> ending;
  ending = std::make_unique<Listener>(story, "b", [&](const std::string&) { ending.reset(); });
  manager.addClient(ending.get());
  EXPECT_THAT(story, ElementsAre("a+1/4", "b+1/4"));
}

TEST_F(Discovery, AReportDuringAReplayIsHeardOnceAndInOrder) {
  const Device three{3, 4};
  manager.deviceAppeared(one);
  manager.deviceAppeared(two);
  manager.hostAppeared(host);
  Listener client(story, "a", [&](const std::string& what) {
    if (what != "+1/4") return;
    manager.deviceDisappeared(two);
    manager.hostDisappeared(host);
    manager.deviceAppeared(three);
  });
  manager.addClient(&client);
  EXPECT_THAT(story, ElementsAre("a+1/4", "a-2/4", "a-h", "a+3/4"));
}

TEST_F(Discovery, AReportDuringAReportReachesEverybody) {
  Listener first(story, "a", [&](const std::string& what) {
    if (what == "+1/4") manager.deviceAppeared(two);
  });
  Listener second(story, "b");
  manager.addClient(&first);
  manager.addClient(&second);
  manager.deviceAppeared(one);
  EXPECT_THAT(story, ElementsAre("a+1/4", "a+2/4", "b+2/4", "b+1/4"));
}

// ---- Exceptions

TEST_F(Discovery, AnExceptionFromAClientLeavesThroughTheReport) {
  Listener throwing(story, "a", [](const std::string& what) {
    if (what == "+1/4") throw std::runtime_error("from the client");
  });
  Listener other(story, "b");
  manager.addClient(&throwing);
  manager.addClient(&other);
  EXPECT_THROW(manager.deviceAppeared(one), std::runtime_error);
  EXPECT_THAT(story, ElementsAre("a+1/4"));
  EXPECT_THAT(manager.devices(), ElementsAre(one));
  manager.removeClient(&throwing);
  manager.deviceAppeared(two);
  EXPECT_THAT(story, ElementsAre("a+1/4", "b+2/4"));
}

TEST_F(Discovery, LackOfMemoryInAddClientLeavesNoHalfRegistration) {
  int successes = 0;
  for (bool added = false; !added; ++successes) {
    ASSERT_GT(100, successes);
    Listener client(story, "a");
    {
      DiscoveryManager mortal;
      try {
        const TestSupport::FailingAllocation failing(static_cast<std::uint64_t>(successes));
        mortal.addClient(&client);
        added = true;
      } catch (const std::bad_alloc&) {
      }
      mortal.deviceAppeared(one);
      const Story expected(added ? 1 : 0, "a+1/4");
      EXPECT_EQ(expected, story) << successes;
    }
  }
  EXPECT_EQ(3, successes);  // the two lists, one after the other, and then neither
}

TEST_F(Discovery, ADeviceThatNothingIsSaidOfHasNoNumbers) {
  EXPECT_EQ(0U, Device().id);
  EXPECT_EQ(0U, Device().type);
}

TEST_F(Discovery, AClientThatLeavesMakesRoomForTheNext) {
  Listener listener(story, "a");
  manager.addClient(&listener);
  manager.removeClient(&listener);
  const TestSupport::FailingAllocation failing(0);
  for (int i = 0; i < 10; ++i) {
    manager.addClient(&listener);
    manager.removeClient(&listener);
  }
}

}  // namespace
}  // namespace PelagoTest
