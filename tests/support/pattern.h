/// @file
/// Regular expressions of POSIX (IEEE Std 1003.1, extended). std::regex takes seconds to compile and, on the
/// target, most of a test's time.
#pragma once

#include <memory>
#include <optional>
#include <regex.h>
#include <string>
#include <vector>

namespace hal_test {

class Pattern {
 public:
  /// The whole match, then the groups; a group that took no part is empty.
  using Groups = std::vector<std::string>;

  /// Throws std::invalid_argument when this is no expression.
  explicit Pattern(const std::string& expression);

  /// The groups when the whole text matches.
  [[nodiscard]] std::optional<Groups> match(const std::string& text) const;

  /// The groups of each match, none overlapping another.
  [[nodiscard]] std::vector<Groups> findAll(const std::string& text) const;

  /// The text with each match replaced; see Expanded.
  [[nodiscard]] std::string replaceAll(const std::string& text,
                                       const std::string& replacement) const;

 private:
  struct Release {
    void operator()(regex_t* expression) const;
  };

  /// The first match from there on.
  [[nodiscard]] std::optional<std::vector<regmatch_t>> find(const std::string& text,
                                                            std::size_t from) const;

  std::unique_ptr<regex_t, Release> expression_;
};

/// The text with "$1" to "$9" replaced by the groups.
std::string Expanded(const std::string& text, const Pattern::Groups& groups);

}  // namespace hal_test
