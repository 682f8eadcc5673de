#include "platform/registry/memory/archive/XMLPropertyListCheck.h"

#include <cstring>
#include <string_view>
#include <vector>

#include "platform/registry/memory/archive/ArchiveLimits.h"
#include "platform/registry/memory/archive/Refusal.h"
#include "platform/registry/memory/archive/Text.h"
#include "platform/registry/memory/archive/XMLScalars.h"
#include "platform/registry/memory/archive/XMLScanner.h"

namespace MemoryRegistry {
namespace {

// libplist moves the rest of a text for each reference in it (bytes moved), and looks through what
// is there already for each key of a large dictionary (bytes compared). About a second each.
constexpr std::uint64_t largestReferenceCost = 4'000'000'000;
constexpr std::uint64_t largestLookUpCost = 4'000'000'000;
constexpr std::size_t ordinaryDictionary = 500;

struct Container {
  Element element = Element::None;
  bool hasKey = false;  // a dictionary whose last key waits for its value
  std::size_t keys = 0;
  std::size_t keyBytes = 0;
};

class Check {
 public:
  Check(const char* data, std::size_t size, std::uint64_t memoryLimit)
      : _scanner(data, size), _memoryLimit(memoryLimit) {}

  void run() {
    _scanner.skipProlog();
    readList();
    _scanner.skipBlanksAndComments();
    if (!_scanner.atEnd()) _scanner.fail("something follows the list");
    checkCosts();
  }

 private:
  void readList() {
    const Tag list = _scanner.readTag();
    if (list.element() != Element::PList || list.isEnd) _scanner.fail("<plist> is missing");
    do {
      readElement(_scanner.readTag());
    } while (!_open.empty());
    const Tag end = _scanner.readTag();
    if (end.element() != Element::PList || !end.isEnd) _scanner.fail("</plist> is missing");
  }

  void readElement(Tag tag) {
    if (tag.isEnd) return close(tag);
    const Element element = tag.element();
    if (element == Element::Key) {
      beginKey(tag);
    } else {
      beginValue();
      if (element == Element::Dictionary || element == Element::Array) return open(tag);
      if (element == Element::PList) _scanner.fail("<plist> within <plist>");
      if (tag.isEmpty) return readScalar(element, {});
      if (element == Element::Integer && readPlainInteger()) return;
    }
    const XMLScanner::Text text = _scanner.readText(tag);
    if (text.references != 0) countReferenceCost(text.references * text.raw.size());
    _scanner.readEndTag(tag);
    if (element == Element::Key) return countKey(text.raw.size());
    readScalar(element, text.raw);
  }

  // ---- Containers ----

  void open(Tag tag) {
    _cost += containerCost;
    if (tag.isEmpty) return;
    if (_open.size() == deepestContainer) {
      throw Refusal("is nested deeper than " + decimal(deepestEntry) + " levels");
    }
    Container container;
    container.element = tag.element();
    _open.push_back(container);
  }

  void close(Tag tag) {
    if (_open.empty() || tag.element() != _open.back().element)
      _scanner.fail("an end tag without its begin");
    const Container& container = _open.back();
    if (container.hasKey) _scanner.fail("a key without a value");
    if (container.keys > ordinaryDictionary) {
      _lookUpCost += container.keys * (container.keyBytes + 16 * container.keys);
      if (_lookUpCost > largestLookUpCost) throw Refusal("has a dictionary with too many keys");
    }
    _open.pop_back();
  }

  // ---- Keys and values ----

  void beginKey(Tag tag) {
    if (_open.empty() || _open.back().element != Element::Dictionary || _open.back().hasKey) {
      _scanner.fail("a key out of place");
    }
    // libplist rejects an empty element here, though not an empty key.
    if (tag.isEmpty) _scanner.fail("an empty key");
  }

  void countKey(std::size_t length) {
    Container& container = _open.back();
    container.hasKey = true;
    ++container.keys;
    container.keyBytes += length;
    _cost += keyCost + 2 * length;
  }

  void beginValue() {
    if (_open.empty() || _open.back().element != Element::Dictionary) return;
    if (!_open.back().hasKey) _scanner.fail("a value without a key");
    _open.back().hasKey = false;
  }

  bool readPlainInteger() {
    const std::size_t length = _scanner.readPlainInteger();
    if (length == 0) return false;
    _cost += textCost + 2 * length;
    return true;
  }

  void readScalar(Element element, std::string_view text) {
    switch (element) {
      case Element::Integer:
        if (!isInteger(text)) _scanner.fail("an integer that cannot be read");
        break;
      case Element::Real:
        if (!isReal(text)) _scanner.fail("a real number that cannot be read");
        break;
      case Element::Data:
        if (!isBase64(text)) _scanner.fail("data that is no base64");
        break;
      case Element::Boolean:
        if (!text.empty()) _scanner.fail("text within a boolean");
        break;
      default:
        break;
    }
    _cost += textCost + 2 * text.size();
  }

  // ---- Costs ----

  void countReferenceCost(std::uint64_t cost) {
    _referenceCost += cost;
    if (_referenceCost > largestReferenceCost) throw Refusal("has a text with too many references");
  }

  void checkCosts() const {
    if (_cost + _scanner.size() > _memoryLimit) {
      throw TooRepetitive();
    }
  }

  XMLScanner _scanner;
  std::uint64_t _memoryLimit;
  std::vector<Container> _open;
  std::uint64_t _cost = 0;
  std::uint64_t _lookUpCost = 0;
  std::uint64_t _referenceCost = 0;
};

}  // namespace

void checkXMLPropertyList(const char* data, std::size_t size, std::uint64_t memoryLimit) {
  if (std::memchr(data, 0, size) != nullptr) {
    throw Refusal("is not a property list: it has a zero byte");
  }
  if (!isUTF8(data, size)) throw Refusal("is not a property list: its text is not UTF-8");
  Check(data, size, memoryLimit).run();
}

}  // namespace MemoryRegistry
