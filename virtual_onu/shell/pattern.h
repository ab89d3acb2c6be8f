/// @file
/// Patterns of shell lines: cutting a line into tokens, and holding the tokens against a pattern
/// with placeholders. What a line means is not known here.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace virtual_onu {

/// A word, or one of the characters "{}[]=,>&".
struct Token {
  std::string_view text;
  bool spaced = false;  ///< blanks stand before it; never true for the first one
};

std::vector<Token> Tokenize(std::string_view line);

/// What a placeholder took from the line.
struct Argument {
  std::string_view text;
  std::uint32_t number = 0;  ///< of $number and $hex; 1 for "yes" of $switch
};

struct Match {
  bool matched = false;
  std::vector<Argument> arguments;  ///< one a placeholder, in order
  std::size_t tokens = 0;           ///< how many tokens fitted
  std::string expected;             ///< what the pattern asked for where it did not fit
};

/// Holds the beginning of a line against a pattern; tokens may be left over. A pattern is a line in
/// which these words stand for others:
///
///   $word     any word
///   $number   a decimal number
///   $hex      a hexadecimal number, with or without "0x"
///   $switch   "yes" or "no"
Match MatchPattern(const std::vector<Token>& pattern, const std::vector<Token>& line);

}  // namespace virtual_onu
