/// @file
/// The reference page of commands and operations.
#include <cctype>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue.h"
#include "help.h"

namespace onu {

namespace {

constexpr std::string_view kIntroduction =
    "# Commands of onu\n"
    "\n"
    "This page is made by `onu help --markdown`; change the tables in `tools/onu`, not the page.\n"
    "\n"
    "A script has one command or operation a line. Blanks separate words, quotes keep blanks, and "
    "a word that begins with `#` ends the line. Numbers are decimal, or hexadecimal with `0x`. "
    "Examples are scripts with a blank "
    "line between them; the tests run each in a fresh session.\n";

/// Text for a cell of a table.
std::string Cell(std::string_view text) {
  std::string cell;
  for (const char character : text) {
    if (character == '|') {
      cell += '\\';
    }
    cell += character;
  }
  return cell;
}

std::string ArgumentTable(const Entry& entry) {
  if (entry.arguments.empty()) {
    return "";
  }
  std::string text = "\n| argument | meaning | expected |\n|---|---|---|\n";
  for (const Argument& row : entry.arguments) {
    std::string name(row.keyword);
    if (row.type != ArgumentType::Flag) {
      name += (name.empty() ? "" : " ") + std::string(row.name);
    }
    text += "| `" + name + "` | " + Cell(row.text) + " | " + Cell(Expected(row.type)) + " |\n";
  }
  return text;
}

std::string ExampleBlock(const Entry& entry) {
  std::string text = "\n```\n";
  for (const std::string_view example : entry.examples) {
    text += (text.size() > 5 ? "\n" : "") + std::string(example) + "\n";
  }
  return text + "```\n";
}

std::string Section(const Entry& entry) {
  std::string text(entry.text);
  text.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(text.front())));
  return "\n### " + std::string(entry.name) + "\n\n`" + Usage(entry.name, entry.arguments) +
         "`\n\n" + text + ".\n" + ArgumentTable(entry) + ExampleBlock(entry);
}

template <typename Row>
std::string Sections(const std::vector<Row>& rows) {
  std::string text;
  for (const Row& row : rows) {
    text += Section(row);
  }
  return text;
}

/// The words to choose from, for each type that lists them under a title.
std::string ChoiceSections() {
  std::string text;
  for (const ArgumentType type : AllArgumentTypes()) {
    const std::string_view title = ChoiceTitle(type);
    if (title.empty()) {
      continue;
    }
    text += "\n## " + std::string(title) + "\n\n| word | meaning |\n|---|---|\n";
    for (const Choice& choice : Choices(type)) {
      text += "| `" + choice.word + (choice.argument.empty() ? "" : " " + Cell(choice.argument)) +
              "` | " + Cell(choice.text) + " |\n";
    }
  }
  return text;
}

}  // namespace

std::string HelpMarkdown() {
  return std::string(kIntroduction) + "\n## Commands\n" + Sections(CommandTable()) +
         "\n## Operations of the library\n\nNames with or without `BCM6838X_`, in any case.\n" +
         Sections(OperationTable()) + ChoiceSections();
}

}  // namespace onu
