/// @file
/// What a command yields, put together part by part.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "report/json.h"

namespace onu {

struct Cell;
class Table;

/// What a command yields, for programs and for people; which one is printed is the session's matter.
/// A part of a result is one as well. Parts are added in their order in both; one without a member is
/// for people alone.
struct Result {
  Json json = Json::object();
  std::string text = {};  ///< whole lines

  Result& add(std::string_view member, Json value, std::string_view lines = "");
  Result& add(std::string_view member, const Result& part);

  /// People read `none` when the table has no row.
  Result& add(std::string_view member, const Table& table, std::string_view none = "");

  /// For people "TITLE: TEXT".
  Result& addLine(std::string_view member, std::string_view title, const Cell& cell);

  Result& addText(std::string_view lines);
};

/// What `report` makes of each item: an array, and the texts one below the other.
template <typename Items, typename Report>
Result Listed(const Items& items, Report report) {
  Result list = {.json = Json::array()};
  for (const auto& item : items) {
    const Result one = report(item);
    list.json.push_back(one.json);
    list.text += one.text;
  }
  return list;
}

/// The texts as an array, and each on a line behind `prefix`.
Result ListedLines(const std::vector<std::string>& texts, std::string_view prefix = "");

}  // namespace onu
