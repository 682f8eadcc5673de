#include "tests/slots/SourceClasses.h"

#include <algorithm>
#include <initializer_list>
#include <regex>

namespace SlotsTest {

namespace {

using Tokens = std::vector<std::string>;

// Qualified names are one token; comments, literals and preprocessor lines are none.
Tokens tokensOf(const std::string& source) {
  static const std::regex silent(
      R"re(//[^\n]*|/\*[^]*?\*/|R"\(([^]*?)\)"|"(\\.|[^"\\\n])*"|'(\\.|[^'\\\n])*'|(^|\n)[ \t]*#[^\n]*)re");
  static const std::regex token(R"(~?[A-Za-z_]\w*(::~?[A-Za-z_]\w*)*|[^\s\w])");
  const std::string text = std::regex_replace(source, silent, "\n");
  return {std::sregex_token_iterator(text.begin(), text.end(), token), {}};
}

bool isOneOf(const std::string& token, std::initializer_list<const char*> words) {
  return std::any_of(words.begin(), words.end(), [&](const char* word) { return token == word; });
}

bool isName(const std::string& token) {
  return token.size() > 1 || std::isalpha(static_cast<unsigned char>(token[0])) != 0;
}

// Behind the brace that closes the one at `open`.
std::size_t behindBlock(const Tokens& tokens, std::size_t open) {
  int depth = 0;
  for (std::size_t at = open; at < tokens.size(); ++at) {
    if (tokens[at] == "{") ++depth;
    if (tokens[at] == "}" && --depth == 0) return at + 1;
  }
  return tokens.size();
}

// One declaration of a class's body, without template arguments and what stands in braces.
class Declaration {
 public:
  void add(const std::string& token) {
    if (token == "<") ++_angles;
    if (_angles == 0) _tokens.push_back(token);
    if (token == ">") --_angles;
  }
  bool isAccessLabel() const {
    return _tokens.size() == 1 && isOneOf(_tokens[0], {"public", "protected", "private"});
  }
  bool isOperation() const { return has("("); }
  bool isVirtual() const { return has("virtual") || has("override"); }
  bool opensBlockOfItsOwn() const { return isOperation() || isType(); }

  // Empty when it declares no field.
  std::string field() const {
    if (_tokens.empty() || isOperation() || isType()) return {};
    if (isOneOf(_tokens[0], {"using", "friend", "typedef", "static"})) return {};
    std::string name;
    for (const std::string& token : _tokens) {
      if (isOneOf(token, {"=", "["})) break;
      if (isName(token)) name = token;
    }
    return name;
  }

 private:
  bool has(const char* token) const {
    return std::find(_tokens.begin(), _tokens.end(), token) != _tokens.end();
  }
  bool isType() const {
    return !_tokens.empty() &&
           isOneOf(_tokens[0], {"class", "struct", "enum", "union", "template"});
  }

  Tokens _tokens;
  int _angles = 0;
};

void readBody(const Tokens& body, SourceClass& read) {
  Declaration declaration;
  const auto finish = [&] {
    if (declaration.isVirtual()) read.declaresVirtual = true;
    if (const std::string field = declaration.field(); !field.empty()) read.fields.push_back(field);
    declaration = {};
  };
  for (std::size_t at = 0; at < body.size();) {
    if (body[at] == "{") {
      at = behindBlock(body, at);
      // What follows a field's braces is its semicolon; the braces of others end them.
      if (declaration.opensBlockOfItsOwn()) finish();
      continue;
    }
    if (body[at] == ";") {
      finish();
    } else if (body[at] == ":" && declaration.isAccessLabel()) {
      declaration = {};
    } else {
      declaration.add(body[at]);
    }
    ++at;
  }
}

// The head of a definition: from behind "class" or "struct" to its brace. The name is the last one
// before the bases, behind export macros.
void readHead(const Tokens& head, SourceClass& read) {
  const auto colon = std::find(head.begin(), head.end(), ":");
  for (auto at = head.begin(); at != colon; ++at) {
    if (isName(*at) && *at != "final") read.name = *at;
  }
  for (auto at = colon; at != head.end(); ++at) {
    if (isName(*at) && !isOneOf(*at, {"public", "protected", "private", "virtual"}))
      read.bases.push_back(*at);
  }
}

void readClasses(const Tokens& tokens, const std::string& outer, std::vector<SourceClass>& found) {
  for (std::size_t at = 0; at < tokens.size(); ++at) {
    if (!isOneOf(tokens[at], {"class", "struct"})) continue;
    // A template's parameter, or an enumeration.
    if (at > 0 && isOneOf(tokens[at - 1], {"<", ",", "enum"})) continue;
    std::size_t end = at + 1;
    while (end < tokens.size() && !isOneOf(tokens[end], {"{", ";", "(", ")", "="}))
      ++end;
    if (end == tokens.size() || tokens[end] != "{") continue;
    const std::size_t behind = behindBlock(tokens, end);
    const auto position = [&](std::size_t index) {
      return tokens.begin() + static_cast<std::ptrdiff_t>(index);
    };
    const Tokens body(position(end + 1), position(behind - 1));
    SourceClass read;
    readHead({position(at + 1), position(end)}, read);
    readBody(body, read);
    read.name = outer + read.name;
    found.push_back(read);
    readClasses(body, read.name + "::", found);
    at = behind - 1;
  }
}

std::string lastPart(const std::string& name) {
  const std::size_t colon = name.rfind(':');
  return colon == std::string::npos ? name : name.substr(colon + 1);
}

}  // namespace

std::vector<SourceClass> classesIn(const std::string& source) {
  std::vector<SourceClass> found;
  readClasses(tokensOf(source), "", found);
  return found;
}

std::set<std::string> polymorphicAmong(const std::vector<SourceClass>& classes) {
  std::set<std::string> names;
  std::set<std::string> lastParts;
  // A class's base may be read after it: once more until nothing is found any more.
  for (std::size_t before = names.size() + 1; before != names.size();) {
    before = names.size();
    for (const SourceClass& candidate : classes) {
      const bool inherits = std::any_of(
          candidate.bases.begin(), candidate.bases.end(),
          [&](const std::string& base) { return lastParts.count(lastPart(base)) != 0; });
      if (!candidate.declaresVirtual && !inherits) continue;
      names.insert(candidate.name);
      lastParts.insert(lastPart(candidate.name));
    }
  }
  return names;
}

}  // namespace SlotsTest
