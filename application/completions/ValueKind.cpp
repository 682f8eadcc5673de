#include "application/completions/ValueKind.h"

#include <map>
#include <stdexcept>

namespace Program {

const ValueKind& valueKindOf(const std::string& word) {
  using Completion = ValueKind::Completion;
  static const std::map<std::string, ValueKind> kinds = {
      {"DIR", {Completion::Folder, {}}},
      {"FILE", {Completion::Path, {}}},
      {"MS", {}},
      {"N", {}},
      {"PATH", {Completion::Path, {}}},
      {"PROGRAM", {Completion::Executable, {}}},
      {"SHELL", {Completion::Words, {"bash", "zsh", "fish"}}},
      {"TEXT", {}},
      {"UUID", {}},
      {"WHEN", {Completion::Words, {"auto", "always", "never"}}},
  };
  const auto kind = kinds.find(word);
  if (kind == kinds.end()) throw std::logic_error("no completion is known for " + word);
  return kind->second;
}

}  // namespace Program
