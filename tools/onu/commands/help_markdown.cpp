/// @file
/// The reference page of commands and operations.
#include "commands/help_markdown.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace onu {

namespace {

constexpr std::string_view kIntroduction =
    "# Commands of onu\n"
    "\n"
    "This page is made by `onu help --markdown`; "
    "change the rows in `tools/onu/commands` and `tools/onu/operations`, not the page.\n"
    "\n"
    "A script has one command or operation a line. Blanks separate words, quotes keep blanks, "
    "and a word that begins with `#` ends the line. Numbers are decimal, or hexadecimal with `0x`. "
    "Examples are scripts with a blank line between them; the tests run each in a fresh session.\n";

constexpr std::string_view kLiveRunTitle = "The live run";
constexpr std::string_view kCommandsTitle = "Commands";
constexpr std::string_view kOperationsTitle = "Operations of the library";

constexpr std::string_view kLiveRun =
    "\n"
    "`onu live --uni1 END [--uni2 END ...] --wan END [--script FILE] [--for SECONDS]` binds ports "
    "of the unit to the network of this machine, so that real programs talk through it.\n"
    "\n"
    "| END | what it is |\n"
    "|---|---|\n"
    "| `tap:NAME` | a TAP interface, made when there is none of that name, and set up |\n"
    "| `tap:NAME@NETNS` | one in a network namespace of `ip netns` |\n"
    "| `fd:N` | an open socket that keeps frames apart (SOCK_SEQPACKET, SOCK_DGRAM) |\n"
    "\n"
    "The script, `-` for standard input, configures the unit with the commands below; "
    "without one the library is started, and the bound ports are up and transparent. "
    "A port that is bound has a link, the other UNI ports have no cable. The unit's time follows "
    "real time, the library's task runs, a thread of its own takes the frames that the chip traps, "
    "and the protocol clients serve them (`clients off` in the script leaves that out).\n"
    "\n"
    "The run ends by Ctrl-C, SIGTERM or SIGHUP, behind `--for`, or when the last end is gone, "
    "and lists for each port the frames that came in, what became of them, "
    "and the frames that went out: `transmitted` of them the library sent. `lost` counts frames "
    "for a port that has no end, or whose end did not take them, `events lost` trapped frames "
    "that did not reach the library. The last line counts what the trace told.\n"
    "\n"
    "```\n"
    "ip netns add home && ip netns add isp\n"
    "onu live --uni1 tap:eth0@home --wan tap:wan0@isp --script access.onu &\n"
    "ip -n home address add 192.0.2.1/24 dev eth0\n"
    "```\n";

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

/// The anchor of a heading: lower case, dashes for blanks.
std::string Anchor(std::string_view heading) {
  std::string anchor = Lower(heading);
  std::ranges::replace(anchor, ' ', '-');
  return anchor;
}

std::string Section(const Entry& entry) {
  std::string text(entry.text);
  text.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(text.front())));
  return "\n### " + std::string(entry.name) + "\n\n`" + Usage(entry.name, entry.arguments) +
         "`\n\n" + text + ".\n" + ArgumentTable(entry) + ExampleBlock(entry);
}

std::string Sections(const std::vector<CommandGroup>& groups) {
  std::string text;
  for (const CommandGroup& group : groups) {
    for (const Command& command : group.commands) {
      text += Section(command);
    }
  }
  return text;
}

/// A line of the table of contents that links to a chapter.
std::string ChapterLine(std::string_view title) {
  return "- [" + std::string(title) + "](#" + Anchor(title) + ")\n";
}

/// Below it a line for each group, with links to the sections of its commands.
std::string GroupLines(const std::vector<CommandGroup>& groups) {
  std::string text;
  for (const CommandGroup& group : groups) {
    Words links;
    for (const Command& command : group.commands) {
      links.push_back("[" + std::string(ShortName(command)) + "](#" + Anchor(command.name) + ")");
    }
    text += "  - " + std::string(group.title) + ": " + Join(links, ", ") + "\n";
  }
  return text;
}

/// "## TITLE", behind an empty line.
std::string Heading(std::string_view title) {
  return "\n## " + std::string(title) + "\n";
}

/// The types of all arguments whose words are listed under a title, by these titles.
std::map<std::string_view, const ArgumentType*> TitledTypes(const CommandSet& commands) {
  std::map<std::string_view, const ArgumentType*> types;
  for (const Command* command : commands.all()) {
    for (const Argument& row : command->arguments) {
      types.emplace(row.type.get().title, &row.type.get());
    }
  }
  types.erase("");
  return types;
}

/// The words to choose from, for each of these types.
std::string ChoiceSections(const CommandSet& commands) {
  std::string text;
  for (const auto& [title, type] : TitledTypes(commands)) {
    text += Heading(title) + "\n| word | meaning |\n|---|---|\n";
    for (const Choice& choice : type->choices()) {
      text += "| `" + choice.word + (choice.argument.empty() ? "" : " " + Cell(choice.argument)) +
              "` | " + Cell(choice.text) + " |\n";
    }
  }
  return text;
}

std::string Contents(const CommandSet& commands) {
  std::string text = "\n## Contents\n\n" + ChapterLine(kLiveRunTitle) +
                     ChapterLine(kCommandsTitle) + GroupLines(commands.commands()) +
                     ChapterLine(kOperationsTitle) + GroupLines(commands.operations());
  for (const auto& [title, type] : TitledTypes(commands)) {
    text += ChapterLine(title);
  }
  return text;
}

}  // namespace

std::string HelpMarkdown(const CommandSet& commands) {
  return std::string(kIntroduction) + Contents(commands) + Heading(kLiveRunTitle) +
         std::string(kLiveRun) + Heading(kCommandsTitle) + Sections(commands.commands()) +
         Heading(kOperationsTitle) + "\nNames with or without `BCM6838X_`, in any case.\n" +
         Sections(commands.operations()) + ChoiceSections(commands);
}

}  // namespace onu
