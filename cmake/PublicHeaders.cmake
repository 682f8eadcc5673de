# The headers that an application may include, each once. Everything else is internal.

set(pelago_headers
  platform/pelago/Application.h
  platform/pelago/Clock.h
  platform/pelago/Device.h
  platform/pelago/DiscoveryClient.h
  platform/pelago/DiscoveryManager.h
  platform/pelago/Event.h
  platform/pelago/Host.h
  platform/pelago/Logger.h
  platform/pelago/Object.h
  platform/pelago/PacedClock.h
  platform/pelago/SteadyClock.h
  platform/pelago/Timer.h
  platform/pelago/VirtualClock.h
  platform/pelago/WakePipe.h)

set(memory_registry_headers
  platform/registry/memory/CoreFoundationSeam.h
  platform/registry/memory/MemoryRegistry.h
  platform/registry/memory/MemoryRegistrySeam.h
  platform/registry/memory/Operation.h
  platform/registry/memory/PropertyValue.h
  platform/registry/memory/RegistryContent.h)

# Reference.h needs nothing of a framework but ref() and deref(): it goes with the library, which
# uses it with any framework.
set(raidmonitoring_headers
  model/AppleRAIDMember.h
  model/MemberState.h
  model/RAIDHost.h
  model/RAIDLevel.h
  model/RAIDMember.h
  model/RAIDVolume.h
  model/RAIDVolumeState.h
  monitor/RAIDMonitor.h
  monitor/RAIDMonitorClient.h
  monitor/RAIDMonitorMac.h
  platform/pelago/Reference.h
  platform/registry/Registry.h
  platform/registry/RegistryReferences.h
  thunderbolt/ThunderboltDevice.h)
if(RAIDMONITORING_REGISTRY STREQUAL "iokit")
  list(APPEND raidmonitoring_headers platform/registry/iokit/SystemRegistry.h)
endif()
