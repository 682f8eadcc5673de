#include "platform/registry/memory/archive/EntryReader.h"

#include <utility>
#include <vector>

#include "platform/registry/memory/archive/ContentBuilder.h"
#include "platform/registry/memory/archive/EntryPrint.h"
#include "platform/registry/memory/archive/PropertyList.h"
#include "platform/registry/memory/archive/PropertyReader.h"
#include "platform/registry/memory/archive/Refusal.h"

namespace MemoryRegistry {
namespace {

EntryDescription describe(EntryPrint& print) {
  EntryDescription description;
  description.className = print.className;
  description.name = print.name;
  description.location = print.location;
  description.inheritance = std::move(print.classes);
  description.state = print.state;
  description.properties = readProperties(print);
  return description;
}

// Goes through the prints depth first, in their order, with a stack of its own.
class EntryReader {
 public:
  RegistryContent read(plist_t top) {
    enter(top);
    while (!_unread.empty()) {
      if (const plist_t child = _unread.back().next()) {
        enter(child);
      } else {
        _unread.pop_back();
        _builder.leave();
      }
    }
    return _builder.finish();
  }

 private:
  void enter(plist_t dictionary) {
    EntryPrint print = readPrint(dictionary, _builder.openID());
    if (_builder.enter(print.id)) _builder.description() = describe(print);
    _unread.emplace_back(print.children);
  }

  ContentBuilder _builder;
  std::vector<ArrayElements> _unread;  // the children of each print that is open
};

// What a browser of registries saves: its own objects, numbered, in a property list.
bool isObjectArchive(plist_t top) {
  return plist_dict_get_item(top, "$archiver") != nullptr &&
         plist_dict_get_item(top, "IORegistryEntryID") == nullptr;
}

}  // namespace

RegistryContent readEntries(plist_t top) {
  if (PLIST_IS_ARRAY(top)) {
    throw Refusal("has an array on top: an archive made with ioreg -r has no root");
  }
  if (!PLIST_IS_DICT(top)) throw Refusal("has no dictionary on top");
  if (isObjectArchive(top)) {
    throw Refusal("was saved by a registry browser: use what 'ioreg -a -l -w0 -i' prints instead");
  }
  return EntryReader().read(top);
}

}  // namespace MemoryRegistry
