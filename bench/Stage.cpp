#include "bench/Stage.h"

#include <cstdio>

#include "platform/pelago/Device.h"
#include "platform/pelago/Logger.h"
#include "platform/registry/Registry.h"
#include "platform/registry/RegistryReferences.h"
#include "platform/registry/Vocabulary.h"

namespace Bench {

using RAIDMonitoring::RegistryHandle;

Stage::Stage(std::size_t devices, const TestSupport::EnclosureShape& shape) : _application(_clock) {
  Pelago::Logger::setSink([](Pelago::Logger::Level, const std::string&, const std::string&) {});
  MemoryRegistry::reset();
  TestSupport::GeneratedRegistry registry;
  for (std::size_t i = 0; i < devices; ++i)
    _enclosures.push_back(registry.add(shape));
  _monitor = RAIDMonitoring::RAIDMonitor::CreateRAIDMonitor();
}

Stage::~Stage() {
  _monitor->shutdown();
  delete _monitor;
  Pelago::Logger::setSink({});
}

void Stage::plugIn() {
  for (const auto& enclosure : _enclosures)
    _monitor->deviceAppeared({enclosure.uid, Pelago::Device::ThunderboltType});
}

void Stage::unplug() {
  for (const auto& enclosure : _enclosures)
    _monitor->deviceDisappeared({enclosure.uid, Pelago::Device::ThunderboltType});
}

std::size_t setsThroughSeam(unsigned int entry, std::size_t& steps) {
  RegistryHandle iterator;
  IORegistryEntryCreateIterator(entry, kServicePlane, kIORegistryIterateRecursively,
                                iterator.receive());
  std::size_t found = 0;
  while (const auto next = RegistryHandle::adopt(IOIteratorNext(iterator.get()))) {
    ++steps;
    if (IOObjectConformsTo(next.get(), kRAIDSetClass)) ++found;
  }
  return found;
}

}  // namespace Bench
