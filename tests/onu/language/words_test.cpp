/// @file
/// Tests of lines as words, numbers, and nearest words.
#include "language/words.h"

#include <gmock/gmock.h>

#include "language/failure.h"

namespace onu {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Words, Split_BlanksSeparate) {
  EXPECT_THAT(SplitWords("  send\tuni1   udp \r"), ElementsAre("send", "uni1", "udp"));
  EXPECT_THAT(SplitWords(""), IsEmpty());
  EXPECT_THAT(SplitWords(" \t "), IsEmpty());
}

TEST(Words, Split_QuotesKeepBlanks) {
  EXPECT_THAT(SplitWords(R"(echo "a b" 'c "d' e"f g"h)"),
              ElementsAre("echo", "a b", "c \"d", "ef gh"));
  EXPECT_THAT(SplitWords(R"(echo "" '')"), ElementsAre("echo", "", ""));
}

TEST(Words, Split_BackslashKeepsTheNextCharacterOutsideSingleQuotes) {
  EXPECT_THAT(SplitWords(R"(a\ b "c\"d" 'e\f' \#)"), ElementsAre("a b", "c\"d", "e\\f", "#"));
}

TEST(Words, Split_AWordThatBeginsWithHashEndsTheLine) {
  EXPECT_THAT(SplitWords("Init # starts"), ElementsAre("Init"));
  EXPECT_THAT(SplitWords("# only"), IsEmpty());
  EXPECT_THAT(SplitWords("send uni1 a.pcap#2 #3"), ElementsAre("send", "uni1", "a.pcap#2"));
  EXPECT_THAT(SplitWords("echo '#'"), ElementsAre("echo", "#"));
}

TEST(Words, Split_OpenQuotesAreWrongUse) {
  for (const char* line : {"echo \"a", "echo 'a", "echo a\\"}) {
    try {
      SplitWords(line);
      ADD_FAILURE() << line;
    } catch (const Failure& failure) {
      EXPECT_EQ(failure.status(), ExitStatus::WrongUse);
    }
  }
}

TEST(Words, Split_TellsWhetherTheLineEndsInsideAWord) {
  EXPECT_FALSE(Split("show ").openWord);
  EXPECT_TRUE(Split("show").openWord);
  EXPECT_TRUE(Split("show \"cl").openQuote);
  EXPECT_FALSE(Split("").openWord);
}

TEST(Words, Join_IsTheInverseOfSplit) {
  const Words words = {"plain", "a b", "", "quote\"d", "back\\slash", "#hash", "it's", "a.pcap#1"};
  EXPECT_EQ(SplitWords(JoinWords(words)), words);
  EXPECT_EQ(JoinWords({"send", "uni1"}), "send uni1");
}

TEST(Words, SplitAt_KeepsEmptyParts) {
  EXPECT_THAT(SplitAt("1:22:3", ':'), ElementsAre("1", "22", "3"));
  EXPECT_THAT(SplitAt("1", ':'), ElementsAre("1"));
  EXPECT_THAT(SplitAt(":1::", ':'), ElementsAre("", "1", "", ""));
  EXPECT_THAT(SplitAt("", ':'), ElementsAre(""));
}

TEST(Words, ParseNumber_TakesDecimalAndHexadecimalOf32Bits) {
  EXPECT_EQ(ParseNumber("0"), 0U);
  EXPECT_EQ(ParseNumber("4294967295"), 4294967295U);
  EXPECT_EQ(ParseNumber("0x1FF"), 0x1FFU);
  EXPECT_EQ(ParseNumber("0Xff"), 0xFFU);
  for (const char* text : {"", "-1", "+1", "1 ", " 1", "0x", "4294967296", "0x100000000", "12a"}) {
    EXPECT_EQ(ParseNumber(text), std::nullopt) << text;
  }
}

TEST(Words, Nearest_IsTheClosestWordWhateverTheCase) {
  const Words names = {"show classes", "show flows", "send", "explain"};
  EXPECT_EQ(Nearest("shwo clases", names), "show classes");
  EXPECT_EQ(Nearest("SEND", names), "send");
  EXPECT_EQ(Nearest("snd", names), "send");
  EXPECT_EQ(Nearest("bend", names), "send");
  EXPECT_EQ(Nearest("sned", names), "send");
}

TEST(Words, Nearest_LeavesFarWordsAlone) {
  EXPECT_EQ(Nearest("xyz", {"send", "quit"}), std::nullopt);
  EXPECT_EQ(Nearest("q", {}), std::nullopt);
  EXPECT_EQ(Suggestion("xyz", {"send"}), "");
  EXPECT_EQ(Suggestion("sendd", {"send"}), "; did you mean \"send\"?");
}

}  // namespace
}  // namespace onu
