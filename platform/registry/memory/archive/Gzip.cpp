#include "platform/registry/memory/archive/Gzip.h"

#include <zlib.h>

#include <algorithm>
#include <cstring>
#include <new>

#include "platform/registry/memory/archive/Refusal.h"

namespace MemoryRegistry {
namespace {

// No byte of deflated data stands for more than these.
constexpr std::size_t highestRatio = 1032;

// The size that the last four bytes state, of the last member and without its upper bits: no more
// than a good guess at what will be needed.
std::size_t statedSize(std::string_view bytes) {
  std::size_t size = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    size = size << 8U | static_cast<unsigned char>(bytes[bytes.size() - 1 - i]);
  }
  return size;
}

class Unpacker {
 public:
  Unpacker(std::string_view bytes, std::size_t largest) : _largest(largest) {
    constexpr int gzipOnly = 16;
    if (::inflateInit2(&_stream, MAX_WBITS + gzipOnly) != Z_OK) throw std::bad_alloc();
    // The type is not const; zlib does not write there.
    _stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
    _stream.avail_in = static_cast<uInt>(bytes.size());
    const std::size_t most = std::min(_largest, bytes.size() * highestRatio);
    // One byte more, so that the end is met without growing.
    grow(std::clamp<std::size_t>(statedSize(bytes), 1024, std::max<std::size_t>(most, 1024)) + 1);
  }
  ~Unpacker() { ::inflateEnd(&_stream); }
  Unpacker(const Unpacker&) = delete;
  Unpacker& operator=(const Unpacker&) = delete;

  FileContent run() {
    do {
      unpackMember();
    } while (nextMember());
    if (_content.size == 0) throw Refusal("is empty once unpacked");
    return std::move(_content);
  }

 private:
  void unpackMember() {
    int status = Z_OK;
    while (status != Z_STREAM_END) {
      if (_content.size == _capacity) grow(2 * _capacity);
      const std::size_t room = _capacity - _content.size;
      _stream.next_out = reinterpret_cast<Bytef*>(_content.bytes.get() + _content.size);
      _stream.avail_out = static_cast<uInt>(room);
      status = ::inflate(&_stream, Z_NO_FLUSH);
      _content.size += room - _stream.avail_out;
      check(status);
    }
  }

  void check(int status) const {
    if (_content.size > _largest) {
      throw Refusal("unpacks to more than " + std::to_string(_largest >> 20U) +
                    " MiB: unpack it first");
    }
    if (status == Z_OK || status == Z_STREAM_END) return;
    if (status == Z_MEM_ERROR) throw std::bad_alloc();
    throw Refusal(status == Z_BUF_ERROR && _stream.avail_in == 0
                      ? "has gzip data that are cut off"
                      : "has gzip data that are damaged");
  }

  // True when another member follows the one that has ended.
  bool nextMember() {
    if (_stream.avail_in == 0) return false;
    if (!isGzip({reinterpret_cast<const char*>(_stream.next_in), _stream.avail_in})) {
      throw Refusal("has something after its gzip data");
    }
    ::inflateReset(&_stream);
    return true;
  }

  void grow(std::size_t capacity) {
    capacity = std::min(capacity, _largest + 1);
    std::unique_ptr<char[]> bytes(new char[capacity]);
    if (_content.size != 0) std::memcpy(bytes.get(), _content.bytes.get(), _content.size);
    _content.bytes = std::move(bytes);
    _capacity = capacity;
  }

  std::size_t _largest;
  std::size_t _capacity = 0;
  FileContent _content;
  z_stream _stream{};
};

}  // namespace

bool isGzip(std::string_view bytes) { return bytes.substr(0, 2) == "\x1F\x8B"; }

FileContent unpackGzip(std::string_view bytes, std::size_t largest) {
  if (bytes.size() < 18) throw Refusal("has gzip data that are cut off");
  return Unpacker(bytes, largest).run();
}

}  // namespace MemoryRegistry
