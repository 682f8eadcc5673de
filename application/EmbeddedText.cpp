#include "application/EmbeddedText.h"

namespace Program {

std::string textOf(const EmbeddedText& embedded) {
  std::size_t size = 0;
  for (std::size_t piece = 0; piece < embedded.pieceCount; ++piece)
    size += embedded.pieces[piece].size();
  std::string text;
  text.reserve(size);
  for (std::size_t piece = 0; piece < embedded.pieceCount; ++piece)
    text += embedded.pieces[piece];
  return text;
}

}  // namespace Program
