#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "platform/pelago/Application.h"
#include "platform/pelago/VirtualClock.h"
#include "platform/registry/memory/MemoryRegistry.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/CapturingLog.h"
#include "tests/support/EventPump.h"

namespace TestSupport {

// A test with an empty registry, an application on a virtual clock, and log and standard output
// captured. Its end settles the accounts: what is still held of the registry must be exactly what
// the test has declared, references that travel in queued events included.
class RegistryFixture : public testing::Test {
 protected:
  RegistryFixture();
  ~RegistryFixture() override;

  void TearDown() override;

  // So many more references are held on the entry at the end.
  void expectKept(MemoryRegistry::EntryID entry, std::uint64_t references);
  void expectKeptIterators(std::size_t count) { _iterators += count; }
  void expectKeptValues(std::size_t count) { _values += count; }
  // So many more events are in the queue at the end.
  void expectQueued(std::size_t count) { _queued += count; }

  Pelago::Application& application() { return *_application; }
  CapturingLog& log() { return _log; }
  // Everything written to standard output so far.
  std::string output() const { return _output.text(); }
  EventPump& pump() { return _pump; }

 private:
  void settle() const;

  Pelago::VirtualClock _clock;
  CapturingLog _log;
  CapturedOutput _output;
  std::unique_ptr<Pelago::Application> _application;
  EventPump _pump;
  std::map<MemoryRegistry::EntryID, std::uint64_t> _kept;
  std::size_t _iterators = 0;
  std::size_t _values = 0;
  std::size_t _queued = 0;
};

}  // namespace TestSupport
