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
    "A script has one command or operation a line. Blanks separate words, quotes keep blanks, "
    "and a word that begins with `#` ends the line. Numbers are decimal, or hexadecimal with `0x`. "
    "Examples are scripts with a blank line between them; the tests run each in a fresh session.\n";

constexpr std::string_view kLiveRun =
    "\n## The live run\n"
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
    "The script, `-` for standard input, configures the unit with the commands below; without one "
    "the library is started, and the bound ports are up and transparent. A port that is bound has "
    "a link, the other UNI ports have no cable. The unit's time follows real time, the library's "
    "task runs, a thread of its own takes the frames that the chip traps, and the protocol clients "
    "serve them (`clients off` in the script leaves that out).\n"
    "\n"
    "The run ends by Ctrl-C, SIGTERM or SIGHUP, behind `--for`, or when the last end is gone, and "
    "lists for each port the frames that came in, what became of them, and the frames that went "
    "out: `transmitted` of them the library sent. `lost` counts frames for a port that has no end, "
    "or whose end did not take them, `events lost` trapped frames that did not reach the library. "
    "The last line counts what the trace told.\n"
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
  return std::string(kIntroduction) + std::string(kLiveRun) + "\n## Commands\n" +
         Sections(CommandTable()) +
         "\n## Operations of the library\n\nNames with or without `BCM6838X_`, in any case.\n" +
         Sections(OperationTable()) + ChoiceSections();
}

}  // namespace onu
