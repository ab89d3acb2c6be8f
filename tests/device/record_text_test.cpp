/// @file
/// Tests of the notations of field values.
#include "device/record_text.h"

#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

namespace virtual_onu {
namespace {

FieldInfo FieldOf(FieldFormat format, std::size_t size, std::size_t width) {
  FieldInfo field;
  field.name = "field";
  field.size = size;
  field.width = width;
  field.format = format;
  return field;
}

FieldInfo WordOf(FieldFormat format) {
  return FieldOf(format, 4, 4);
}

/// Reads a text into a field full of 0xEE and writes it again; "-" when the text is refused, which
/// must leave the field alone.
std::string ReadAndWrite(const FieldInfo& field, std::string_view text) {
  const Bytes before(field.size, 0xEE);
  Bytes bytes = before;
  if (!ReadField(field, text, bytes)) {
    EXPECT_EQ(bytes, before) << text;
    return "-";
  }
  return WriteField(field, bytes);
}

struct Case {
  std::string_view text;
  std::string_view written;  ///< "-": refused
};

void ExpectCases(const FieldInfo& field, const std::vector<Case>& cases) {
  for (const Case& row : cases) {
    EXPECT_EQ(ReadAndWrite(field, row.text), row.written) << row.text;
  }
}

TEST(FieldText, Dec) {
  ExpectCases(WordOf(FieldFormat::Dec), {{"0", "0"},
                                         {"4294967295", "4294967295"},
                                         {"0xff", "255"},
                                         {"0xFFFFFFFF", "4294967295"},
                                         {"4294967296", "-"},
                                         {"0x100000000", "-"},
                                         {"0x", "-"},
                                         {"0x-1", "-"},
                                         {"", "-"},
                                         {"-1", "-"},
                                         {"1 ", "-"},
                                         {"none", "-"}});
}

TEST(FieldText, Dec_FitsItsWidth) {
  ExpectCases(FieldOf(FieldFormat::Dec, 1, 1), {{"255", "255"}, {"256", "-"}, {"0x100", "-"}});
  ExpectCases(FieldOf(FieldFormat::Dec, 2, 2), {{"65535", "65535"}, {"65536", "-"}});
}

TEST(FieldText, Dec_OfAnArray) {
  ExpectCases(FieldOf(FieldFormat::Dec, 6, 2), {{"1,2,65535", "1,2,65535"},
                                                {"1,2", "-"},
                                                {"1,2,3,4", "-"},
                                                {"1,2,65536", "-"},
                                                {"1,,3", "-"},
                                                {"1,2,", "-"}});
}

TEST(FieldText, Hex) {
  ExpectCases(WordOf(FieldFormat::Hex), {{"0", "0x00000000"}, {"0xDEADbeef", "0xdeadbeef"}});
  ExpectCases(FieldOf(FieldFormat::Hex, 2, 2),
              {{"0x8100", "0x8100"}, {"2048", "0x0800"}, {"8100", "0x1fa4"}, {"0x18100", "-"}});
}

TEST(FieldText, Index) {
  ExpectCases(WordOf(FieldFormat::Index), {{"none", "none"},
                                           {"0", "0"},
                                           {"4294967295", "none"},
                                           {"4294967294", "4294967294"},
                                           {"None", "-"},
                                           {"-1", "-"}});
}

TEST(FieldText, Dir) {
  ExpectCases(WordOf(FieldFormat::Dir),
              {{"ds", "ds"}, {"us", "us"}, {"0", "ds"}, {"1", "us"}, {"2", "us"}, {"up", "-"}});
  Bytes bytes(4);
  EXPECT_TRUE(ReadField(WordOf(FieldFormat::Dir), "us", bytes));
  EXPECT_EQ(WriteField(WordOf(FieldFormat::Dec), bytes), "1");
}

TEST(FieldText, Keys) {
  ExpectCases(WordOf(FieldFormat::Keys),
              {{"0", "0"},
               {"0x48000", "ingressPort|vlanNum"},
               {"0x48080", "outerVid|ingressPort|vlanNum"},
               {"vlanNum|ingressPort", "ingressPort|vlanNum"},
               {"srcIp|dstIp|l4SrcPort|l4DstPort", "srcIp|dstIp|l4SrcPort|l4DstPort"},
               {"0x40200", "dstMac|vlanNum"},
               {"0x80000004", "0x80000004"},
               {"dstMac|0x4|0x8", "dstMac|0xc"},
               {"outerVid|", "-"},
               {"|outerVid", "-"},
               {"", "-"},
               {"vid", "-"}});
  Bytes bytes(4);
  EXPECT_TRUE(ReadField(WordOf(FieldFormat::Keys), "outerPbit|0x1", bytes));
  EXPECT_EQ(WriteField(WordOf(FieldFormat::Hex), bytes), "0x00010001");
}

TEST(FieldText, TagOps) {
  ExpectCases(WordOf(FieldFormat::TagOps), {{"4", "pop"},
                                            {"8", "replace_vid"},
                                            {"0x100", "replace_priority"},
                                            {"0x101", "push|replace_priority"},
                                            {"0x108", "replace_vid|replace_priority"},
                                            {"push|pop|2", "push|pop|0x2"},
                                            {"0", "0"},
                                            {"swap", "-"}});
}

TEST(FieldText, Forward) {
  ExpectCases(WordOf(FieldFormat::Forward), {{"pass", "pass"},
                                             {"1", "pass"},
                                             {"2", "trap"},
                                             {"acl", "acl"},
                                             {"0", "0"},
                                             {"3", "3"},
                                             {"drop", "-"}});
}

TEST(FieldText, Mac) {
  ExpectCases(FieldOf(FieldFormat::Mac, 6, 1), {{"01:80:C2:00:00:0e", "01:80:c2:00:00:0e"},
                                                {"00:00:00:00:00:00", "00:00:00:00:00:00"},
                                                {"01:80:c2:00:00", "-"},
                                                {"0180c200000e", "-"}});
}

TEST(FieldText, Ip) {
  const FieldInfo field = FieldOf(FieldFormat::Ip, 16, 1);
  ExpectCases(field, {{"10.0.1.255", "10.0.1.255"},
                      {"0.0.0.0", "0.0.0.0"},
                      {"2001:db8::1", "2001:db8::1"},
                      {"FF02::16", "ff02::16"},
                      {"10.0.1", "-"},
                      {"", "-"}});
  Bytes bytes(16, 0xEE);
  EXPECT_TRUE(ReadField(field, "10.0.1.255", bytes));
  EXPECT_EQ(bytes, (Bytes{10, 0, 1, 255, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(FieldText, Ip_AnyByteBehindTheFourth_MakesItIpv6) {
  const FieldInfo field = FieldOf(FieldFormat::Ip, 16, 1);
  Bytes bytes(16);
  bytes[3] = 1;
  EXPECT_EQ(WriteField(field, bytes), "0.0.0.1");
  bytes[4] = 1;
  EXPECT_EQ(WriteField(field, bytes), "0:1:100::");
  bytes[4] = 0;
  bytes[15] = 2;
  EXPECT_EQ(WriteField(field, bytes), "0:1::2");
}

TEST(FieldText, RawAndReservedBytes) {
  for (const FieldFormat format : {FieldFormat::Raw, FieldFormat::Reserved}) {
    ExpectCases(FieldOf(format, 3, 1), {{"0", "0"},
                                        {"000000", "0"},
                                        {"00Ab01", "00ab01"},
                                        {"00ab", "00ab00"},
                                        {"00ab0", "-"},
                                        {"00ab0102", "-"},
                                        {"0x1", "-"}});
  }
}

TEST(FieldText, ReservedNumber) {
  ExpectCases(WordOf(FieldFormat::Reserved), {{"0", "0x00000000"}, {"0x1234", "0x00001234"}});
}

TEST(FieldText, Expected_SaysWhatIsTaken) {
  EXPECT_EQ(ExpectedText(FieldOf(FieldFormat::Dec, 1, 1)), "a number from 0 to 255");
  EXPECT_EQ(ExpectedText(FieldOf(FieldFormat::Hex, 2, 2)), "a number from 0 to 65535");
  EXPECT_EQ(ExpectedText(FieldOf(FieldFormat::Dec, 6, 2)),
            "3 values joined by ',', each a number from 0 to 65535");
  EXPECT_EQ(ExpectedText(WordOf(FieldFormat::Reserved)), "a number from 0 to 4294967295");
  EXPECT_EQ(ExpectedText(WordOf(FieldFormat::Index)), "\"none\" or a number from 0 to 4294967295");
  EXPECT_EQ(ExpectedText(WordOf(FieldFormat::Dir)), "ds, us or a number from 0 to 4294967295");
  EXPECT_EQ(ExpectedText(WordOf(FieldFormat::Forward)),
            "pass, trap, acl or a number from 0 to 4294967295");
  EXPECT_EQ(ExpectedText(WordOf(FieldFormat::TagOps)),
            "names and numbers joined by '|' out of push, pop, replace_vid, replace_priority");
  EXPECT_EQ(ExpectedText(WordOf(FieldFormat::Keys)),
            "names and numbers joined by '|' out of srcIp, dstIp, l4SrcPort, l4DstPort, outerVid, "
            "dstMac, srcMac, etherType, ipProtocol, dscp, ingressPort, outerPbit, vlanNum");
  EXPECT_EQ(ExpectedText(FieldOf(FieldFormat::Mac, 6, 1)),
            "a MAC address such as 01:80:c2:00:00:00");
  EXPECT_EQ(ExpectedText(FieldOf(FieldFormat::Ip, 16, 1)), "an IPv4 or IPv6 address");
  EXPECT_EQ(ExpectedText(FieldOf(FieldFormat::Raw, 3, 1)),
            "0 or up to 6 hexadecimal digits in pairs");
}

}  // namespace
}  // namespace virtual_onu
