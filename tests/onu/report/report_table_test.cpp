/// @file
/// Tests of tables: what their columns give to programs and to people.
#include "report/report_table.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace onu {
namespace {

/// Something that is told by its name.
struct Place {
  int number = 0;
  [[nodiscard]] std::string name() const { return "place" + std::to_string(number); }
};

struct Size {
  int width;
  int height;
};

const Columns<Size> kSize = {
    {"width", "wide", &Size::width},
    {"height", "high", &Size::height},
};

struct Thing {
  std::string name;
  std::optional<Size> size = {};
  bool good = false;
};

const Columns<Thing> kThings = Joined<Thing>({
    {{"name", "name", &Thing::name}, {"good", "", &Thing::good}},
    Within<Thing>("size", kSize, &Thing::size),
    {{"", "letters", [](const auto& thing) { return thing.name.size(); }}},
});

const std::vector<Thing> kBoth = {{"box", {{40, 5}}, true}, {"nothing"}};

TEST(Cell, SaysWhatItsValueSays) {
  EXPECT_EQ(Cell(7).text, "7");
  EXPECT_EQ(Cell(0.5).text, "0.5");
  EXPECT_EQ(Cell(true).text, "true");
  EXPECT_EQ(Cell("up").text, "up");
  EXPECT_EQ(Cell("").text, "");
  EXPECT_EQ(Cell(std::vector<int>{1, 2}).text, "1,2");
}

TEST(Cell, Nothing_IsADash) {
  EXPECT_EQ(Cell().text, "-");
  EXPECT_EQ(Cell().json, nullptr);
  EXPECT_EQ(Cell(std::optional<int>()).text, "-");
  EXPECT_EQ(Cell(std::optional<int>()).json, nullptr);
  EXPECT_EQ(Cell(std::vector<int>()).text, "-");
  EXPECT_EQ(Cell(std::vector<int>()).json, Json::array());
}

TEST(Cell, WithWords_SaysThese) {
  EXPECT_EQ(Cell(Json(), "none").text, "none");
  EXPECT_EQ(Cell(Json(), "none").json, nullptr);
}

TEST(Cell, WhatHasAName_IsToldByIt) {
  EXPECT_EQ(Cell(Place{3}).json, "place3");
  EXPECT_EQ(Cell(std::optional(Place{4})).text, "place4");
  EXPECT_EQ(Cell(std::optional<Place>()).json, nullptr);
}

TEST(Table, Json_HasTheMembersInTheirOrder) {
  EXPECT_EQ(Table(kThings, kBoth).json().dump(),
            R"([{"name":"box","good":true,"size":{"width":40,"height":5}},)"
            R"({"name":"nothing","good":false,"size":null}])");
}

TEST(Table, Text_HasTheHeadings) {
  EXPECT_EQ(Table(kThings, kBoth).text("none"),
            "name     wide  high  letters\n"
            "box      40    5     3\n"
            "nothing  -     -     7\n");
}

TEST(Table, WithoutRows_SaysSo) {
  const Table table(kThings, std::vector<Thing>());
  EXPECT_EQ(table.json(), Json::array());
  EXPECT_EQ(table.text("no things"), "no things\n");
}

TEST(Table, EveryMember_IsTakenIntoTheRow) {
  const Columns<int> columns = {
      {kEveryMember, "both",
       [](int number) {
         return Cell({{"low", number}, {"high", number + 1}}, "from " + std::to_string(number));
       }},
      {"last", "last", [](int /*number*/) { return true; }},
  };
  const Table table(columns, std::vector<int>{4});
  EXPECT_EQ(table.json().dump(), R"([{"low":4,"high":5,"last":true}])");
  EXPECT_EQ(table.text(""), "both    last\nfrom 4  true\n");
}

TEST(Table, Turned_HasALineForEachColumn) {
  const Table table(kThings, kBoth, Layout::Turned);
  EXPECT_EQ(table.text(""),
            "name     box  nothing\n"
            "wide     40   -\n"
            "high     5    -\n"
            "letters  3    7\n");
  EXPECT_EQ(table.json(), Table(kThings, kBoth).json());
}

TEST(Table, Rows_MayBeThoseOfAMap) {
  using Row = std::pair<const int, std::string>;
  const Columns<Row> columns = {{"key", "key", &Row::first}, {"value", "value", &Row::second}};
  EXPECT_EQ(Table(columns, std::map<int, std::string>{{2, "b"}, {1, "a"}}).text(""),
            "key  value\n1    a\n2    b\n");
}

TEST(Table, Rows_AreAskedColumnByColumn) {
  std::string asked;
  const auto ask = [&asked](int row) {
    asked += std::to_string(row) + " ";
    return row;
  };
  const Columns<int> columns = {{"a", "a", ask}, {"b", "b", ask}};
  const Table table(columns, std::vector<int>{1, 2});
  EXPECT_EQ(asked, "1 2 1 2 ");
}

TEST(Table, ToJson_IsTheObjectOfARow) {
  EXPECT_EQ(ToJson(kSize, {1, 2}).dump(), R"({"width":1,"height":2})");
}

}  // namespace
}  // namespace onu
