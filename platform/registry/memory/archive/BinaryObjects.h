#pragma once

#include <cstddef>
#include <cstdint>

namespace MemoryRegistry {

// One object of a binary property list. Keys of a dictionary come first among its references, then
// as many values.
struct BinaryObject {
  enum class Kind { Scalar, ByteString, WideString, Array, Dictionary };
  bool isString() const { return kind == Kind::ByteString || kind == Kind::WideString; }

  Kind kind = Kind::Scalar;
  std::size_t bytes = 0;       // of text or data
  std::size_t references = 0;  // to other objects
  const unsigned char* first = nullptr;
};

// The objects of a binary property list, by number. Everything read is within the file: what isn't
// throws Refusal. Keeps the pointer, not the bytes.
class BinaryObjects {
 public:
  BinaryObjects(const char* data, std::size_t size);

  std::size_t count() const { return _count; }
  std::size_t top() const { return _top; }
  BinaryObject object(std::size_t number) const;
  // The number that the n-th reference of the object names.
  std::size_t reference(const BinaryObject& object, std::size_t n) const;
  // What a text holds must be text; costs time in its length.
  void checkString(const BinaryObject& string) const;

 private:
  using Byte = unsigned char;

  BinaryObject container(BinaryObject::Kind kind, unsigned low, const Byte* at) const;
  BinaryObject bytes(BinaryObject::Kind kind, unsigned low, const Byte* at) const;
  void checkInteger(unsigned low, const Byte* at) const;
  std::size_t length(unsigned low, const Byte*& at) const;
  void need(const Byte* at, std::uint64_t bytes) const;

  const Byte* _begin;
  const Byte* _table = nullptr;  // the offsets; the objects end here
  std::size_t _offsetSize = 0;
  std::size_t _referenceSize = 0;
  std::size_t _count = 0;
  std::size_t _top = 0;
};

}  // namespace MemoryRegistry
