/// @file
/// Tests of the program's JSON values.
#include "report/json.h"

#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

namespace onu {
namespace {

using testing::ElementsAre;

const Json kObject = {{"name", "uni1"}, {"up", true}, {"vids", std::vector<int>{100, 200}}};

TEST(Json, Dump_HasMembersInTheOrderInWhichTheyWereMade) {
  Json json = {{"z", 1}, {"a", nullptr}};
  json["m"] = kObject;
  json["z"] = 2;
  EXPECT_EQ(json.dump(), R"({"z":2,"a":null,"m":{"name":"uni1","up":true,"vids":[100,200]}})");
}

TEST(Json, Dump_ReplacesWhatIsNoUtf8) {
  EXPECT_EQ(Json("a\xFFz").dump(), "\"a\uFFFDz\"");
}

TEST(Json, DumpIndented_IsOneLineAValue) {
  EXPECT_EQ(kObject.dumpIndented(),
            "{\n \"name\": \"uni1\",\n \"up\": true,\n \"vids\": [\n  100,\n  200\n ]\n}");
}

TEST(Json, Numbers_AreWrittenWhole) {
  EXPECT_EQ(Json(std::numeric_limits<std::uint64_t>::max()).dump(), "18446744073709551615");
  EXPECT_EQ(Json(std::numeric_limits<std::int64_t>::min()).dump(), "-9223372036854775808");
  EXPECT_EQ(Json(0.5).dump(), "0.5");
}

TEST(Json, EqualNumbers_AreEqualWhateverTheirTypes) {
  EXPECT_EQ(Json(std::int8_t{7}), Json(std::uint64_t{7}));
  EXPECT_EQ(Json(-7), Json(std::int64_t{-7}));
  EXPECT_NE(Json(-1), Json(std::numeric_limits<std::uint64_t>::max()));
  EXPECT_EQ(Json(-7).get<int>(), -7);
}

TEST(Json, KindsDiffer) {
  EXPECT_NE(Json(1), Json(true));
  EXPECT_NE(Json(nullptr), Json(false));
  EXPECT_NE(Json::array(), Json::object());
  EXPECT_TRUE(Json().is_null());
  EXPECT_TRUE(Json(false).is_boolean());
  EXPECT_TRUE(Json("").is_string());
  EXPECT_TRUE(Json::array().is_array());
  EXPECT_TRUE(Json::object().is_object());
}

TEST(Json, Parse_GivesWhatDumpWrote) {
  const Json json = {{"object", kObject}, {"list", Json::array({1, -2, 0.25, "x", nullptr})}};
  EXPECT_EQ(Json::parse(json.dump()), std::optional(json));
  EXPECT_EQ(Json::parse(json.dumpIndented()), std::optional(json));
}

TEST(Json, Parse_WhatIsNoJson_GivesNothing) {
  for (const char* text : {"", "{", "[1,]", "uni1", "{} {}"}) {
    EXPECT_EQ(Json::parse(text), std::nullopt) << text;
  }
}

TEST(Json, Index_AbsentMemberOrItem_Throws) {
  EXPECT_THROW((void)kObject["port"], std::out_of_range);
  EXPECT_THROW((void)kObject["vids"].at(2), std::out_of_range);
  EXPECT_THROW((void)kObject.at(0), std::out_of_range);
  Json list = Json::array();
  EXPECT_THROW((void)list[0], std::out_of_range);
  EXPECT_THROW(list.erase(0), std::out_of_range);
}

TEST(Json, Get_OfAnotherKind_Throws) {
  EXPECT_THROW((void)kObject["name"].get<int>(), std::bad_variant_access);
  EXPECT_THROW((void)kObject["vids"].get<std::string>(), std::bad_variant_access);
}

TEST(Json, Null_BecomesWhatIsPutIntoIt) {
  Json object;
  object["a"]["b"] = 1;
  EXPECT_EQ(object.dump(), R"({"a":{"b":1}})");
  Json array;
  array.push_back("x");
  EXPECT_EQ(array.dump(), R"(["x"])");
}

TEST(Json, Items_CanBeWalkedAndTakenOut) {
  Json list = kObject["vids"];
  list.push_back(300);
  list.erase(0);
  EXPECT_THAT(list.get<std::vector<int>>(), ElementsAre(200, 300));
  EXPECT_EQ(list.back(), 300);
  EXPECT_EQ(list.size(), 2U);
  EXPECT_EQ(kObject.size(), 3U);
  EXPECT_TRUE(Json("text").empty());
  EXPECT_EQ(Json("text").begin(), Json("text").end());
}

TEST(Json, Update_SetsTheOthersMembers) {
  Json json = kObject;
  json.update({{"up", false}, {"speed", 1000}});
  EXPECT_EQ(json.dump(), R"({"name":"uni1","up":false,"vids":[100,200],"speed":1000})");
  EXPECT_TRUE(json.contains("speed"));
  EXPECT_FALSE(kObject.contains("speed"));
}

TEST(Json, OrNull_IsTheValueOrNull) {
  EXPECT_EQ(OrNull(std::optional<int>(5)), 5);
  EXPECT_EQ(OrNull(std::optional<int>()), nullptr);
}

}  // namespace
}  // namespace onu
