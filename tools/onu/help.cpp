/// @file
/// The command that explains commands, and its texts for the terminal.
#include "help.h"

#include <optional>

#include "catalogue.h"
#include "commands.h"
#include "failure.h"
#include "text_table.h"

namespace onu {

namespace {

/// The words by which people call an entry.
std::string_view CallName(const Entry& entry) {
  return entry.name.substr(entry.name.starts_with(kOperationPrefix) ? kOperationPrefix.size() : 0);
}

template <typename Row>
std::string Overview(const std::vector<Row>& rows) {
  std::string text;
  for (const Row& row : rows) {
    text += "  " + Usage(CallName(row), row.arguments) + "\n      " + std::string(row.text) + "\n";
  }
  return text;
}

std::string Indented(std::string_view lines) {
  std::string text = "  ";
  for (const char character : lines) {
    text += character;
    if (character == '\n') {
      text += "  ";
    }
  }
  return text + "\n";
}

std::string ArgumentText(const Argument& row) {
  const std::string name =
      row.type == ArgumentType::Flag
          ? std::string(row.keyword)
          : std::string(row.keyword) + (row.keyword.empty() ? "" : " ") + std::string(row.name);
  std::string text = "  " + name + ": " + std::string(row.text);
  if (row.type != ArgumentType::Flag && row.type != ArgumentType::Word) {
    text += " (" + Expected(row.type) + ")";
  }
  text += "\n";
  for (const Choice& choice : Choices(row.type)) {
    text += "    " + choice.word + (choice.argument.empty() ? "" : " " + choice.argument) +
            (choice.text.empty() ? "" : ": " + choice.text) + "\n";
  }
  return text;
}

}  // namespace

std::string HelpOverview() {
  return "Commands\n" + Overview(CommandTable()) +
         "\nOperations of the library, with or without BCM6838X_ and in any case\n" +
         Overview(OperationTable()) + "\nhelp NAME explains one of them.\n";
}

std::string HelpOn(const Entry& entry) {
  std::string text =
      Usage(CallName(entry), entry.arguments) + "\n  " + std::string(entry.text) + "\n";
  for (const Argument& row : entry.arguments) {
    text += (&row == entry.arguments.data() ? "\nArguments\n" : "") + ArgumentText(row);
  }
  for (const std::string_view example : entry.examples) {
    text += "\nExample\n" + Indented(example);
  }
  return text;
}

Result Help(Session& /*session*/, const Arguments& arguments) {
  const Words name = arguments.words("NAME");
  std::string text;
  if (arguments.has("MARKDOWN")) {
    text = HelpMarkdown();
  } else if (name.empty()) {
    text = HelpOverview();
  } else {
    text = HelpOn(FindOrThrow(name).entry());
  }
  return {{{"text", text}}, text};
}

}  // namespace onu
