#pragma once

#include <string>
#include <vector>

namespace Program {

// What may stand for an option's value, by the word that the help has for it.
struct ValueKind {
  enum class Completion { None, Path, Folder, Executable, Words };

  Completion completion = Completion::None;
  std::vector<std::string> words;  // for Words
};

// Throws std::logic_error for a word that it does not know: a new one has to be entered here.
const ValueKind& valueKindOf(const std::string& word);

}  // namespace Program
