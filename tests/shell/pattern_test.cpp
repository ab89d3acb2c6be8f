/// @file
/// Tests of the tokenizer and of patterns.
#include "shell/pattern.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace virtual_onu {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// The tokens, with '_' before those that blanks precede.
std::vector<std::string> Texts(std::string_view line) {
  std::vector<std::string> texts;
  for (const Token& token : Tokenize(line)) {
    texts.push_back((token.spaced ? "_" : "") + std::string(token.text));
  }
  return texts;
}

Match Hold(std::string_view pattern, std::string_view line) {
  return MatchPattern(Tokenize(pattern), Tokenize(line));
}

TEST(Tokenize, CutsWordsAndMarks) {
  EXPECT_THAT(Texts("bs /b/c vlan/name=wan0_5 vid_enable[5]=yes"),
              ElementsAre("bs", "_/b/c", "_vlan/name", "=", "wan0_5", "_vid_enable", "[", "5", "]",
                          "=", "yes"));
  EXPECT_THAT(Texts("x={{a=b},c}"),
              ElementsAre("x", "=", "{", "{", "a", "=", "b", "}", ",", "c", "}"));
  EXPECT_THAT(Texts("x > /dev/null 2>&1"),
              ElementsAre("x", "_>", "_/dev/null", "_2", ">", "&", "1"));
}

TEST(Tokenize, AnyBlanksAreOneSeparator) {
  EXPECT_THAT(Texts("  a \t  b  "), ElementsAre("a", "_b"));
  EXPECT_THAT(Texts(""), IsEmpty());
  EXPECT_THAT(Texts(" \t "), IsEmpty());
}

TEST(MatchPattern, LiteralsMustBeEqual) {
  EXPECT_TRUE(Hold("a b=c", "a b=c").matched);
  EXPECT_FALSE(Hold("a b=c", "a b=d").matched);
  EXPECT_FALSE(Hold("a b=c", "a b").matched);
  EXPECT_FALSE(Hold("a", "").matched);
}

TEST(MatchPattern, BlanksMustStandWhereThePatternHasThem) {
  EXPECT_TRUE(Hold("a b", "a   b").matched);
  EXPECT_FALSE(Hold("a=b", "a =b").matched);
  EXPECT_FALSE(Hold("a =b", "a=b").matched);
  EXPECT_EQ(Hold("a=b", "a =b").expected, "no blank before it");
  EXPECT_EQ(Hold("a =b", "a=b").expected, "a blank before it");
}

TEST(MatchPattern, LeftOverTokens_AreCountedNotRefused) {
  const Match match = Hold("a b", "a b > c");
  EXPECT_TRUE(match.matched);
  EXPECT_EQ(match.tokens, 2U);
}

TEST(MatchPattern, Placeholders_TakeTheirArguments) {
  const Match match = Hold("$word $number $hex $switch", "eth0 16 0x1F yes");
  ASSERT_TRUE(match.matched);
  ASSERT_EQ(match.arguments.size(), 4U);
  EXPECT_EQ(match.arguments[0].text, "eth0");
  EXPECT_EQ(match.arguments[1].number, 16U);
  EXPECT_EQ(match.arguments[2].number, 0x1FU);
  EXPECT_EQ(match.arguments[3].number, 1U);
  EXPECT_EQ(Hold("$hex", "1f").arguments.at(0).number, 0x1FU);
  EXPECT_EQ(Hold("$switch", "no").arguments.at(0).number, 0U);
}

TEST(MatchPattern, Placeholders_RefuseWhatTheyAreNot) {
  struct Row {
    const char* pattern;
    const char* line;
    const char* expected;
  };
  const std::vector<Row> rows = {
      {"$word", "=", "a word"},
      {"$number", "x", "a decimal number"},
      {"$number", "-1", "a decimal number"},
      {"$number", "0x10", "a decimal number"},
      {"$number", "4294967296", "a decimal number"},
      {"$hex", "0x", "a hexadecimal number"},
      {"$hex", "g", "a hexadecimal number"},
      {"$hex", "-1", "a hexadecimal number"},
      {"$hex", "100000000", "a hexadecimal number"},
      {"$switch", "YES", "yes or no"},
      {"a", "b", "\"a\""},
  };
  for (const Row& row : rows) {
    const Match match = Hold(row.pattern, row.line);
    EXPECT_FALSE(match.matched) << row.pattern << " " << row.line;
    EXPECT_EQ(match.expected, row.expected) << row.pattern << " " << row.line;
  }
}

TEST(MatchPattern, Mismatch_TellsHowFarItFitted) {
  const Match match = Hold("a b $number", "a b c");
  EXPECT_EQ(match.tokens, 2U);
  EXPECT_EQ(match.expected, "a decimal number");
}

}  // namespace
}  // namespace virtual_onu
