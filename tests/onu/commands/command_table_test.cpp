/// @file
/// Tests of the tables as a whole: complete, without doubles, with names that are found.
#include "commands/command_table.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <regex>
#include <set>
#include <string>

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

}  // namespace
}  // namespace onu
