/// @file
/// Alignment of text tables.
#include "report/text_table.h"

#include <algorithm>

namespace onu {

std::string TextTable::text(const std::string& none) const {
  if (empty()) {
    return none + "\n";
  }
  std::vector<std::size_t> widths(rows_.front().size());
  for (const Words& row : rows_) {
    for (std::size_t column = 0; column < row.size(); ++column) {
      widths[column] = std::max(widths[column], row[column].size());
    }
  }
  std::string text;
  for (const Words& row : rows_) {
    for (std::size_t column = 0; column < row.size(); ++column) {
      text += row[column];
      text.append(widths[column] - row[column].size() + 2, ' ');
    }
    text.erase(text.find_last_not_of(' ') + 1);
    text += '\n';
  }
  return text;
}

}  // namespace onu
