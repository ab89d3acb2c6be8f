/// @file
/// Frames cut at every byte, and random ones: nothing reads or writes outside them. The sanitizers
/// watch; what can be checked without them is checked here.
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "chip_builder.h"
#include "datapath/data_path.h"
#include "frame/frame.h"
#include "frame/summary.h"
#include "support/sample_frames.h"

namespace virtual_onu {
namespace {

/// A chip that compares every key and edits every tag.
ChipBuilder BusyChip() {
  ChipBuilder chip;
  std::uint32_t all = 0;
#define ADD_KEY(bit, name, field) all |= (bit);
  BRMGR_KEY_LIST(ADD_KEY)
#undef ADD_KEY
  chip.addClass(kUp, 1, all, 2);
  chip.addFlow(kUp, 1, 0);
  chip.addMatchAll(kUp).vlanActionIndex = 0;
  chip.addAction(kUp, 0, 0x10D, {300, 6, 0, 0x8100});
  return chip;
}

void ExpectInside(const FrameHeaders& headers, std::size_t length) {
  EXPECT_LE(headers.payloadOffset, length);
  EXPECT_LE(headers.l4Offset + headers.l4Length, length);
  EXPECT_LE(headers.tags.size() * kTagSize, length);
  EXPECT_EQ(headers.srcIp.size(), headers.dstIp.size());
  EXPECT_EQ(headers.l4SrcPort.has_value(), headers.l4DstPort.has_value());
}

void TryEdits(const Bytes& frame) {
  Bytes edited = frame;
  const bool tagged = SetOuterVid(edited, 1);
  EXPECT_EQ(SetOuterPcp(edited, 1), tagged);
  EXPECT_EQ(edited.size(), frame.size());
  EXPECT_EQ(PopTag(edited), tagged);
  EXPECT_EQ(edited.size(), frame.size() - (tagged ? kTagSize : 0));
  PushTag(edited, {});
}

/// Runs everything that reads a frame.
void Try(DataPath& path, ByteView bytes) {
  // A copy of just this size, so that a read behind the end is seen.
  const Bytes frame(bytes.begin(), bytes.end());
  FrameHeaders headers;
  const FrameFault fault = ParseFrame(frame, headers);
  ExpectInside(headers, frame.size());
  EXPECT_EQ(fault == FrameFault::Runt, frame.size() < kEthernetHeaderSize);
  EXPECT_TRUE(SummarizeFrame(frame).ends_with("length " + std::to_string(frame.size())));
  EXPECT_EQ(path.explain(PortId::Uni(1), frame).verdict, path.offer(PortId::Uni(1), frame));
  TryEdits(frame);
}

std::uint64_t FramesCounted(const DataPath& path) {
  std::uint64_t frames = 0;
  for (const OutcomeCount& count : path.counters().outcomes()) {
    frames += count.frames;
  }
  return frames;
}

TEST(HostileFrames, EveryPrefixOfTheSamples_IsReadInsideItsBounds) {
  const ChipBuilder chip = BusyChip();
  DataPath path(chip.tables, chip.ports(1));
  std::size_t tried = 0;
  for (const std::string& text : kSamples) {
    const Bytes frame = Hex(text);
    for (std::size_t length = 0; length <= frame.size(); ++length, ++tried) {
      Try(path, ByteView(frame).first(length));
    }
  }
  EXPECT_GT(tried, 400U);
  EXPECT_EQ(FramesCounted(path), tried);
}

TEST(HostileFrames, SamplesWithRandomBytes_AreReadInsideTheirBounds) {
  constexpr unsigned kSeed = 6838;
  constexpr std::size_t kRounds = 3000;
  const ChipBuilder chip = BusyChip();
  DataPath path(chip.tables, chip.ports(1));
  std::mt19937 random(kSeed);
  for (std::size_t round = 0; round < kRounds; ++round) {
    Bytes frame = Hex(kSamples.at(random() % kSamples.size()));
    for (auto edits = random() % 6; edits > 0; --edits) {
      frame.at(random() % frame.size()) = static_cast<std::uint8_t>(random());
    }
    frame.resize(random() % (frame.size() + 1));
    Try(path, frame);
  }
  EXPECT_EQ(FramesCounted(path), kRounds);
}

TEST(HostileFrames, RandomBytesBehindIpAndTagTypes_AreReadInsideTheirBounds) {
  constexpr unsigned kSeed = 6839;
  constexpr std::size_t kRounds = 3000;
  const std::vector<std::string> types = {"0800 4", "86dd 6", "8100 0",
                                          "88a8 0", "8863 1", "0026 4"};
  const ChipBuilder chip = BusyChip();
  DataPath path(chip.tables, chip.ports(1));
  std::mt19937 random(kSeed);
  for (std::size_t round = 0; round < kRounds; ++round) {
    Bytes frame = Hex(kMacs + types.at(random() % types.size()) + "5");
    for (auto more = random() % 100; more > 0; --more) {
      // Small numbers make lengths and next headers that lead further.
      frame.push_back(static_cast<std::uint8_t>(random() % 2 == 0 ? random() : random() % 64));
    }
    Try(path, frame);
  }
  EXPECT_EQ(FramesCounted(path), kRounds);
}

TEST(HostileFrames, AFrameOfNothingButTags_IsRead) {
  Bytes frame = Hex(kMacs);
  for (int tag = 0; tag < 16000; ++tag) {
    frame.insert(frame.end(), {0x81, 0x00, 0x00, 0x01});
  }
  FrameHeaders headers;
  EXPECT_EQ(ParseFrame(frame, headers), FrameFault::TruncatedTag);
  EXPECT_EQ(headers.tags.size(), 15999U);
}

}  // namespace
}  // namespace virtual_onu
