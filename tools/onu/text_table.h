/// @file
/// Tables of text for people: columns as wide as their longest cell.
#pragma once

#include <string>
#include <vector>

#include "words.h"

namespace onu {

/// The lines, which have equally many words, with columns as wide as their longest word and without
/// blanks at line ends.
std::string AlignColumns(const std::vector<Words>& lines);

class TextTable {
 public:
  explicit TextTable(Words heading) { rows_.push_back(std::move(heading)); }

  void add(Words row) { rows_.push_back(std::move(row)); }

  [[nodiscard]] bool empty() const { return rows_.size() == 1; }

  /// The heading and all rows, without blanks at line ends; a line that says `none` when there is
  /// no row.
  [[nodiscard]] std::string text(const std::string& none) const;

 private:
  std::vector<Words> rows_;  ///< the heading first
};

}  // namespace onu
