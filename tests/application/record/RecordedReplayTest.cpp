// A recording of a replay tells what the replay tells; an anonymised one the same of other names.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>
#include <utility>

#include "tests/application/support/Program.h"
#include "tests/application/support/TemporaryFolder.h"

namespace ProgramTest {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using testing::HasSubstr;
using testing::Not;

// Everything kept with the tests, the archives of real machines and the demo.
std::vector<std::string> keptRecordings() {
  std::vector<std::string> paths = {std::string(RAIDMONITOR_SOURCES) + "/application/demo"};
  for (const auto& entry : fs::directory_iterator(recording(""))) {
    if (entry.is_directory() && entry.path().filename() != "expected")
      paths.push_back(entry.path());
  }
  for (const auto& entry : fs::directory_iterator(UNPACKED))
    paths.push_back(entry.path());
  std::sort(paths.begin(), paths.end());
  return paths;
}

// The story of a registry, with the log when it is to be told to the letter.
std::string storyOf(const std::string& registry, bool withLog) {
  Arguments arguments = {"watch", "--json", "--registry", registry};
  if (withLog) arguments.emplace_back("--log");
  const Result result = run(arguments);
  EXPECT_EQ(0, result.status) << result.err;
  return result.out;
}

std::string recorded(const std::string& registry, const std::string& target, bool anonymised) {
  Arguments arguments = {"record", target, "--registry", registry};
  if (anonymised) arguments.emplace_back("--anonymise");
  const Result result = run(arguments);
  EXPECT_EQ(0, result.status) << result.err;
  return target;
}

// Which name stands for which: one for one.
class Renaming {
 public:
  bool holds(const std::string& kind, const std::string& original, const std::string& other) {
    const auto there = _forwards.emplace(kind + original, other).first->second;
    const auto back = _backwards.emplace(kind + other, original).first->second;
    return there == other && back == original;
  }

 private:
  std::map<std::string, std::string> _forwards;
  std::map<std::string, std::string> _backwards;
};

std::vector<std::string> componentsOf(const std::string& path) {
  std::vector<std::string> components;
  std::istringstream stream(path);
  for (std::string component; std::getline(stream, component, '/');)
    components.push_back(component);
  return components;
}

class SameStory {
 public:
  void expect(const std::string& original, const std::string& other) {
    const auto lines = linesOf(original);
    const auto others = linesOf(other);
    ASSERT_EQ(lines.size(), others.size());
    for (std::size_t line = 0; line < lines.size(); ++line) {
      EXPECT_TRUE(same("", json::parse(lines[line]), json::parse(others[line])))
          << lines[line] << "\n"
          << others[line];
    }
  }

 private:
  bool same(const std::string& key, const json& a, const json& b) {
    if (a.type() != b.type() || a.size() != b.size()) return false;
    if (a.is_object()) {
      for (const auto& [inner, value] : a.items()) {
        if (!b.contains(inner) || !same(inner, value, b[inner])) return false;
      }
      return true;
    }
    if (a.is_array()) {
      for (std::size_t place = 0; place < a.size(); ++place) {
        if (!same(key, a[place], b[place])) return false;
      }
      return true;
    }
    if (key == "path") return samePath(a, b);
    static const std::set<std::string> names = {"uuid", "name", "uid", "device"};
    if (names.count(key) == 0) return a == b;
    return _renaming.holds(key == "device" ? "uid" : key, a, b);
  }

  bool samePath(const std::string& a, const std::string& b) {
    const auto left = componentsOf(a);
    const auto right = componentsOf(b);
    if (left.size() != right.size() || a.size() != b.size()) return false;
    for (std::size_t place = 0; place < left.size(); ++place) {
      if (!_renaming.holds("component ", left[place], right[place])) return false;
    }
    return true;
  }

  Renaming _renaming;
};

void expectTheSameTwice(const std::string& registry) {
  SCOPED_TRACE(registry);
  const TemporaryFolder work;
  EXPECT_EQ(storyOf(registry, true), storyOf(recorded(registry, work.file("plain"), false), true));
  SameStory().expect(storyOf(registry, false),
                     storyOf(recorded(registry, work.file("anonymous"), true), false));
}

class KeptRecordings : public testing::TestWithParam<std::string> {};

TEST_P(KeptRecordings, AreRecordedAsTheyAre) { expectTheSameTwice(GetParam()); }

INSTANTIATE_TEST_SUITE_P(, KeptRecordings, testing::ValuesIn(keptRecordings()),
                         [](const auto& recorded) {
                           std::string name = fs::path(recorded.param).filename().string();
                           for (char& c : name)
                             if (std::isalnum(static_cast<unsigned char>(c)) == 0) c = '_';
                           return name;
                         });

class RandomRecordings : public testing::TestWithParam<int> {};

TEST_P(RandomRecordings, AreRecordedAsTheyAre) {
  const TemporaryFolder work;
  const std::string command = std::string("PYTHONDONTWRITEBYTECODE=1 " PYTHON " ") +
                              RAIDMONITOR_SOURCES "/tests/oracle/generate.py " +
                              std::to_string(GetParam()) + " " + work.file("random");
  ASSERT_EQ(0, std::system(command.c_str()));
  expectTheSameTwice(work.file("random"));
}

INSTANTIATE_TEST_SUITE_P(, RandomRecordings, testing::Range(1000, 1020));

TEST(AnonymisedDemo, HoldsNoOriginalAnywhere) {
  const TemporaryFolder work;
  const std::string target =
      recorded(std::string(RAIDMONITOR_SOURCES) + "/application/demo", work.file("demo"), true);
  int count = 0;
  for (const auto& entry : fs::directory_iterator(target)) {
    ++count;
    const std::string text = contentOf(entry.path());
    for (const char* original :
         {"C02EXAMPLE00", "Projects", "Archive", "Scratch", "0D4B7C11", "9A63E2F5", "B15D0F84"})
      EXPECT_THAT(text, Not(HasSubstr(original))) << entry.path();
  }
  EXPECT_EQ(13, count);
}

TEST(Recording, OfARecordingEndsWhereItIsToldTo) {
  const TemporaryFolder work;
  const std::string target = work.file("demo");
  ASSERT_EQ(0, run({"record", target, "--until", "9000"}).status);
  EXPECT_EQ(run({"watch", "--json", "--until", "9000"}).out,
            run({"watch", "--json", "--until", "9000", "--registry", target}).out);
}

}  // namespace
}  // namespace ProgramTest
