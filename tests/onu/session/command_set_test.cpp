/// @file
/// Tests of the look-up of the command that a line names.
#include <filesystem>
#include <gmock/gmock.h>
#include <regex>
#include <set>
#include <string>

#include "commands/command_table.h"
#include "language/failure.h"
#include "operations/operation_table.h"

namespace onu {
namespace {

std::string FindName(const Words& words) {
  const std::optional<NamedCommand> named = AllCommands().find(words);
  return named ? std::string(named->command->name) : "none";
}

std::string ErrorOf(const Words& words) {
  try {
    (void)AllCommands().findOrThrow(words);
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.status(), ExitStatus::WrongUse);
    return failure.what();
  }
  return "found";
}

TEST(Tables, Find_TakesOperationsWithAndWithoutPrefixInAnyCase) {
  for (const char* name : {"Init", "BCM6838X_Init", "init", "bcm6838x_INIT", "BCM6838x_init"}) {
    EXPECT_EQ(FindName({name}), "BCM6838X_Init") << name;
  }
}

TEST(Tables, Find_TakesCommandsOfOneAndTwoWords) {
  EXPECT_EQ(FindName({"send", "uni1"}), "send");
  EXPECT_EQ(FindName({"show", "classes", "x"}), "show classes");
  EXPECT_EQ(FindName({"Show", "CLASSES"}), "show classes");
  EXPECT_EQ(FindName({"show"}), "none");
  EXPECT_EQ(FindName({}), "none");
}

TEST(Tables, Unknown_SuggestsTheNearestName) {
  EXPECT_EQ(ErrorOf({"shwo", "classes"}),
            "unknown command \"shwo\"; did you mean \"show classes\"? (help lists the commands)");
  EXPECT_EQ(ErrorOf({"explian", "uni1"}),
            "unknown command \"explian\"; did you mean \"explain\"? (help lists the commands)");
  EXPECT_EQ(ErrorOf({"BCM6838X_Innit"}),
            "unknown command \"BCM6838X_Innit\"; did you mean \"Init\"? (help lists the commands)");
  EXPECT_EQ(ErrorOf({"frobnicate"}), "unknown command \"frobnicate\" (help lists the commands)");
}

TEST(Tables, UnknownSecondWord_NamesWhatIsExpected) {
  EXPECT_EQ(ErrorOf({"journal", "sav"}),
            "journal: expected save, replay, got \"sav\"; did you mean \"save\"?");
  EXPECT_EQ(ErrorOf({"journal"}), "journal: expected save, replay, got nothing");
}

}  // namespace
}  // namespace onu
