/// @file
/// Tests of the tables as a whole: complete, without doubles, with names that are found.
#include "commands/command_table.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <regex>
#include <set>
#include <string>

#include "language/failure.h"
#include "operations/operation_table.h"
#include "run_program.h"

namespace onu {
namespace {

/// The names that the library's public headers export.
std::set<std::string> ExportedNames() {
  const std::regex declaration(R"(BCM6838X_EXPORT\s+\w+\s+(\w+)\()");
  std::set<std::string> names;
  const std::filesystem::path headers = test::Sources() / "hal/switch/bcm6838x/include";
  for (const auto& header : std::filesystem::directory_iterator(headers)) {
    const std::string text = test::ReadFile(header.path());
    for (std::sregex_iterator found(text.begin(), text.end(), declaration), end; found != end;
         ++found) {
      names.insert((*found)[1]);
    }
  }
  return names;
}

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

TEST(Tables, Operations_AreThoseThatTheHeadersExport) {
  std::set<std::string> names;
  for (const OperationGroup& group : OperationTable()) {
    for (const Operation& operation : group.operations) {
      names.emplace(operation.name);
    }
  }
  ASSERT_GT(names.size(), 10U);
  // These take a socket of the caller's, which a line of words cannot give.
  names.insert({"et_get_phyid", "mdio_read"});
  EXPECT_EQ(names, ExportedNames());
}

TEST(Tables, Commands_AreThoseWhoseRowsAreDeclared) {
  const std::string header = test::ReadFile(test::Sources() / "tools/onu/commands/command_rows.h");
  const std::regex declaration(R"(extern const Command k(\w+);)");
  std::set<std::string> declared;
  for (std::sregex_iterator found(header.begin(), header.end(), declaration), end; found != end;
       ++found) {
    declared.insert(Lower(std::string((*found)[1])));
  }
  std::set<std::string> listed;
  for (const CommandGroup& group : AllCommands().commands()) {
    for (const Command& command : group.commands) {
      listed.insert(std::regex_replace(std::string(command.name), std::regex(" "), ""));
    }
  }
  ASSERT_GT(declared.size(), 30U);
  EXPECT_EQ(listed, declared);
}

TEST(Tables, Operations_NameEveryArgumentOfTheFunction) {
  int bound = 0;
  for (const OperationGroup& group : OperationTable()) {
    for (const Operation& operation : group.operations) {
      if (operation.binding.arity) {
        EXPECT_EQ(operation.arguments.size(), *operation.binding.arity) << operation.name;
        ++bound;
      }
    }
  }
  EXPECT_GT(bound, 10);
}

TEST(Tables, Names_AreUnique) {
  const Words names = AllCommands().names();
  std::set<std::string> lower;
  for (const std::string& name : names) {
    EXPECT_TRUE(lower.insert(Lower(name)).second) << name;
  }
  std::size_t rows = 0;
  for (const CommandGroup& group : AllCommands().commands()) {
    rows += group.commands.size();
  }
  for (const OperationGroup& group : OperationTable()) {
    rows += group.operations.size();
  }
  EXPECT_EQ(names.size(), rows);
}

TEST(Tables, Entries_HaveTextAndExamples) {
  for (const Command* entry : AllCommands().all()) {
    EXPECT_FALSE(entry->text.empty()) << entry->name;
    EXPECT_FALSE(entry->examples.empty()) << entry->name;
    for (const Argument& row : entry->arguments) {
      EXPECT_FALSE(row.text.empty()) << entry->name << " " << row.name;
    }
  }
}

TEST(Tables, Examples_UseTheEntryThatTheyExplain) {
  int examples = 0;
  for (const Command* entry : AllCommands().all()) {
    for (const std::string_view example : entry->examples) {
      const std::string text(example);
      bool used = false;
      for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        used = used || FindName(SplitWords(text.substr(start, end - start))) == entry->name;
        start = end + 1;
      }
      EXPECT_TRUE(used) << entry->name << ": " << example;
      ++examples;
    }
  }
  EXPECT_GT(examples, 30);
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
