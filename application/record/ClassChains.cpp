#include "application/record/ClassChains.h"

#include <algorithm>

#include "application/record/PropertyValues.h"
#include "platform/registry/RegistryReferences.h"
#include "platform/registry/Vocabulary.h"

namespace Program {
namespace {

using RAIDMonitoring::CFReference;

bool holds(const ClassChains::Chain& chain, const std::string& name) {
  return std::find(chain.begin(), chain.end(), name) != chain.end();
}

// Empty when there is none.
std::string superclassOf(const std::string& className) {
  const auto name = CFReference<CFStringRef>::adopt(
      CFStringCreateWithCString(kCFAllocatorDefault, className.c_str(), kCFStringEncodingUTF8));
  if (!name) return {};
  const auto superclass =
      CFReference<CFStringRef>::adopt(IOObjectCopySuperclassForClass(name.get()));
  return textOf(superclass.get());
}

// Those that somebody asks for, the most general first.
constexpr const char* AskedFor[] = {
    "IORegistryEntry", "IOService",           kThunderboltSwitchClass,
    kPCIDeviceClass,   kAHCIPortClass,        kAHCIDeviceClass,
    "IOMedia",         kPartitionSchemeClass, kRAIDMemberClass,
    kRAIDSetClass,     kRAIDStripeSetClass,   kMediaBSDClientClass,
};

void addWhatItConformsTo(ClassChains::Chain& chain, io_registry_entry_t entry) {
  for (const char* name : AskedFor) {
    if (!holds(chain, name) && IOObjectConformsTo(entry, name)) chain.insert(chain.end() - 1, name);
  }
}

}  // namespace

const ClassChains::Chain& ClassChains::known(const std::string& className) {
  const auto [place, isNew] = _known.try_emplace(className);
  if (!isNew) return place->second;
  Chain chain{className};
  for (std::string above = superclassOf(className); !above.empty() && !holds(chain, above);
       above = superclassOf(above)) {
    if (above != "OSObject") chain.push_back(above);  // everybody's: never printed
  }
  std::reverse(chain.begin(), chain.end());
  return place->second = std::move(chain);
}

ClassChains::Chain ClassChains::chainOf(io_registry_entry_t entry, const std::string& className) {
  Chain chain = known(className);
  const auto isForeign = [&](const std::string& name) {
    return name != className && !IOObjectConformsTo(entry, name.c_str());
  };
  const auto foreign = std::remove_if(chain.begin(), chain.end(), isForeign);
  const bool ownChain = foreign == chain.end() && chain.size() > 1;
  chain.erase(foreign, chain.end());
  // A class that stands in for the real one, or that nothing is known of.
  if (!ownChain && className != AskedFor[0]) addWhatItConformsTo(chain, entry);
  return chain;
}

}  // namespace Program
