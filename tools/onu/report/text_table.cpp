/// @file
/// Alignment of text tables.
#include "report/text_table.h"

#include <algorithm>

namespace onu {

std::string AlignColumns(const std::vector<Words>& lines) {
  std::vector<std::size_t> widths(lines.front().size());
  for (const Words& line : lines) {
    for (std::size_t column = 0; column < line.size(); ++column) {
      widths[column] = std::max(widths[column], line[column].size());
    }
  }
  std::string text;
  for (const Words& line : lines) {
    for (std::size_t column = 0; column < line.size(); ++column) {
      text += line[column];
      text.append(widths[column] - line[column].size() + 2, ' ');
    }
    text.erase(text.find_last_not_of(' ') + 1);
    text += '\n';
  }
  return text;
}

}  // namespace onu
