/// @file
/// Splitting of lines, and edit distance.
#include "language/words.h"

#include <algorithm>
#include <charconv>
#include <system_error>

#include "language/failure.h"

namespace onu {

namespace {

constexpr std::string_view kBlanks = " \t\r";

/// Takes one character after the other and keeps where it is: between words, in one, in quotes.
class Splitter {
 public:
  void take(char character) {
    if (escaped_) {
      append(character);
      escaped_ = false;
    } else if (character == '\\' && quote_ != '\'') {
      escaped_ = true;
      line_.openWord = true;
    } else if (quote_ != 0) {
      takeQuoted(character);
    } else {
      takePlain(character);
    }
  }

  [[nodiscard]] bool comment() const { return comment_; }

  SplitLine finish() {
    line_.openQuote = quote_ != 0 || escaped_;
    if (line_.openWord) {
      line_.words.push_back(word_);
    }
    return line_;
  }

 private:
  void takeQuoted(char character) {
    if (character == quote_) {
      quote_ = 0;
    } else {
      append(character);
    }
  }

  void takePlain(char character) {
    if (kBlanks.find(character) != std::string_view::npos) {
      endWord();
    } else if (character == '#' && !line_.openWord) {
      comment_ = true;
    } else if (character == '\'' || character == '"') {
      quote_ = character;
      line_.openWord = true;
    } else {
      append(character);
    }
  }

  void append(char character) {
    word_ += character;
    line_.openWord = true;
  }

  void endWord() {
    if (line_.openWord) {
      line_.words.push_back(word_);
    }
    word_.clear();
    line_.openWord = false;
  }

  SplitLine line_;
  std::string word_;
  char quote_ = 0;
  bool escaped_ = false;
  bool comment_ = false;
};

/// Number of insertions, deletions, replacements and swaps of neighbours that lead from one text to
/// the other.
std::size_t EditDistance(std::string_view from, std::string_view to) {
  std::vector<std::vector<std::size_t>> distance(from.size() + 1,
                                                 std::vector<std::size_t>(to.size() + 1));
  for (std::size_t i = 0; i <= from.size(); ++i) {
    for (std::size_t j = 0; j <= to.size(); ++j) {
      if (i == 0 || j == 0) {
        distance[i][j] = i + j;
        continue;
      }
      const std::size_t replaced = distance[i - 1][j - 1] + (from[i - 1] == to[j - 1] ? 0 : 1);
      distance[i][j] = std::min({replaced, distance[i - 1][j] + 1, distance[i][j - 1] + 1});
      if (i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1]) {
        distance[i][j] = std::min(distance[i][j], distance[i - 2][j - 2] + 1);
      }
    }
  }
  return distance[from.size()][to.size()];
}

/// The word as SplitWords() reads it back.
std::string Quoted(const std::string& word) {
  const bool plain =
      !word.empty() && word.front() != '#' && word.find_first_of(" \t\r\\'\"") == std::string::npos;
  if (plain) {
    return word;
  }
  std::string quoted = "\"";
  for (const char character : word) {
    if (character == '"' || character == '\\') {
      quoted += '\\';
    }
    quoted += character;
  }
  return quoted + '"';
}

}  // namespace

SplitLine Split(std::string_view line) {
  Splitter splitter;
  for (const char character : line) {
    splitter.take(character);
    if (splitter.comment()) {
      break;
    }
  }
  return splitter.finish();
}

Words SplitWords(std::string_view line) {
  SplitLine split = Split(line);
  if (split.openQuote) {
    throw WrongUse("the line ends inside quotes or behind a backslash; close the quotes");
  }
  return std::move(split.words);
}

std::string JoinWords(const Words& words) {
  Words quoted;
  std::ranges::transform(words, std::back_inserter(quoted), Quoted);
  return Join(quoted, " ");
}

std::string Join(const Words& texts, std::string_view separator) {
  std::string joined;
  for (const std::string& text : texts) {
    if (&text != &texts.front()) {
      joined += separator;
    }
    joined += text;
  }
  return joined;
}

Words SplitAt(std::string_view text, char separator) {
  Words parts;
  std::size_t start = 0;
  for (std::size_t end = text.find(separator); end != std::string_view::npos;
       end = text.find(separator, start)) {
    parts.emplace_back(text.substr(start, end - start));
    start = end + 1;
  }
  parts.emplace_back(text.substr(start));
  return parts;
}

std::string Lower(std::string_view text) {
  std::string lower(text);
  std::ranges::transform(lower, lower.begin(), [](char character) {
    const bool upper = character >= 'A' && character <= 'Z';
    return upper ? static_cast<char>(character - 'A' + 'a') : character;
  });
  return lower;
}

std::optional<std::uint32_t> ParseNumber(std::string_view text) {
  constexpr int kDecimal = 10;
  constexpr int kHexadecimal = 16;
  const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
  const std::string_view digits = hexadecimal ? text.substr(2) : text;
  std::uint32_t number = 0;
  const char* const end = digits.data() + digits.size();
  const auto [stop, error] =
      std::from_chars(digits.data(), end, number, hexadecimal ? kHexadecimal : kDecimal);
  if (error != std::errc() || stop != end) {
    return std::nullopt;
  }
  return number;
}

std::optional<std::string> Nearest(std::string_view given, const Words& candidates) {
  // One slip in three characters is still a slip; more is another word.
  std::size_t limit = std::max<std::size_t>(1, given.size() / 3);
  std::optional<std::string> nearest;
  for (const std::string& candidate : candidates) {
    const std::size_t distance = EditDistance(Lower(given), Lower(candidate));
    if (distance <= limit) {
      nearest = candidate;
      limit = distance == 0 ? 0 : distance - 1;
    }
  }
  return nearest;
}

std::string Suggestion(std::string_view given, const Words& candidates) {
  const std::optional<std::string> nearest = Nearest(given, candidates);
  return nearest ? "; did you mean " + Quote(*nearest) + "?" : "";
}

std::string Quote(std::string_view text) {
  return "\"" + std::string(text) + "\"";
}

}  // namespace onu
