/// @file
/// The command that explains commands, and its texts for the terminal.
#include <string>
#include <string_view>
#include <vector>

#include "commands/command_rows.h"
#include "commands/help_markdown.h"
#include "language/failure.h"
#include "session/session.h"

namespace onu {

namespace {

/// One line for each command, and one for what it does.
std::string Overview(const std::vector<CommandGroup>& groups) {
  std::string text;
  for (const CommandGroup& group : groups) {
    for (const Command& command : group.commands) {
      text += "  " + Usage(ShortName(command), command.arguments) + "\n      " +
              std::string(command.text) + "\n";
    }
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
  for (const Choice& choice : row.type.get().choices()) {
    text += "    " + choice.word + (choice.argument.empty() ? "" : " " + choice.argument) +
            (choice.text.empty() ? "" : ": " + choice.text) + "\n";
  }
  return text;
}

std::string HelpOverview(const CommandSet& commands) {
  return "Commands\n" + Overview(commands.commands()) +
         "\nOperations of the library, with or without BCM6838X_ and in any case\n" +
         Overview(commands.operations()) + "\nhelp NAME explains one of them.\n";
}

/// All about one command: usage, arguments with the words to choose from, examples.
std::string HelpOn(const Entry& entry) {
  std::string text =
      Usage(ShortName(entry), entry.arguments) + "\n  " + std::string(entry.text) + "\n";
  for (const Argument& row : entry.arguments) {
    text += (&row == entry.arguments.data() ? "\nArguments\n" : "") + ArgumentText(row);
  }
  for (const std::string_view example : entry.examples) {
    text += "\nExample\n" + Indented(example);
  }
  return text;
}

Result Help(Session& session, const Arguments& arguments) {
  const Words name = arguments.words("NAME");
  std::string text;
  if (arguments.has("MARKDOWN")) {
    text = HelpMarkdown(session.commands());
  } else if (name.empty()) {
    text = HelpOverview(session.commands());
  } else {
    text = HelpOn(*session.commands().findOrThrow(name).command);
  }
  return {{{"text", text}}, text};
}

}  // namespace

const Command kHelp = {
    {"help",
     {{"NAME", ArgumentType::EntryName, "a command or an operation", Presence::OptionalRest},
      {"MARKDOWN", ArgumentType::Flag, "writes the whole reference", Presence::Optional,
       "--markdown"}},
     "explains the commands and operations, or one of them",
     {"help", "help show trace", "help Ioctl"}},
    Help};

}  // namespace onu
