#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/application/support/Program.h"
#include "tests/application/support/TemporaryFolder.h"

namespace ProgramTest {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class Configuration : public testing::Test {
 protected:
  Result runWith(const std::string& settings, Arguments arguments) {
    arguments.insert(arguments.end(), {"--config", _folder.write("it.toml", settings)});
    return run(arguments);
  }

  // The reason, behind the file's name.
  std::string refusalOf(const std::string& settings) {
    const Result result = runWith(settings, {"watch"});
    EXPECT_EQ(2, result.status) << settings;
    EXPECT_EQ("", result.out) << settings;
    EXPECT_EQ(2U, linesOf(result.err).size()) << result.err;
    const std::string begin = "raidmonitor: " + _folder.file("it.toml") + ":";
    EXPECT_THAT(result.err, StartsWith(begin));
    EXPECT_THAT(result.err, EndsWith("\nTry 'raidmonitor watch --help'.\n"));
    return result.err.substr(begin.size(), result.err.find('\n') - begin.size());
  }

  const TemporaryFolder _folder;
  const std::string _mirror = recording("two-bay-mirror-degrades");
};

TEST_F(Configuration, SaysWhatTheCommandLineDoesNot) {
  const Result wanted = run({"watch", "--json", "--log", "--until", "4000", "--registry", _mirror});
  ASSERT_EQ(0, wanted.status);
  const Result result = runWith(
      "[watch]\njson = true\nlog = true\nuntil = 4000\nregistry = '" + _mirror + "'\n", {"watch"});
  EXPECT_EQ(0, result.status) << result.err;
  EXPECT_EQ(wanted.out, result.out);
}

TEST_F(Configuration, MayStandBeforeTheCommand) {
  const std::string file =
      _folder.write("it.toml", "[list]\njson = true\nregistry = '" + _mirror + "'\n");
  EXPECT_EQ(run({"list", "--json", "--registry", _mirror}).out,
            run({"--config", file, "list"}).out);
  EXPECT_EQ(run({"list", "--json", "--registry", _mirror}).out,
            run({"--config=" + file, "list"}).out);
}

TEST_F(Configuration, GivesWayToTheCommandLine) {
  const std::string settings = "[watch]\njson = true\nuntil = 2000\nregistry = '/nowhere'\n";
  EXPECT_EQ(run({"watch", "--json", "--until", "6000", "--registry", _mirror}).out,
            runWith(settings, {"watch", "--until", "6000", "--registry", _mirror}).out);
  EXPECT_EQ(
      run({"watch", "--until", "6000", "--registry", _mirror}).out,
      runWith(settings, {"watch", "--until", "6000", "--registry", _mirror, "--json=false"}).out);
}

TEST_F(Configuration, HasATableForEachCommandOfWhichOneCounts) {
  const std::string settings =
      "[watch]\nregistry = '/nowhere'\n[list]\nregistry = '" + _mirror + "'\n[slots]\n";
  EXPECT_EQ(run({"list", "--registry", _mirror}).out, runWith(settings, {"list"}).out);
  EXPECT_EQ(run({"slots"}).out, runWith(settings, {"slots"}).out);
  EXPECT_EQ(1, runWith(settings, {"watch"}).status);
}

TEST_F(Configuration, GivesAnOptionThatMayBeRepeatedAsAnArrayOrOnce) {
  const std::string found = "2F7A93D8-51CE-4E06-8D7B-94B6E0C3A125";
  const auto check = [this](const std::string& expect) {
    return runWith("[check]\nexpect = " + expect + "\n", {"check"}).out;
  };
  const std::string absent = "5E700000-0000-4000-8000-000000000001";
  const std::string other = "5E700000-0000-4000-8000-000000000002";
  EXPECT_EQ(run({"check", "--expect", absent, "--expect", found, "--expect", other}).out,
            check("['" + absent + "',\n  '" + found + "', # it is there\n '" + other + "']"));
  EXPECT_EQ(run({"check", "--expect", absent}).out, check("'" + absent + "'"));
  EXPECT_EQ(run({"check"}).out, check("[]"));
}

TEST_F(Configuration, TakesStringsToTheLetter) {
  const std::string heard = _folder.file("heard");
  const std::string settings =
      "watch.exec = 'sh'\n"
      "watch.test-event = true\n"
      R"(watch.exec-arg = ["-c", "printf '%s|' \"$@\" >)" +
      heard + R"(; exit", "sh", )" +
      R"(" a  b ", 'C:\n # no "comment"', "x,y", "[z]", "--json", "", "tab\there \u00e9"])" + "\n";
  const Result result = runWith(settings, {"watch"});
  EXPECT_EQ(0, result.status) << result.err;
  EXPECT_EQ(" a  b |C:\\n # no \"comment\"|x,y|[z]|--json||tab\there \u00e9|", contentOf(heard));
}

TEST_F(Configuration, GivesAnArgumentByTheNameThatTheHelpHas) {
  const std::string settings = "[record]\nDIR = '" + _folder.file("recorded") + "'\nregistry = '" +
                               _mirror + "'\nanonymise = true\n";
  const Result result = runWith(settings, {"record"});
  EXPECT_EQ(0, result.status) << result.err;
  EXPECT_EQ(0, run({"list", "--registry", _folder.file("recorded")}).status);
}

TEST_F(Configuration, GivesWhatIsRequired) {
  const std::string page = _folder.file("page.html");
  EXPECT_EQ(0, runWith("[report]\noutput = '" + page + "'\n", {"report"}).status);
  EXPECT_THAT(contentOf(page), HasSubstr("<html"));
}

TEST_F(Configuration, KnowsEveryOptionOfEachCommandsHelp) {
  for (const char* command :
       {"watch", "list", "slots", "report", "record", "check", "metrics", "completions"}) {
    for (const std::string& line : linesOf(run({command, "--help"}).out)) {
      if (line.rfind("  --", 0) != 0) continue;
      const std::string key = line.substr(4, line.find(' ', 4) - 4);
      const Result result =
          runWith("[" + std::string(command) + "]\n" + key + " = 1.5\n", {"watch"});
      const bool setting = key != "help" && key != "version" && key != "config";
      EXPECT_THAT(result.err, HasSubstr(setting ? ":2: '" + key + "' has to be "
                                                : ":2: '" + key + "' is no option of '"))
          << command;
    }
  }
}

TEST_F(Configuration, RefusesWhatItDoesNotKnow) {
  EXPECT_EQ("2: 'regsitry' is no option of 'watch'", refusalOf("[watch]\nregsitry = 'x'\n"));
  EXPECT_EQ("2: 'handles' is no option of 'list'", refusalOf("[list]\nhandles = true\n"));
  EXPECT_EQ("1: 'wach' is no command", refusalOf("[wach]\n"));
  EXPECT_EQ("1: 'json' is no command", refusalOf("json = true\n"));
  EXPECT_EQ("1: 'watch' has to be a table: [watch]", refusalOf("watch = true\n"));
  EXPECT_EQ("2: '--json' is no option of 'watch'", refusalOf("[watch]\n--json = true\n"));
  EXPECT_EQ("3: 'help' is no option of 'watch'", refusalOf("[watch]\n\nhelp = true\n"));
}

TEST_F(Configuration, RefusesValuesOfAnotherType) {
  EXPECT_EQ("1: 'json' has to be true or false", refusalOf("watch.json = 'yes'\n"));
  EXPECT_EQ("1: 'json' has to be true or false", refusalOf("watch.json = 1\n"));
  for (const char* value : {"'4000'", "-1", "4e3", "true", "[4000]", "2026-11-21", "{}"}) {
    EXPECT_EQ("1: 'until' has to be a whole number, not below 0",
              refusalOf("watch.until = " + std::string(value) + "\n"));
  }
  EXPECT_EQ("1: 'registry' has to be a string", refusalOf("watch.registry = ['a', 'b']\n"));
  EXPECT_EQ("1: 'registry' has to be a string", refusalOf("watch.registry = 7\n"));
  EXPECT_EQ("3: 'expect' has to be a string, or an array of them",
            refusalOf("watch.expect = [\n'a',\n7]\n"));
}

TEST_F(Configuration, RefusesValuesAsTheCommandLineDoes) {
  const Result result = runWith("[list]\ncolor = 'pink'\n", {"list"});
  EXPECT_EQ(2, result.status);
  EXPECT_EQ(
      "raidmonitor: --color: 'pink' is not auto, always or never\n"
      "Try 'raidmonitor list --help'.\n",
      result.err);
  EXPECT_EQ(2, runWith("[watch]\nexpect-volumes = 1\n", {"watch"}).status);
}

TEST_F(Configuration, RefusesWhatIsNotTOML) {
  for (const char* text : {"[watch\n", "[watch]\njson\n", "[watch]\njson = \n", "=", "\xff\xfe",
                           "[watch]\nregistry = \"open\n", "[watch]\n[watch]\n", "<xml/>",
                           "[watch]\njson = true\njson = true\n"}) {
    EXPECT_THAT(refusalOf(text), Not(HasSubstr("has to be"))) << text;
  }
}

TEST_F(Configuration, RefusesAFileThatCannotBeRead) {
  for (const std::string& file : {_folder.file("none.toml"), _folder.path()}) {
    const Result result = run({"watch", "--config", file});
    EXPECT_EQ(2, result.status);
    EXPECT_EQ("", result.out);
    EXPECT_EQ("raidmonitor: --config: cannot read " + file + "\nTry 'raidmonitor watch --help'.\n",
              result.err);
  }
  EXPECT_EQ(2, run({"watch", "--config"}).status);
  EXPECT_THAT(run({"--config"}).err, StartsWith("raidmonitor: --config: "));
  EXPECT_EQ(2, run({"watch", "--config", ""}).status);
  const std::string file = _folder.write("it.toml", "");
  EXPECT_EQ(2, run({"watch", "--config", file, "--config", file}).status);
}

TEST_F(Configuration, LeavesACheckItsOwnStatusForWrongUsage) {
  const Result result = runWith("[check]\nexpct = 'x'\n", {"check"});
  EXPECT_EQ(3, result.status);
  EXPECT_THAT(result.out, StartsWith("UNKNOWN - "));
  EXPECT_THAT(result.out, HasSubstr("'expct' is no option of 'check'"));
  EXPECT_EQ(3, run({"check", "--config", _folder.file("none.toml")}).status);
}

TEST_F(Configuration, HasAnExampleThatIsRight) {
  const std::string example = RAIDMONITOR_SOURCES "/packaging/raidmonitor.toml";
  const std::string metrics = _folder.file("raid.prom");
  const Result watch = run({"watch", "--config", example, "--metrics", metrics});
  EXPECT_EQ(0, watch.status) << watch.err;
  EXPECT_THAT(watch.out, StartsWith("{"));
  EXPECT_THAT(contentOf(metrics), HasSubstr("5E700000-0000-4000-8000-000000000001"));
  const std::string folder = _folder.file("recorded");
  EXPECT_EQ(0, run({"record", folder, "--config", example}).status);
  EXPECT_EQ(run({"check", "--expect-volumes", "1"}).out, run({"check", "--config", example}).out);

  // What is commented out in it is right too.
  std::string all = contentOf(example);
  for (std::size_t at = all.find("# exec"); at != std::string::npos; at = all.find("# exec", at))
    all.erase(at, 2);
  EXPECT_EQ(0, runWith(all, {"slots"}).status);
}

}  // namespace
}  // namespace ProgramTest
