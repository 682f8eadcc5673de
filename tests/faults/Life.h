#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "model/RAIDVolume.h"
#include "monitor/RAIDMonitor.h"
#include "monitor/RAIDMonitorClient.h"
#include "platform/pelago/Application.h"
#include "platform/pelago/DiscoveryManager.h"
#include "platform/pelago/VirtualClock.h"
#include "platform/registry/memory/MemoryRegistry.h"
#include "tests/faults/KeptModel.h"
#include "tests/faults/SeamTrace.h"

namespace FaultTest {

// What a monitor knows at one moment, as a user would be shown it.
struct VolumeView {
  std::string name;
  int level = 0;
  int state = 0;
  std::map<std::string, int> members;  // states by UUID
};
struct HostView {
  int status = -1;
  std::string identity;
  std::string bridge;
  std::map<std::string, VolumeView> volumes;  // by UUID
};
struct View {
  std::map<std::uint64_t, HostView> hosts;  // by the device's UID; of two with one UID, the last
  std::set<std::string> present;            // the volumes of all hosts
  std::set<std::string> announced;
};
bool operator==(const VolumeView& a, const VolumeView& b);
bool operator==(const HostView& a, const HostView& b);
bool operator==(const View& a, const View& b);

// A client that adds up what it is told. One that keeps every volume can end those that are left
// behind on purpose.
class AddingClient : public RAIDMonitoring::RAIDMonitorClient {
 public:
  explicit AddingClient(bool isKeeping);
  ~AddingClient();
  AddingClient(const AddingClient&) = delete;
  AddingClient& operator=(const AddingClient&) = delete;

  // The one that keeps every volume, those included that hosts file and don't tell of; or null.
  static AddingClient* keeping() { return _keeping; }

  void RAIDAppeared(RAIDMonitoring::RAIDVolume* volume) override;
  void RAIDDisappeared(RAIDMonitoring::RAIDVolume* volume) override;
  void RAIDUpdated(RAIDMonitoring::RAIDVolume* volume) override;

  const std::set<std::string>& announced() const { return _announced; }
  // What did not add up: a second announcement, say.
  const std::vector<std::string>& complaints() const { return _complaints; }

  // The monitor's references on the volumes that the client was told of, as it was told.
  const std::map<RAIDMonitoring::RAIDVolume*, int>& announcements() const { return _announcements; }
  // The client's own, one each.
  const std::set<RAIDMonitoring::RAIDVolume*>& kept() const { return _volumes; }

  void keep(RAIDMonitoring::RAIDVolume* volume);
  void endVolumes();

 private:
  void hear(bool holds, const char* complaint, RAIDMonitoring::RAIDVolume* volume);

  static AddingClient* _keeping;

  std::map<RAIDMonitoring::RAIDVolume*, int> _announcements;
  std::set<std::string> _announced;
  std::set<RAIDMonitoring::RAIDVolume*> _volumes;
  std::vector<std::string> _complaints;
};

// One life of a monitor on a registry that is empty at first, as a scenario leads it: every call
// into the library goes through here, is traced, and may run out of memory.
class Life {
 public:
  explicit Life(bool clientKeepsVolumes = true);
  ~Life();
  Life(const Life&) = delete;
  Life& operator=(const Life&) = delete;

  // ---- For scenarios
  // Changes the registry; never fails.
  void change(const std::function<void()>& action);
  void appear(std::uint64_t uid);
  void leave(std::uint64_t uid);
  // Lets time pass up to the moment, or for so long; a call for each refresh at most.
  void passUntil(Pelago::Milliseconds moment);
  void pass(Pelago::Milliseconds span);
  // Every slot query there is, of every host.
  void askForSlots();

  // ---- For what leads it
  // Is told before each call into the library.
  void beforeCalls(std::function<void()> action) { _beforeCall = std::move(action); }

  // ---- For what follows
  View view() const;
  Pelago::Milliseconds now() const { return _application->now(); }
  std::vector<RAIDMonitoring::RAIDHost*> hosts() const { return _monitor->raidHosts(); }
  AddingClient& client() { return _client; }
  // Shuts the monitor down and ends everything.
  void end();
  // What happened at the seam in the last call.
  const std::vector<TraceEvent>& trace() const { return _trace.events(); }
  // The references that it is expected to leave behind after all calls up to now (KeptModel.h).
  const Kept& kept();
  std::size_t exceptions() const { return _exceptions; }

 private:
  bool call(const std::function<void()>& action);
  void forgetTrace();

  std::function<void()> _beforeCall;
  SeamTrace _trace;
  Kept _kept;
  Pelago::VirtualClock _clock;
  std::unique_ptr<Pelago::Application> _application;
  Pelago::DiscoveryManager _manager;
  AddingClient _client;
  std::unique_ptr<RAIDMonitoring::RAIDMonitor> _monitor;
  std::size_t _exceptions = 0;
};

// Messages that were logged since the program began or they were forgotten, without those parts
// that differ; and one that was logged elsewhere.
const std::set<std::string>& loggedTexts();
void noteLoggedText(const std::string& text);
void forgetLoggedTexts();

// Sends what the library prints to nowhere.
class NoOutput {
 public:
  NoOutput();
  ~NoOutput();
  NoOutput(const NoOutput&) = delete;
  NoOutput& operator=(const NoOutput&) = delete;

 private:
  int _saved;
};

}  // namespace FaultTest
