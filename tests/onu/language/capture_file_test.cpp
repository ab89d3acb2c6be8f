/// @file
/// Tests of reading and writing captures.
#include "language/capture_file.h"

#include <filesystem>
#include <gmock/gmock.h>

#include "language/failure.h"
#include "run_program.h"
#include "scratch.h"

namespace onu {
namespace {

using test::CaptureOf;
using test::FrameTo;
using test::Scratch;

TEST(CaptureFile, Read_GivesFramesAndTimesInOrder) {
  const Scratch scratch;
  const virtual_onu::Bytes first = FrameTo("00:00:00:00:00:01");
  const virtual_onu::Bytes second = FrameTo("00:00:00:00:00:02");
  const std::vector<CapturedFrame> frames =
      ReadCapture(scratch.write("a.pcap", CaptureOf({first, second})));
  ASSERT_EQ(frames.size(), 2U);
  EXPECT_EQ(frames[0].bytes, first);
  EXPECT_EQ(frames[1].bytes, second);
  EXPECT_EQ(frames[1].time.tv_sec, 2);
}

TEST(CaptureFile, Read_TakesRealCaptures) {
  const std::vector<CapturedFrame> frames =
      ReadCapture((test::Sources() / "tests/data/stp.pcap").string());
  ASSERT_EQ(frames.size(), 5U);
  EXPECT_EQ(frames[2].bytes.size(), 21U);
}

TEST(CaptureFile, Read_OfAnEmptyCaptureGivesNothing) {
  const Scratch scratch;
  EXPECT_TRUE(ReadCapture(scratch.write("a.pcap", CaptureOf({}))).empty());
}

TEST(CaptureFile, Write_IsReadBack) {
  const Scratch scratch;
  const CapturedFrame frame = {FrameTo("00:00:00:00:00:01"), {7, 8}};
  CaptureDirectory captures(scratch.path() / "out");
  captures.write("uni1", frame);
  captures.write("uni1", frame);
  captures.write("wan", frame);
  EXPECT_THAT(captures.finish(),
              testing::ElementsAre(scratch / "out/uni1.pcap", scratch / "out/wan.pcap"));
  const std::vector<CapturedFrame> written = ReadCapture(scratch / "out/uni1.pcap");
  ASSERT_EQ(written.size(), 2U);
  EXPECT_EQ(written[1].bytes, frame.bytes);
  EXPECT_EQ(written[1].time.tv_sec, 7);
  EXPECT_EQ(written[1].time.tv_usec, 8);
}

TEST(CaptureFile, Write_MakesNoFileForNothing) {
  const Scratch scratch;
  CaptureDirectory captures(scratch.path() / "out");
  EXPECT_TRUE(captures.finish().empty());
  EXPECT_TRUE(std::filesystem::is_empty(scratch.path() / "out"));
}

TEST(CaptureFile, Write_FailsWhereItCannot) {
  const Scratch scratch;
  std::filesystem::create_directories(scratch.path() / "out/wan.pcap");
  CaptureDirectory captures(scratch.path() / "out");
  EXPECT_THROW(captures.write("wan", {FrameTo("00:00:00:00:00:01"), {}}), Failure);
}

}  // namespace
}  // namespace onu
