// Names, UUIDs, texts and paths that whoever made a disk, an enclosure or an archive has chosen, on
// their way to people, to programs and into the log.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <regex>

#include "tests/application/support/Program.h"

namespace ProgramTest {
namespace {

using testing::HasSubstr;
using testing::Not;

const std::string SetUUID = "F615BF1C-4C1D-9C81-69F1-742FEF48DAFE";

// What a terminal would obey, what would begin a new line, what would turn the text around it, and
// what is a control on a terminal of 8 bits only.
const struct {
  const char* name;
  const char* inXML;
  const char* text;
} Hostile[] = {
    {"clears the screen", "&#27;[2J", "\x1b[2J"},
    {"sets the title", "&#27;]0;owned&#7;", "\x1b]0;owned\x07"},
    {"asks for the terminal's state", "&#27;[6n&#5;", "\x1b[6n\x05"},
    {"C1 controls", "&#x9B;31m&#x90;q&#x9C;", "\u009b31m\u0090q\u009c"},
    {"a line of its own", "&#10;00:00.000 gone everything&#13;", "\n00:00.000 gone everything\r"},
    {"other ends of lines", "&#x85;&#x2028;&#x2029;&#11;&#12;", "\u0085\u2028\u2029\x0b\x0c"},
    {"the other direction", "&#x202E;enilno&#x2066;", "\u202eenilno\u2066"},
    {"what cannot be seen", "&#x200B;&#x2060;&#xFEFF;&#xE0041;", "\u200b\u2060\ufeff\U000e0041"},
    {"backspaces", "&#8;&#8;&#127;", "\b\b\x7f"},
};

std::string replaced(std::string text, const std::string& old, const std::string& with) {
  std::size_t count = 0;
  for (auto at = text.find(old); at != std::string::npos; at = text.find(old, at + with.size())) {
    text.replace(at, old.size(), with);
    ++count;
  }
  EXPECT_LT(0U, count) << "the recording has changed: no " << old;
  return text;
}

// A mirror that degrades and comes back; all of its names carry the hostile text.
class HostileNames : public testing::Test {
 protected:
  HostileNames() { std::filesystem::create_directory(folder); }
  ~HostileNames() override { std::filesystem::remove_all(folder); }

  std::string recordingWith(const std::string& inXML) const {
    for (const auto& entry :
         std::filesystem::directory_iterator(recording("two-bay-mirror-degrades"))) {
      std::string text = contentOf(entry.path());
      for (const char* name : {"Projects", "Example Storage", "Two Bay", "IOPP"})
        text = replaced(text, name, std::string(name) + inXML);
      text = replaced(text, SetUUID, SetUUID.substr(0, 4) + inXML);
      std::ofstream(folder / entry.path().filename()) << text;
    }
    return folder;
  }

  const std::filesystem::path folder =
      std::filesystem::path(testing::TempDir()) /
      ("raidmonitor-" + std::to_string(getpid()) + "-" +
       testing::UnitTest::GetInstance()->current_test_info()->name());
};

// Without what the program itself sends to a terminal: colours, the ends of lines, and the progress
// bar, which a busy machine has time to show.
std::string withoutOwnCodes(const std::string& text) {
  const std::regex codes(
      "\x1b\\[[0-9;]*m|\r(?=\n)|\r((Reading|Replaying) [ #.%0-9\\[\\]]+)?\x1b\\[K\r?");
  return std::regex_replace(text, codes, "");
}

// Nothing that a terminal obeys, in UTF-8 or in 8 bits; nothing that changes what is around it.
void expectHarmless(const std::string& text, const std::string& what) {
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    EXPECT_TRUE(byte == '\n' || (byte >= 0x20 && byte != 0x7F)) << what << ": " << int{byte};
  }
  const std::regex harmful(
      "\u0085|\u0090|\u009b|\u009c|\u2028|\u2029|\u202e|\u2066|\u200b|\u2060|\ufeff");
  EXPECT_FALSE(std::regex_search(text, harmful)) << what << "\n" << text;
}

Launch onTerminals() {
  Launch launch;
  launch.output = Launch::Output::Terminal;
  launch.errorsOnTerminal = true;
  return launch;
}

TEST_F(HostileNames, NeverReachATerminalAsMoreThanText) {
  for (const auto& hostile : Hostile) {
    const std::string registry = recordingWith(hostile.inXML);
    for (const char* command : {"watch", "list", "slots"}) {
      const Result shown = run({command, "--log", "--registry", registry}, onTerminals());
      EXPECT_EQ(0, shown.status);
      EXPECT_THAT(shown.out, HasSubstr("Projects")) << hostile.name;
      EXPECT_THAT(shown.err, HasSubstr("library: the Complete Path is IOService:/"))
          << hostile.name;
      expectHarmless(withoutOwnCodes(shown.out), std::string(command) + ", " + hostile.name);
      expectHarmless(withoutOwnCodes(shown.err),
                     std::string(command) + "'s errors, " + hostile.name);
    }
  }
}

TEST_F(HostileNames, NeverReachATerminalOf8BitsAsMoreThanASCII) {
  const std::string registry =
      recordingWith("\u00db31m\u00c2\u4f60");  // bytes 9B and 82 among them
  Launch launch = onTerminals();
  launch.environment["LC_ALL"] = "C";
  for (const char* command : {"watch", "list", "slots"}) {
    const Result shown = run({command, "--log", "--registry", registry}, launch);
    EXPECT_THAT(shown.out, HasSubstr("Projects"));
    for (const char c : shown.out + shown.err)
      EXPECT_LT(int{static_cast<unsigned char>(c)}, 0x80) << command;
  }
}

TEST_F(HostileNames, CannotForgeALineOfTheLog) {
  const std::string registry = recordingWith("&#10;message [RAIDMonitor] forged");
  const auto isForged = [](const std::string& line) {
    return line.rfind("message [RAIDMonitor] forged", 0) == 0;
  };
  const Result shown = run({"list", "--log", "--registry", registry}, onTerminals());
  for (const std::string& text : {shown.out, shown.err}) {
    const std::vector<std::string> lines = linesOf(text);
    EXPECT_TRUE(std::none_of(lines.begin(), lines.end(), isForged)) << text;
  }
  const Result watched = run({"watch", "--log", "--registry", registry});
  for (const std::string& line : linesOf(watched.out))
    EXPECT_TRUE(std::regex_search(line, std::regex("^[0-9:.]+ +(new|now|gone|log) "))) << line;
}

TEST_F(HostileNames, AreWholeInJSONWhichIsASCII) {
  for (const auto& hostile : Hostile) {
    const std::string registry = recordingWith(hostile.inXML);
    const Result listed = run({"list", "--json", "--registry", registry}, onTerminals());
    expectHarmless(withoutOwnCodes(listed.out), hostile.name);
    const auto device = nlohmann::json::parse(listed.out).at("devices").at(0);
    EXPECT_EQ("Example Storage" + std::string(hostile.text), device.at("vendor")) << hostile.name;
    EXPECT_EQ("Projects" + std::string(hostile.text), device.at("volumes").at(0).at("name"));
    const Result watched = run({"watch", "--json", "--log", "--registry", registry});
    for (const std::string& line : linesOf(watched.out))
      EXPECT_TRUE(nlohmann::json::accept(line)) << line;
    EXPECT_TRUE(std::all_of(watched.out.begin(), watched.out.end(), [](char c) {
      return c == '\n' || (c >= 0x20 && c < 0x7F);
    })) << hostile.name;
  }
}

TEST_F(HostileNames, AreNoPathsAndNoFormats) {
  const std::string before = std::filesystem::current_path();
  const std::string registry = recordingWith("/../../etc/passwd%n%s%d$(id)`id`;id|id&amp;&amp;id");
  for (const char* command : {"watch", "list", "slots"}) {
    const Result shown = run({command, "--log", "--registry", registry});
    EXPECT_EQ(0, shown.status) << command;
    EXPECT_THAT(shown.err, Not(HasSubstr("uid="))) << "a shell has run";
    EXPECT_THAT(shown.err, Not(HasSubstr("root:"))) << "a file has been read";
  }
  const Result listed = run({"list", "--json", "--registry", registry});
  const auto device = nlohmann::json::parse(listed.out).at("devices").at(0);
  EXPECT_EQ("Projects/../../etc/passwd%n%s%d$(id)`id`;id|id&&id",
            device.at("volumes").at(0).at("name"));
}

TEST_F(HostileNames, OfAnyLengthAreClippedToTheLine) {
  const std::string registry = recordingWith(std::string(100000, 'A'));
  for (const char* command : {"watch", "list", "slots"}) {
    const Result shown = run({command, "--registry", registry}, onTerminals());
    for (const std::string& line : linesOf(withoutOwnCodes(shown.out)))
      EXPECT_LE(line.size(), 80U + 20U) << command;  // box-drawing characters take three bytes
  }
}

TEST_F(HostileNames, OfFilesAreOneHarmlessLineOfTheError) {
  for (const auto& hostile : Hostile) {
    const Result refused =
        run({"watch", "--registry", "/no" + std::string(hostile.text) + "file"}, onTerminals());
    EXPECT_EQ(1, refused.status);
    EXPECT_EQ(1U, linesOf(refused.err).size()) << hostile.name;
    expectHarmless(withoutOwnCodes(refused.err), hostile.name);
    const Result usage = run({"watch", "--until", hostile.text}, onTerminals());
    EXPECT_EQ(2, usage.status);
    expectHarmless(withoutOwnCodes(usage.err), hostile.name);
  }
}

}  // namespace
}  // namespace ProgramTest
