/// @file
/// Tests of the ends of links.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <string>

#include "wire.h"

namespace virtual_onu {
namespace {

using test::FrameOf;
using test::Wire;

TEST(FrameEnd, Send_ArrivesAsOneFrameEach) {
  Wire wire;
  FrameEnd end = wire.takeNear("near");
  EXPECT_EQ(end.name(), "near");
  EXPECT_TRUE(end.send(FrameOf(1, 60)));
  EXPECT_TRUE(end.send(FrameOf(2, 1518)));
  EXPECT_EQ(wire.next(), FrameOf(1, 60));
  EXPECT_EQ(wire.next(), FrameOf(2, 1518));
  EXPECT_EQ(wire.next(), Bytes());
}

TEST(FrameEnd, Receive_GivesFramesThenNothing) {
  Wire wire;
  FrameEnd end = wire.takeNear("near");
  wire.send(FrameOf(1, 60));
  wire.send(FrameOf(2, 1518));
  Bytes frame;
  EXPECT_EQ(end.receive(frame), Received::Frame);
  EXPECT_EQ(frame, FrameOf(1, 60));
  EXPECT_EQ(end.receive(frame), Received::Frame);
  EXPECT_EQ(frame, FrameOf(2, 1518));
  EXPECT_EQ(end.receive(frame), Received::Nothing);
}

TEST(FrameEnd, Receive_FarEndGone_GivesWhatWasSentThenGone) {
  Wire wire;
  FrameEnd end = wire.takeNear("near");
  wire.send(FrameOf(1));
  wire.cut();
  Bytes frame;
  EXPECT_EQ(end.receive(frame), Received::Frame);
  EXPECT_EQ(end.receive(frame), Received::Gone);
}

TEST(FrameEnd, Send_FarEndGone_FailsAndTheProcessLives) {
  Wire wire;
  FrameEnd end = wire.takeNear("near");
  wire.cut();
  EXPECT_FALSE(end.send(FrameOf(1)));
}

TEST(FrameEnd, Send_FarEndFull_FailsWithoutWaiting) {
  Wire wire;
  FrameEnd end = wire.takeNear("near");
  int sent = 0;
  while (sent < 1'000'000 && end.send(FrameOf(1))) {
    ++sent;
  }
  EXPECT_GT(sent, 0);
  EXPECT_LT(sent, 1'000'000);
  EXPECT_FALSE(end.send(FrameOf(1)));
  EXPECT_EQ(wire.next(), FrameOf(1));
}

}  // namespace
}  // namespace virtual_onu
