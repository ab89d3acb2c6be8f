/// @file
/// Tables of a report: what is told of one kind of thing is described once, column by column, and
/// shown to programs and to people.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "report/json.h"

namespace onu {

/// A value for programs, and what people read of it. By itself nothing and an empty list read "-", a
/// list's items stand between commas, a text is as it is.
struct Cell {
  Cell() : Cell(Json()) {}
  Cell(Json value);
  Cell(Json value, std::string words) : json(std::move(value)), text(std::move(words)) {}
  template <typename Value>
  requires std::constructible_from<Json, const Value&> Cell(const Value& value)
      : Cell(Json(value)) {}
  /// What has a name is told by it.
  template <typename Value>
  requires requires(const Value& value) { value.name(); }
  Cell(const Value& value) : Cell(Json(value.name())) {}
  template <typename Value>
  Cell(const std::optional<Value>& value) : Cell(value ? Cell(*value) : Cell()) {}

  Json json;
  std::string text;
  bool absent = false;  ///< of a part that is not there
};

/// A column's member when its values are objects whose members become those of the row.
constexpr std::string_view kEveryMember = "*";

/// One column; `value` is anything that makes a cell of a row, a member of the row as well.
template <typename Row>
struct Column {
  std::string_view member;   ///< of the row's JSON object; empty: for people alone
  std::string_view heading;  ///< empty: for programs alone
  std::function<Cell(const Row&)> value;
  std::string_view outer = {};  ///< the object in the row's object to which `member` belongs
};

template <typename Row>
using Columns = std::vector<Column<Row>>;

/// Columns of several origins, one behind the other.
template <typename Row>
Columns<Row> Joined(std::initializer_list<Columns<Row>> groups) {
  Columns<Row> joined;
  for (const Columns<Row>& group : groups) {
    joined.insert(joined.end(), group.begin(), group.end());
  }
  return joined;
}

/// The columns of a part of the row, for programs an object of its own: null where the row lacks the
/// part. `part` is a member of the row, or anything else that yields the part or nothing.
template <typename Row, typename Part>
Columns<Row> Within(std::string_view outer, const Columns<Part>& columns,
                    std::type_identity_t<std::function<std::optional<Part>(const Row&)>> part) {
  Columns<Row> within;
  for (const Column<Part>& column : columns) {
    within.push_back({column.member, column.heading,
                      [part, value = column.value](const Row& row) {
                        const std::optional<Part> there = part(row);
                        Cell cell = there ? value(*there) : Cell();
                        cell.absent = !there;
                        return cell;
                      },
                      outer});
  }
  return within;
}

enum class Layout : std::uint8_t {
  Rows,
  Turned,  ///< for people, a line for each column, and the first column's values are the headings
};

class Table {
 public:
  /// Asks column by column, not row by row: where asking leaves a trace, that is its order.
  template <typename Row, typename Rows>
  Table(const Columns<Row>& columns, const Rows& rows, Layout layout = Layout::Rows)
      : layout_(layout), rows_(std::size(rows)) {
    for (const auto& [member, heading, value, outer] : columns) {
      Series& series = series_.emplace_back(Series{member, heading, outer});
      for (const Row& row : rows) {
        series.cells.push_back(value(row));
      }
    }
  }

  /// An array with an object for each row.
  [[nodiscard]] Json json() const;

  /// The object of one row.
  [[nodiscard]] Json json(std::size_t row) const;

  /// Headings and rows, aligned; a line that says `none` when there is no row.
  [[nodiscard]] std::string text(std::string_view none) const;

 private:
  /// A column with its cells.
  struct Series {
    std::string_view member;
    std::string_view heading;
    std::string_view outer;
    std::vector<Cell> cells = {};
  };

  Layout layout_;
  std::size_t rows_;
  std::vector<Series> series_ = {};
};

/// The object that the columns make of one row.
template <typename Row>
Json ToJson(const Columns<Row>& columns, const Row& row) {
  return Table(columns, std::span(&row, 1)).json(0);
}

}  // namespace onu
