/// @file
/// Lines of a script as words, numbers as people write them, and the nearest of several words.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace onu {

using Words = std::vector<std::string>;

/// A line taken apart, as far as it goes.
struct SplitLine {
  Words words;
  bool openWord = false;   ///< the line ends inside the last word
  bool openQuote = false;  ///< the line ends inside quotes
};

/// Takes a line apart. Blanks separate words; '...' and "..." keep blanks, and outside '...' a
/// backslash keeps the next character; a word that begins with # ends the line.
SplitLine Split(std::string_view line);

/// The words of a whole line; throws a Failure when a quote stays open.
Words SplitWords(std::string_view line);

/// The words as one line that SplitWords() takes apart again.
std::string JoinWords(const Words& words);

/// The texts with `separator` between them.
std::string Join(const Words& texts, std::string_view separator);

/// The texts between the separators, empty ones too: the opposite of Join().
Words SplitAt(std::string_view text, char separator);

/// The text with A-Z in lower case.
std::string Lower(std::string_view text);

/// A number, decimal or hexadecimal with 0x.
std::optional<std::uint32_t> ParseNumber(std::string_view text);

/// The candidate that a person who wrote `given` most likely meant, whatever the case; nothing when
/// none is near.
std::optional<std::string> Nearest(std::string_view given, const Words& candidates);

/// "; did you mean "NEAREST"?", or nothing.
std::string Suggestion(std::string_view given, const Words& candidates);

/// The text in double quotes.
std::string Quote(std::string_view text);

}  // namespace onu
