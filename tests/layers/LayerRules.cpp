#include "tests/layers/LayerRules.h"

#include <algorithm>
#include <regex>
#include <sstream>

namespace LayersTest {

namespace {

using Strings = std::vector<std::string>;

constexpr int longestFile = 500;

bool startsWith(const std::string& text, const std::string& start) {
  return text.compare(0, start.size(), start) == 0;
}

bool endsWith(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

// Matches a folder with everything in it ("model/"), a folder without its subfolders
// ("platform/registry/*"), or one file.
bool isWithin(const std::string& path, const std::string& place) {
  if (endsWith(place, "/")) return startsWith(path, place);
  if (!endsWith(place, "/*")) return path == place;
  const std::string folder = place.substr(0, place.size() - 1);
  return startsWith(path, folder) && path.find('/', folder.size()) == std::string::npos;
}

bool isWithinAny(const std::string& path, const Strings& places) {
  return std::any_of(places.begin(), places.end(),
                     [&](const std::string& place) { return isWithin(path, place); });
}

struct Rule {
  std::string place;  // the first rule whose place fits a file is the file's
  Strings mayInclude;
};

const std::vector<Rule>& rules() {
  static const std::string exports = "RAIDMonitoringExport.h";  // generated into the root
  static const std::vector<Rule> all = {
      // The concrete monitor makes the hosts that the abstract one knows as RAIDHost.
      {"monitor/RAIDMonitorMac.cpp", {"monitor/", "thunderbolt/", "model/", "platform/pelago/"}},
      {"monitor/", {"monitor/", "model/", "platform/pelago/", exports}},
      {"thunderbolt/",
       {"thunderbolt/", "model/", "platform/pelago/", "platform/registry/*", exports}},
      {"model/", {"model/", "platform/pelago/", "platform/registry/*", exports}},
      {"platform/pelago/", {"platform/pelago/"}},
      // Neither backend knows the other; the seam's header chooses between them.
      {"platform/registry/*", {"platform/registry/"}},
      {"platform/registry/memory/", {"platform/registry/*", "platform/registry/memory/"}},
      {"platform/registry/iokit/", {"platform/registry/*", "platform/registry/iokit/"}},
      {"application/",
       {"application/", "monitor/", "model/", "platform/pelago/", "platform/registry/Registry.h",
        "platform/registry/IOKitUtilities.h", "platform/registry/Vocabulary.h",
        "platform/registry/RegistryReferences.h", "platform/registry/memory/"}},
  };
  return all;
}

const Strings& productFolders() {
  static const Strings folders = {"monitor/", "thunderbolt/", "model/", "platform/",
                                  "application/"};
  return folders;
}

bool isOfTheProject(const std::string& include) {
  return isWithinAny(include, productFolders()) || startsWith(include, "tests/") ||
         startsWith(include, "bench/");
}

// One file under examination; what is found goes into the common list.
class Examination {
 public:
  Examination(const SourceFile& file, Strings& violations) : _file(file), _violations(violations) {}

  void examine() {
    std::istringstream lines(_file.content);
    for (std::string line; std::getline(lines, line);) {
      ++_line;
      examineLine(line);
    }
    if (endsWith(_file.path, ".h") && !_pragmaOnce) report("a header without #pragma once");
    if (isProduct() && _line > longestFile)
      report("has " + std::to_string(_line) + " lines, more than " + std::to_string(longestFile));
  }

  bool includesMemoryRegistry() const { return _includesMemoryRegistry; }

 private:
  bool isProduct() const { return isWithinAny(_file.path, productFolders()); }

  void examineLine(const std::string& line) {
    static const std::regex include(R"(^\s*#\s*include\s*([<"])([^>"]*)[>"].*)");
    static const std::regex pragmaOnce(R"(^\s*#\s*pragma\s+once\b.*)");
    static const std::regex macOSTest(R"(^\s*#\s*(if|ifdef|ifndef|elif)\b.*\b__APPLE__\b.*)");
    std::smatch match;
    if (std::regex_match(line, match, include)) {
      examineInclude(match[2], match[1] == "\"");
    } else if (std::regex_match(line, pragmaOnce)) {
      _pragmaOnce = true;
    } else if (std::regex_match(line, macOSTest) && !startsWith(_file.path, "platform/registry/")) {
      report("only platform/registry/ may test for macOS", _line);
    }
  }

  void examineInclude(const std::string& included, bool quoted) {
    const bool framework =
        startsWith(included, "IOKit/") || startsWith(included, "CoreFoundation/");
    if (framework && !startsWith(_file.path, "platform/registry/"))
      report("only platform/registry/ may include " + included, _line);
    if (startsWith(included, "platform/registry/memory/")) _includesMemoryRegistry = true;
    if (isProduct() && (quoted || isOfTheProject(included))) examineDirection(included);
  }

  void examineDirection(const std::string& included) {
    const auto rule = std::find_if(rules().begin(), rules().end(), [&](const Rule& candidate) {
      return isWithin(_file.path, candidate.place);
    });
    if (rule == rules().end()) {
      report("no rule says what may be included here", _line);
    } else if (!isWithinAny(included, rule->mayInclude)) {
      report(rule->place + " may not include " + included, _line);
    }
  }

  void report(const std::string& what, int line = 0) {
    const std::string place = line == 0 ? "" : ":" + std::to_string(line);
    _violations.push_back(_file.path + place + ": " + what);
  }

  const SourceFile& _file;
  Strings& _violations;
  int _line = 0;
  bool _pragmaOnce = false;
  bool _includesMemoryRegistry = false;
};

}  // namespace

std::vector<std::string> violationsIn(const std::vector<SourceFile>& files) {
  Strings violations;
  Strings loaders;
  for (const SourceFile& file : files) {
    Examination examination(file, violations);
    examination.examine();
    if (startsWith(file.path, "application/") && examination.includesMemoryRegistry())
      loaders.push_back(file.path);
  }
  for (std::size_t i = 1; i < loaders.size(); ++i)
    violations.push_back(loaders[i] + ": " + loaders[0] +
                         " already is the application's one file that includes "
                         "platform/registry/memory/");
  return violations;
}

}  // namespace LayersTest
