#pragma once

#include <string>
#include <string_view>

namespace Program {

// Text from a registry, or from a user, on its way to a screen. What it says is not trusted.

enum class Charset { ASCII, Unicode };

// One column or two per character, nothing that the terminal would obey or that would turn the text
// around it: those, what is not UTF-8, and what the charset can't show become a replacement.
std::string printable(std::string_view utf8, Charset charset);

// The columns that a printable text takes.
int columnsOf(std::string_view utf8);

// At most so many columns; what is cut off is marked.
std::string clipped(const std::string& utf8, int columns, Charset charset);

// Exactly so many columns: clipped, or filled up with blanks.
std::string padded(const std::string& utf8, int columns, Charset charset);

}  // namespace Program
