/// @file
/// The tokenizer, and the table of placeholders.
#include "shell/pattern.h"

#include <algorithm>
#include <array>
#include <optional>

#include "base/text.h"

namespace virtual_onu {
namespace {

constexpr std::string_view kBlanks = " \t";
constexpr std::string_view kMarks = "{}[]=,>&";
constexpr std::string_view kWordEnds = " \t{}[]=,>&";

bool IsMark(char c) {
  return kMarks.find(c) != std::string_view::npos;
}

struct Placeholder {
  std::string_view word;
  std::string_view expected;
  std::optional<std::uint32_t> (*read)(std::string_view text);
};

constexpr std::array kPlaceholders = {
    Placeholder{"$word", "a word",
                [](std::string_view /*text*/) { return std::optional<std::uint32_t>(0); }},
    Placeholder{"$number", "a decimal number",
                [](std::string_view text) { return ParseDecimal(text); }},
    Placeholder{"$hex", "a hexadecimal number",
                [](std::string_view text) { return ParseHexNumber(text); }},
    Placeholder{"$switch", "yes or no",
                [](std::string_view text) {
                  return text == "yes" || text == "no"
                             ? std::optional<std::uint32_t>(text == "yes" ? 1 : 0)
                             : std::nullopt;
                }},
};

/// The placeholder that a word of a pattern is; null for a word that stands for itself.
const Placeholder* FindPlaceholder(const Token& pattern) {
  const auto* const found = std::ranges::find(kPlaceholders, pattern.text, &Placeholder::word);
  return found == kPlaceholders.end() ? nullptr : found;
}

std::string ExpectedText(const Token& pattern) {
  const Placeholder* const placeholder = FindPlaceholder(pattern);
  return placeholder != nullptr ? std::string(placeholder->expected)
                                : "\"" + std::string(pattern.text) + "\"";
}

/// Holds one token against one of the pattern and takes its argument, if it is one.
bool Fits(const Token& pattern, const Token& token, std::vector<Argument>& arguments) {
  const Placeholder* const placeholder = FindPlaceholder(pattern);
  if (placeholder == nullptr) {
    return token.text == pattern.text;
  }
  const auto number = IsMark(token.text.front()) ? std::nullopt : placeholder->read(token.text);
  if (number) {
    arguments.push_back({token.text, *number});
  }
  return number.has_value();
}

}  // namespace

std::vector<Token> Tokenize(std::string_view line) {
  std::vector<Token> tokens;
  while (true) {
    const std::size_t begin = line.find_first_not_of(kBlanks);
    if (begin == std::string_view::npos) {
      return tokens;
    }
    line.remove_prefix(begin);
    const std::size_t length =
        IsMark(line.front()) ? 1 : std::min(line.find_first_of(kWordEnds), line.size());
    tokens.push_back({line.substr(0, length), begin > 0 && !tokens.empty()});
    line.remove_prefix(length);
  }
}

Match MatchPattern(const std::vector<Token>& pattern, const std::vector<Token>& line) {
  Match match;
  for (const Token& token : pattern) {
    if (match.tokens == line.size() || !Fits(token, line[match.tokens], match.arguments)) {
      match.expected = ExpectedText(token);
      return match;
    }
    if (match.tokens > 0 && line[match.tokens].spaced != token.spaced) {
      match.expected = token.spaced ? "a blank before it" : "no blank before it";
      return match;
    }
    ++match.tokens;
  }
  match.matched = true;
  return match;
}

}  // namespace virtual_onu
