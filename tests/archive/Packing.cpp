#include "tests/archive/Packing.h"

#include <zlib.h>

#include <new>
#include <stdexcept>

std::string packed(const std::string& bytes) {
  z_stream stream{};
  if (deflateInit2(&stream, 9, Z_DEFLATED, MAX_WBITS + 16, 8, Z_DEFAULT_STRATEGY) != Z_OK) {
    throw std::bad_alloc();
  }
  std::string result(deflateBound(&stream, bytes.size()), '\0');
  std::string input = bytes;
  stream.next_in = reinterpret_cast<Bytef*>(input.data());
  stream.avail_in = static_cast<uInt>(input.size());
  stream.next_out = reinterpret_cast<Bytef*>(result.data());
  stream.avail_out = static_cast<uInt>(result.size());
  if (deflate(&stream, Z_FINISH) != Z_STREAM_END) throw std::runtime_error("deflate");
  result.resize(stream.total_out);
  deflateEnd(&stream);
  return result;
}
