#include "tests/faults/SeamTrace.h"

#include <cstring>
#include <unordered_set>

#include "platform/registry/memory/MemoryRegistry.h"
#include "tests/support/FailingMemory.h"

// The linker sends the library's calls to __wrap_NAME, and knows the operation itself as
// __real_NAME. The operations have C++ linkage, hence the mangled names.
#define WRAPPED(name) __asm__("__wrap_" name)
#define REAL(name) __asm__("__real_" name)
#define FROM_PATH "_Z23IORegistryEntryFromPathjPKc"
#define CREATE_ITERATOR "_Z29IORegistryEntryCreateIteratorjPKcjPj"
#define NEXT "_Z14IOIteratorNextj"
#define CONFORMS_TO "_ZN14MemoryRegistry10conformsToEjPKcm"
#define GET_PATH "_Z22IORegistryEntryGetPathjPKcPc"
#define GET_CHILD "_Z28IORegistryEntryGetChildEntryjPKcPj"
#define NUMBER_GET_VALUE "_Z16CFNumberGetValuePK10__CFNumberlPv"

io_registry_entry_t realFromPath(mach_port_t port, const char* path) REAL(FROM_PATH);
kern_return_t realCreateIterator(io_registry_entry_t entry, const char* plane, IOOptionBits options,
                                 io_iterator_t* iterator) REAL(CREATE_ITERATOR);
io_object_t realNext(io_iterator_t iterator) REAL(NEXT);
boolean_t realConformsTo(io_object_t object, const char* className, std::size_t length)
    REAL(CONFORMS_TO);
kern_return_t realGetPath(io_registry_entry_t entry, const char* plane, char* path) REAL(GET_PATH);
kern_return_t realGetChild(io_registry_entry_t entry, const char* plane, io_registry_entry_t* child)
    REAL(GET_CHILD);
Boolean realNumberGetValue(CFNumberRef number, CFNumberType type, void* value)
    REAL(NUMBER_GET_VALUE);

io_registry_entry_t wrapFromPath(mach_port_t port, const char* path) WRAPPED(FROM_PATH);
kern_return_t wrapCreateIterator(io_registry_entry_t entry, const char* plane, IOOptionBits options,
                                 io_iterator_t* iterator) WRAPPED(CREATE_ITERATOR);
io_object_t wrapNext(io_iterator_t iterator) WRAPPED(NEXT);
boolean_t wrapConformsTo(io_object_t object, const char* className, std::size_t length)
    WRAPPED(CONFORMS_TO);
kern_return_t wrapGetPath(io_registry_entry_t entry, const char* plane, char* path)
    WRAPPED(GET_PATH);
kern_return_t wrapGetChild(io_registry_entry_t entry, const char* plane, io_registry_entry_t* child)
    WRAPPED(GET_CHILD);
Boolean wrapNumberGetValue(CFNumberRef number, CFNumberType type, void* value)
    WRAPPED(NUMBER_GET_VALUE);

namespace FaultTest {
namespace {

using TestSupport::PlentyOfMemory;
using Kind = TraceEvent::Kind;

std::vector<TraceEvent> storage;  // used again and again
std::vector<TraceEvent>* current = nullptr;

const char* lasting(const std::string& text) {
  static std::unordered_set<std::string> texts;
  return texts.insert(text).first->c_str();
}

// Before the operation, which may throw; its place, to enter what came of it.
std::size_t begin(Kind kind, unsigned argument = 0, const char* name = "") {
  if (current == nullptr) return 0;
  if (current->size() == current->capacity()) {
    const PlentyOfMemory plenty;
    current->reserve(2 * current->size() + 4096);
  }
  TraceEvent& event = current->emplace_back();
  event.kind = kind;
  event.argument = argument;
  event.name = name;
  return current->size() - 1;
}

void end(std::size_t place, unsigned result) {
  if (current != nullptr) (*current)[place].result = result;
}

void endWithEntry(std::size_t place, unsigned result) {
  end(place, result);
  if (current != nullptr && result != 0) (*current)[place].id = MemoryRegistry::entryOf(result);
}

}  // namespace

bool isSameStep(const TraceEvent& a, const TraceEvent& b) {
  const bool isHandle = a.kind != Kind::ConformsTo && a.kind != Kind::Number;
  return a.kind == b.kind && a.options == b.options && a.id == b.id &&
         (a.name == b.name || std::strcmp(a.name, b.name) == 0) &&
         (isHandle ? (a.result == 0) == (b.result == 0) : a.result == b.result);
}

SeamTrace::SeamTrace() {
  forget();
  current = &storage;
}
SeamTrace::~SeamTrace() { current = nullptr; }

const std::vector<TraceEvent>& SeamTrace::events() const { return storage; }

void SeamTrace::forget() { storage.clear(); }
void SeamTrace::mark(bool thrown) {
  const auto place = begin(Kind::Mark);
  if (current != nullptr) (*current)[place].options = thrown ? 1 : 0;
}
void SeamTrace::log(const std::string& text) { begin(Kind::Log, 0, lasting(text)); }

}  // namespace FaultTest

using FaultTest::begin;
using FaultTest::current;
using FaultTest::end;
using FaultTest::endWithEntry;
using FaultTest::Kind;

io_registry_entry_t wrapFromPath(mach_port_t port, const char* path) {
  const auto place = begin(Kind::EntryFromPath);
  const io_registry_entry_t entry = realFromPath(port, path);
  endWithEntry(place, entry);
  return entry;
}

kern_return_t wrapCreateIterator(io_registry_entry_t entry, const char* plane, IOOptionBits options,
                                 io_iterator_t* iterator) {
  const auto place = begin(Kind::CreateIterator, entry);
  const kern_return_t result = realCreateIterator(entry, plane, options, iterator);
  end(place, result == kIOReturnSuccess ? *iterator : 0);
  if (current != nullptr) (*current)[place].options = options;
  return result;
}

io_object_t wrapNext(io_iterator_t iterator) {
  const auto place = begin(Kind::Next, iterator);
  const io_object_t entry = realNext(iterator);
  endWithEntry(place, entry);
  return entry;
}

boolean_t wrapConformsTo(io_object_t object, const char* className, std::size_t length) {
  const auto place = begin(Kind::ConformsTo, object, className);
  const boolean_t result = realConformsTo(object, className, length);
  end(place, result != 0 ? 1 : 0);
  return result;
}

kern_return_t wrapGetPath(io_registry_entry_t entry, const char* plane, char* path) {
  const auto place = begin(Kind::GetPath, entry);
  const kern_return_t result = realGetPath(entry, plane, path);
  end(place, 0);
  if (current != nullptr && result == kIOReturnSuccess) {
    const TestSupport::PlentyOfMemory plenty;
    (*current)[place].name = FaultTest::lasting(path);
  }
  return result;
}

kern_return_t wrapGetChild(io_registry_entry_t entry, const char* plane,
                           io_registry_entry_t* child) {
  const auto place = begin(Kind::GetChild, entry);
  const kern_return_t result = realGetChild(entry, plane, child);
  endWithEntry(place, *child);
  return result;
}

Boolean wrapNumberGetValue(CFNumberRef number, CFNumberType type, void* value) {
  const auto place = begin(Kind::Number);
  const Boolean result = realNumberGetValue(number, type, value);
  end(place, result != 0 ? static_cast<unsigned>(*static_cast<const std::int64_t*>(value)) : ~0U);
  return result;
}
