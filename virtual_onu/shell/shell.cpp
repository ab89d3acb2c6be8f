/// @file
/// From a line to its row of the table, or to the reason why it has none.
#include "shell/shell.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>
#include <vector>

#include "shell/bs_lines.h"
#include "shell/ethctl_lines.h"
#include "shell/line_row.h"
#include "shell/pattern.h"

namespace virtual_onu {
namespace {

constexpr std::int32_t kRefused = 1;  // as the exit status of a program

struct Program {
  std::string_view name;
  std::span<const LineRow> (*lines)();
};

constexpr std::array kPrograms = {Program{"bs", BsLines}, Program{"ethctl", EthctlLines}};

/// What may stand behind a line.
constexpr std::array<std::string_view, 2> kRedirections = {"> $word 2>&1", "> $word"};

std::string_view WithoutDirectory(std::string_view program) {
  return program.substr(program.rfind('/') + 1);
}

bool IsRedirection(const std::vector<Token>& tokens) {
  return std::ranges::any_of(kRedirections, [&tokens](std::string_view pattern) {
    const Match match = MatchPattern(Tokenize(pattern), tokens);
    return match.matched && match.tokens == tokens.size();
  });
}

/// Holds a whole line against a pattern.
Match MatchLine(std::string_view pattern, const std::vector<Token>& line) {
  Match match = MatchPattern(Tokenize(pattern), line);
  const std::vector<Token> rest(line.begin() + static_cast<std::ptrdiff_t>(match.tokens),
                                line.end());
  if (match.matched && !rest.empty() && !IsRedirection(rest)) {
    match.matched = false;
    match.expected = "the end of the line";
  }
  return match;
}

/// What was wrong, seen from the pattern that fitted furthest.
std::string Malformed(const Match& furthest, const std::vector<Token>& line) {
  const bool ended = furthest.tokens >= line.size();
  const std::string place =
      ended ? "its end" : "\"" + std::string(line[furthest.tokens].text) + "\"";
  return "malformed at " + place + ": expected " + furthest.expected;
}

/// Runs the row that the line fits; returns why it was refused, or nothing.
std::string RunRow(std::span<const LineRow> rows, const Workplace& place,
                   const std::vector<Token>& line) {
  Match furthest;
  for (const LineRow& row : rows) {
    Match match = MatchLine(row.pattern, line);
    if (match.matched) {
      return row.run(place, match.arguments);
    }
    if (match.tokens > furthest.tokens) {
      furthest = std::move(match);
    }
  }
  return Malformed(furthest, line);
}

}  // namespace

ShellEvent Shell::run(std::string line) {
  const std::lock_guard lock(mutex_);
  ShellEvent event{std::move(line), 0, {}};
  std::vector<Token> tokens = Tokenize(event.line);
  if (faults_.refuses()) {
    event.reason = "refused by a fault rule";
  } else if (!tokens.empty()) {
    std::string_view& program = tokens.front().text;
    program = WithoutDirectory(program);
    const auto* const known = std::ranges::find(kPrograms, program, &Program::name);
    if (known != kPrograms.end()) {
      event.reason = RunRow(known->lines(), {objects_, board_}, tokens);
    }
  }
  event.result = event.reason.empty() ? 0 : kRefused;
  return event;
}

}  // namespace virtual_onu
