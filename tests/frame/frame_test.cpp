/// @file
/// Ethernet headers and VLAN tags: parsing and the four edits.
#include "frame/frame.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/sample_frames.h"

namespace virtual_onu {
namespace {

struct Parsed {
  FrameFault fault;
  FrameHeaders headers;
};

Parsed Parse(const std::string& frame) {
  Parsed parsed = {};
  parsed.fault = ParseFrame(Hex(frame), parsed.headers);
  return parsed;
}

TEST(Frame, Parse_Untagged_ReadsAddressesAndType) {
  const auto [fault, headers] = Parse("0180c2000001 020304050607 88b5");
  EXPECT_EQ(fault, FrameFault::None);
  EXPECT_EQ(FormatMac(headers.dstMac), "01:80:c2:00:00:01");
  EXPECT_EQ(FormatMac(headers.srcMac), "02:03:04:05:06:07");
  EXPECT_EQ(headers.etherType, 0x88B5);
  EXPECT_EQ(headers.payloadOffset, 14U);
  EXPECT_TRUE(headers.tags.empty());
}

TEST(Frame, Parse_Tags_AreReadOutermostFirst) {
  const auto [fault, headers] = Parse(kDoubleTagged);
  EXPECT_EQ(fault, FrameFault::None);
  EXPECT_EQ(headers.tags,
            (std::vector<VlanTag>{{kTpidService, 3, true, 200}, {kTpidCustomer, 5, false, 100}}));
  EXPECT_EQ(headers.etherType, 0x88B5);
  EXPECT_EQ(headers.payloadOffset, 22U);
}

TEST(Frame, Parse_AnyNumberOfTags_IsRead) {
  const auto [fault, headers] = Parse(kMacs + "8100 0001 8100 0002 88a8 0003 8100 0004 88b5");
  EXPECT_EQ(fault, FrameFault::None);
  ASSERT_EQ(headers.tags.size(), 4U);
  EXPECT_EQ(headers.tags[3].vid, 4U);
}

TEST(Frame, Parse_OtherTpids_AreEtherTypes) {
  for (const std::string tpid : {"9100", "9200", "8101", "88a7"}) {
    const auto [fault, headers] = Parse(kMacs + tpid + "0064 88b5");
    EXPECT_EQ(fault, FrameFault::None);
    EXPECT_TRUE(headers.tags.empty()) << tpid;
    EXPECT_EQ(HexNumber(headers.etherType), "0x" + tpid);
  }
}

TEST(Frame, Parse_BelowAnEthernetHeader_IsARunt) {
  EXPECT_EQ(Parse("").fault, FrameFault::Runt);
  EXPECT_EQ(Parse(kMacs + "88").fault, FrameFault::Runt);
  EXPECT_EQ(Parse(kMacs + "88b5").fault, FrameFault::None);
}

TEST(Frame, Parse_TagCutOff_KeepsTheTagsBeforeIt) {
  for (const std::string rest : {"8100", "8100 a0", "8100 a064", "8100 a064 88"}) {
    const auto [fault, headers] = Parse(kMacs + rest);
    EXPECT_EQ(fault, FrameFault::TruncatedTag) << rest;
    EXPECT_TRUE(headers.tags.empty());
  }
  const auto [fault, headers] = Parse(kMacs + "88a8 70c8 8100 a064");
  EXPECT_EQ(fault, FrameFault::TruncatedTag);
  EXPECT_EQ(headers.tags, (std::vector<VlanTag>{{kTpidService, 3, true, 200}}));
  EXPECT_EQ(Parse(kMacs + "8100 a064 88b5").fault, FrameFault::None);
}

TEST(Frame, Parse_ForgetsWhatTheHeadersHeldBefore) {
  FrameHeaders headers;
  ParseFrame(Hex(kUdp4), headers);
  ParseFrame(Hex(kUntagged), headers);
  EXPECT_FALSE(headers.ipVersion);
  EXPECT_FALSE(headers.l4SrcPort);
  EXPECT_TRUE(headers.srcIp.empty());
}

using Edit = void (*)(Bytes& frame);

std::string Edited(const std::string& frame, Edit edit) {
  Bytes bytes = Hex(frame);
  edit(bytes);
  return ToHex(bytes);
}

TEST(Frame, PushTag_StandsInFrontOfTheOthers) {
  const Edit push = [](Bytes& frame) { PushTag(frame, {kTpidService, 7, true, 4095}); };
  EXPECT_EQ(Edited(kTagged, push), ToHex(Hex(kMacs + "88a8 ffff 8100 a064 " + kPlain)));
  EXPECT_EQ(Edited(kMacs, push), ToHex(Hex(kMacs + "88a8 ffff")));
}

TEST(Frame, PushTag_NumbersOutOfRange_LoseTheirHighBits) {
  EXPECT_EQ(Edited(kUntagged,
                   [](Bytes& frame) {
                     PushTag(frame, {kTpidCustomer, 8, false, 4097});
                   }),
            ToHex(Hex(kMacs + "8100 0001 " + kPlain)));
}

TEST(Frame, PushTag_WithoutTwoAddresses_ChangesNothing) {
  EXPECT_EQ(Edited("0200000000020200000000", [](Bytes& frame) { PushTag(frame, {}); }),
            "0200000000020200000000");
}

TEST(Frame, Setters_KeepTheOtherFieldsOfTheTag) {
  const std::string inner = "8100 a064 " + kPlain;
  EXPECT_EQ(Edited(kDoubleTagged, [](Bytes& frame) { EXPECT_TRUE(SetOuterVid(frame, 4095)); }),
            ToHex(Hex(kMacs + "88a8 7fff " + inner)));
  EXPECT_EQ(Edited(kDoubleTagged, [](Bytes& frame) { EXPECT_TRUE(SetOuterVid(frame, 0x1000)); }),
            ToHex(Hex(kMacs + "88a8 7000 " + inner)));
  EXPECT_EQ(Edited(kDoubleTagged, [](Bytes& frame) { EXPECT_TRUE(SetOuterPcp(frame, 4)); }),
            ToHex(Hex(kMacs + "88a8 90c8 " + inner)));
  EXPECT_EQ(Edited(kDoubleTagged, [](Bytes& frame) { EXPECT_TRUE(SetOuterPcp(frame, 0xF8)); }),
            ToHex(Hex(kMacs + "88a8 10c8 " + inner)));
}

TEST(Frame, PopTag_TakesTheOuterTag) {
  EXPECT_EQ(Edited(kDoubleTagged, [](Bytes& frame) { EXPECT_TRUE(PopTag(frame)); }),
            ToHex(Hex(kTagged)));
  EXPECT_EQ(Edited(kMacs + "8100 a064 88b5", [](Bytes& frame) { EXPECT_TRUE(PopTag(frame)); }),
            ToHex(Hex(kMacs + "88b5")));
}

TEST(Frame, EditsWithoutAWholeTag_ReturnFalseAndChangeNothing) {
  int tried = 0;
  for (const std::string& text :
       {kUntagged, kMacs + "9100 a064 88b5", kMacs + "8100 a064 88", kMacs, std::string()}) {
    const Bytes before = Hex(text);
    Bytes frame = before;
    EXPECT_FALSE(PopTag(frame)) << text;
    EXPECT_FALSE(SetOuterVid(frame, 1)) << text;
    EXPECT_FALSE(SetOuterPcp(frame, 1)) << text;
    EXPECT_EQ(frame, before);
    ++tried;
  }
  EXPECT_EQ(tried, 5);
}

}  // namespace
}  // namespace virtual_onu
