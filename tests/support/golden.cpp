/// @file
/// Reading of golden files.
#include "support/golden.h"

#include <algorithm>
#include <cstddef>
#include <fstream>
#include <optional>
#include <span>
#include <sstream>
#include <stdexcept>

namespace hal_test {

namespace {

struct Line {
  std::string place;  ///< "FILE:NUMBER"
  std::string text;
};

std::runtime_error Error(const Line& line, const std::string& what) {
  return std::runtime_error(line.place + ": " + what + ": " + line.text);
}

/// The text without blanks around it.
std::string Trimmed(const std::string& text) {
  const std::size_t first = text.find_first_not_of(' ');
  return first == std::string::npos ? ""
                                    : text.substr(first, text.find_last_not_of(' ') + 1 - first);
}

/// The lines of a section that say something.
std::vector<Line> SectionOf(const std::filesystem::path& file, const std::string& section) {
  std::ifstream in(file);
  std::vector<Line> lines;
  bool inside = false;
  bool found = false;
  std::size_t number = 0;
  for (std::string raw; std::getline(in, raw);) {
    const std::string text = Trimmed(raw);
    ++number;
    if (text.starts_with("== ")) {
      inside = text == "== " + section;
      found = found || inside;
    } else if (inside && !text.empty() && !text.starts_with('#')) {
      lines.push_back({file.filename().string() + ":" + std::to_string(number), text});
    }
  }
  if (!found) {
    throw std::runtime_error(file.string() + ": no section \"" + section + "\"");
  }
  return lines;
}

/// One summand: a number, a name, or NUMBER*NAME.
std::optional<std::int64_t> Term(const std::string& text, const GoldenNumbers& numbers) {
  const std::size_t digits = std::min(text.find_first_not_of("0123456789"), text.size());
  const std::int64_t number = digits == 0 ? 1 : std::stoll(text.substr(0, digits));
  if (digits == text.size()) {
    return digits == 0 ? std::nullopt : std::optional(number);
  }
  const bool factor = digits > 0;
  const auto value = numbers.find(text.substr(digits + (factor ? 1 : 0)));
  if (value == numbers.end() || (factor && text[digits] != '*')) {
    return {};
  }
  return value->second * number;
}

/// Nothing when a summand is wrong or there is none.
std::optional<std::int64_t> Sum(const std::string& text, const GoldenNumbers& numbers) {
  std::int64_t sum = 0;
  for (std::size_t begin = 0; begin < text.size() || begin == 0;) {
    const bool sign = text[begin] == '+' || text[begin] == '-';
    const std::size_t word = begin + (sign ? 1 : 0);
    const std::size_t end = std::min(text.find_first_of("+-", word), text.size());
    const std::optional<std::int64_t> term = Term(text.substr(word, end - word), numbers);
    if (!term) {
      return {};
    }
    sum += text[begin] == '-' ? -*term : *term;
    begin = end;
  }
  return sum;
}

std::string WithNumbers(const Line& line, const GoldenNumbers& numbers) {
  std::string text = line.text;
  for (std::size_t open = text.find('<'); open != std::string::npos;
       open = text.find('<', open + 1)) {
    const std::size_t close = text.find_first_of("<>", open + 1);
    if (close == std::string::npos || text[close] == '<') {
      continue;
    }
    const std::string inside = text.substr(open + 1, close - open - 1);
    if (inside == "line") {
      continue;
    }
    const std::optional<std::int64_t> sum = Sum(inside, numbers);
    if (!sum) {
      throw Error(line, "no sum of numbers and known names");
    }
    text.replace(open, close + 1 - open, std::to_string(*sum));
  }
  return text;
}

/// The place of the `end` that closes the loop whose first line is lines[0].
std::size_t EndOf(std::span<const Line> lines) {
  std::size_t depth = 0;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    depth += lines[i].text.starts_with("repeat ") ? 1 : 0;
    depth -= lines[i].text == "end" ? 1 : 0;
    if (depth == 0) {
      return i;
    }
  }
  throw Error(lines[0], "a loop without end");
}

void Unroll(std::span<const Line> lines, GoldenNumbers numbers, std::vector<std::string>& out) {
  for (std::size_t i = 0; i < lines.size(); ++i) {
    std::istringstream words(lines[i].text);
    std::string word;
    std::string name;
    std::string count;
    if (!(words >> word) || word != "repeat") {
      out.push_back(WithNumbers(lines[i], numbers));
      continue;
    }
    words >> name >> count;
    const std::optional<std::int64_t> rounds = Sum(count, numbers);
    if (!rounds) {
      throw Error(lines[i], "no count");
    }
    const std::size_t end = EndOf(lines.subspan(i));
    for (std::int64_t round = 0; round < *rounds; ++round) {
      numbers[name] = round;
      Unroll(lines.subspan(i + 1, end - 1), numbers, out);
    }
    i += end;
  }
}

}  // namespace

std::vector<std::string> GoldenLines(const std::filesystem::path& file, const std::string& section,
                                     const GoldenNumbers& numbers) {
  std::vector<std::string> lines;
  Unroll(SectionOf(file, section), numbers, lines);
  return lines;
}

}  // namespace hal_test
