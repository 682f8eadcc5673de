#include "application/EmbeddedText.h"

namespace Program {

std::string textOf(const EmbeddedText& embedded) {
  std::string text;
  for (std::size_t piece = 0; piece < embedded.pieceCount; ++piece)
    text += embedded.pieces[piece];
  return text;
}

}  // namespace Program
