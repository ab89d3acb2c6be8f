/// @file
/// Cells, and the two ways to show a table.
#include "report/report_table.h"

#include "report/text_table.h"

namespace onu {

namespace {

std::string TextOf(const Json& value) {
  if (value.is_null() || (value.is_array() && value.empty())) {
    return "-";
  }
  if (value.is_string()) {
    return value.get<std::string>();
  }
  Words items;
  for (const Json& item : value) {
    items.push_back(TextOf(item));
  }
  return items.empty() ? value.dump() : Join(items, ",");
}

/// Rows for columns.
std::vector<Words> Turn(const std::vector<Words>& lines) {
  std::vector<Words> turned(lines.front().size());
  for (const Words& line : lines) {
    for (std::size_t i = 0; i < turned.size(); ++i) {
      turned[i].push_back(line[i]);
    }
  }
  return turned;
}

}  // namespace

Cell::Cell(Json value) : json(std::move(value)), text(TextOf(json)) {}

Json Table::json(std::size_t row) const {
  Json object = Json::object();
  for (const Series& series : series_) {
    const Cell& cell = series.cells[row];
    if (series.member == kEveryMember) {
      object.update(cell.json);
    } else if (cell.absent) {
      object[series.outer] = nullptr;
    } else if (!series.member.empty()) {
      (series.outer.empty() ? object : object[series.outer])[series.member] = cell.json;
    }
  }
  return object;
}

Json Table::json() const {
  Json list = Json::array();
  for (std::size_t row = 0; row < rows_; ++row) {
    list.push_back(json(row));
  }
  return list;
}

std::string Table::text(std::string_view none) const {
  if (rows_ == 0) {
    return std::string(none) + "\n";
  }
  std::vector<Words> lines;
  for (const Series& series : series_) {
    if (!series.heading.empty()) {
      Words& line = lines.emplace_back(Words{std::string(series.heading)});
      for (const Cell& cell : series.cells) {
        line.push_back(cell.text);
      }
    }
  }
  return AlignColumns(layout_ == Layout::Turned ? lines : Turn(lines));
}

}  // namespace onu
