/// @file
/// Tests of results that are put together from parts.
#include "report/result.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "report/report_table.h"

namespace onu {
namespace {

const Columns<int> kNumbers = {{"number", "number", [](int number) { return number; }}};

TEST(Result, Parts_StandInTheirOrder) {
  const Result part = {{{"inner", true}}, "a part\n"};
  const Result result = Result()
                            .add("z", 1, "one\n")
                            .add("silent", nullptr)
                            .add("a", part)
                            .add("table", Table(kNumbers, std::vector<int>{5}), "no numbers")
                            .addLine("rate", "the rate", Cell(3, "3 bit/s"))
                            .addText("the end\n");
  EXPECT_EQ(result.json.dump(),
            R"({"z":1,"silent":null,"a":{"inner":true},"table":[{"number":5}],"rate":3})");
  EXPECT_EQ(result.text, "one\na part\nnumber\n5\nthe rate: 3 bit/s\nthe end\n");
}

TEST(Result, PartWithoutAMember_IsForPeopleAlone) {
  const Result result = Result().add("", Table(kNumbers, std::vector<int>()), "no numbers");
  EXPECT_EQ(result.json, Json::object());
  EXPECT_EQ(result.text, "no numbers\n");
}

TEST(Listed, IsAnArrayAndLines) {
  const std::vector<int> numbers = {1, 2};
  const Result list = Listed(numbers, [](int number) -> Result {
    return {{{"n", number}}, std::to_string(number) + "\n"};
  });
  EXPECT_EQ(list.json.dump(), R"([{"n":1},{"n":2}])");
  EXPECT_EQ(list.text, "1\n2\n");
  EXPECT_EQ(ListedLines({}).json, Json::array());
  EXPECT_EQ(ListedLines({"a", "b"}, "- ").json, Json::array({"a", "b"}));
  EXPECT_EQ(ListedLines({"a", "b"}, "- ").text, "- a\n- b\n");
}

}  // namespace
}  // namespace onu
