/// @file
/// Results for programs and for people.
#include "report/result.h"

#include <utility>

#include "report/report_table.h"

namespace onu {

Result& Result::add(std::string_view member, Json value, std::string_view lines) {
  if (!member.empty()) {
    json[member] = std::move(value);
  }
  return addText(lines);
}

Result& Result::add(std::string_view member, const Result& part) {
  return add(member, part.json, part.text);
}

Result& Result::add(std::string_view member, const Table& table, std::string_view none) {
  return add(member, table.json(), table.text(none));
}

Result& Result::addLine(std::string_view member, std::string_view title, const Cell& cell) {
  return add(member, cell.json, std::string(title) + ": " + cell.text + "\n");
}

Result& Result::addText(std::string_view lines) {
  text += lines;
  return *this;
}

Result ListedLines(const std::vector<std::string>& texts, std::string_view prefix) {
  return Listed(texts, [prefix](const std::string& text) -> Result {
    return {text, std::string(prefix) + text + "\n"};
  });
}

}  // namespace onu
