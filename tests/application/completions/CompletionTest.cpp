#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/application/completions/Shells.h"
#include "tests/application/support/Program.h"
#include "tests/application/support/TemporaryFolder.h"

namespace ProgramTest {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::UnorderedElementsAreArray;

class Completion : public testing::TestWithParam<Shell> {
 protected:
  std::vector<std::string> offered(const std::vector<std::string>& words) const {
    return offeredBy(GetParam(), words);
  }
};

TEST_P(Completion, OffersEveryCommandOfTheHelp) {
  const std::vector<std::string> commands = commandsOfTheHelp();
  ASSERT_THAT(commands, IsSupersetOf({"watch", "check", "completions"}));
  EXPECT_THAT(offered({""}), UnorderedElementsAreArray(commands));
}

TEST_P(Completion, OffersEveryOptionOfEachCommandsHelpAndNoOther) {
  for (const std::string& command : commandsOfTheHelp()) {
    const std::vector<std::string> options = optionsOfTheHelp({command});
    ASSERT_THAT(options, IsSupersetOf({"--help", "--version", "--config"}));
    EXPECT_THAT(offered({command, "--"}), UnorderedElementsAreArray(options)) << command;
  }
}

TEST_P(Completion, OffersTheProgramsOwnOptions) {
  EXPECT_THAT(offered({"--"}), UnorderedElementsAreArray(optionsOfTheHelp({})));
}

TEST_P(Completion, CompletesWhatHasBeenBegun) {
  EXPECT_THAT(offered({"wa"}), ElementsAre("watch"));
  EXPECT_THAT(offered({"watch", "--reg"}), ElementsAre("--registry"));
  EXPECT_THAT(offered({"watch", "--json", "--reg"}), ElementsAre("--registry"));
}

TEST_P(Completion, OffersTheValuesOfAnOptionThatHasAFewOnly) {
  EXPECT_THAT(offered({"list", "--color", ""}), ElementsAre("always", "auto", "never"));
  EXPECT_THAT(offered({"slots", "--ascii", "--color", "ne"}), ElementsAre("never"));
  EXPECT_THAT(offered({"completions", ""}), ElementsAre("bash", "fish", "zsh"));
}

TEST_P(Completion, OffersFilesAndFoldersWhereAPathIsWanted) {
  const TemporaryFolder folder;
  folder.write("recorded.plist", "");
  std::filesystem::create_directory(folder.file("recordings"));
  const std::string begun = folder.file("rec");
  for (const char* option : {"--registry", "--metrics", "--config"}) {
    EXPECT_THAT(namesOf(offered({"watch", option, begun})),
                ElementsAre("recorded.plist", "recordings"))
        << option;
  }
  EXPECT_THAT(namesOf(offered({"--config", begun})), ElementsAre("recorded.plist", "recordings"));
}

TEST_P(Completion, OffersNamesWithBlanksAndQuotes) {
  const TemporaryFolder folder;
  folder.write("it's *one* file", "");
  EXPECT_THAT(namesOf(offered({"watch", "--registry", folder.file("it")})),
              ElementsAre("it's *one* file"));
}

TEST_P(Completion, OffersFoldersAloneToRecordInto) {
  const TemporaryFolder folder;
  folder.write("recorded.plist", "");
  std::filesystem::create_directory(folder.file("recordings"));
  EXPECT_THAT(namesOf(offered({"record", folder.file("rec")})), ElementsAre("recordings"));
}

TEST_P(Completion, OffersProgramsToRunForAnEvent) {
  EXPECT_THAT(offered({"watch", "--exec", "mkfif"}), ElementsAre("mkfifo"));
}

TEST_P(Completion, OffersNothingWhereOnlyThePersonKnows) {
  for (const char* option : {"--until", "--exec-arg", "--expect", "--expect-volumes"}) {
    EXPECT_THAT(offered({"watch", option, ""}), IsEmpty()) << option;
  }
}

TEST_P(Completion, TakesTheProgramsOptionsBeforeTheCommand) {
  EXPECT_THAT(offered({"--config", "settings.toml", "wa"}), ElementsAre("watch"));
  EXPECT_THAT(offered({"--config", "list", "slots", "--js"}), ElementsAre("--json"));
}

INSTANTIATE_TEST_SUITE_P(InShells, Completion,
                         testing::Values(Shell::Bash, Shell::PlainBash, Shell::Zsh, Shell::Fish),
                         [](const auto& tested) { return nameOf(tested.param); });

// bash takes the words apart at '='.
TEST(BashCompletion, OffersValuesBehindAnEqualsSign) {
  EXPECT_THAT(offeredBy(Shell::Bash, {"list", "--color", "="}),
              ElementsAre("always", "auto", "never"));
  EXPECT_THAT(offeredBy(Shell::Bash, {"list", "--color", "=", "al"}), ElementsAre("always"));
  EXPECT_THAT(offeredBy(Shell::Bash, {"list", "--color", "=", "always", "--js"}),
              ElementsAre("--json"));
}

TEST(FishCompletion, OffersValuesBehindAnEqualsSign) {
  EXPECT_THAT(offeredBy(Shell::Fish, {"list", "--color=al"}), ElementsAre("--color=always"));
}

TEST(CompletionsCommand, WritesWhatShellsCanSource) {
  EXPECT_EQ("complete -F _raidmonitor raidmonitor\n",
            sourcedBy({"bash", "--norc", "-c", ". \"$0\"; complete -p raidmonitor"}, "bash"));
  EXPECT_EQ(
      "_raidmonitor\n",
      sourcedBy({"zsh", "-fc",
                 "autoload -Uz compinit; compinit -u -D; . \"$0\"; echo $_comps[raidmonitor]"},
                "zsh"));
}

TEST(CompletionsCommand, KnowsThreeShells) {
  const Result result = run({"completions", "tcsh"});
  EXPECT_EQ(2, result.status);
  EXPECT_EQ("", result.out);
  EXPECT_EQ(
      "raidmonitor: SHELL: 'tcsh' is not bash, zsh or fish\n"
      "Try 'raidmonitor completions --help'.\n",
      result.err);
  EXPECT_EQ(2, run({"completions"}).status);
}

}  // namespace
}  // namespace ProgramTest
