/// @file
/// Links for tests: pairs of sockets that keep frames apart, one end for the unit and one for the
/// test.
#pragma once

#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

#include "live/frame_end.h"

namespace virtual_onu::test {

class Wire {
 public:
  Wire() {
    int ends[2] = {-1, -1};
    EXPECT_EQ(socketpair(AF_UNIX, SOCK_SEQPACKET, 0, ends), 0);
    near_ = ends[0];
    far_.emplace(Descriptor(ends[1]), "far");
  }
  ~Wire() {
    if (near_ >= 0) {
      close(near_);
    }
  }
  Wire(const Wire&) = delete;
  Wire& operator=(const Wire&) = delete;

  /// The unit's end, for whoever takes it first.
  FrameEnd takeNear(const std::string& name) {
    return {Descriptor(std::exchange(near_, -1)), name};
  }

  /// The number of the unit's end, for a process that inherits it.
  [[nodiscard]] int near() const { return near_; }

  void send(const Bytes& frame) { ASSERT_TRUE(far_->send(frame)); }

  /// The next frame that came out of the unit; empty when there is none.
  Bytes next() {
    Bytes frame;
    return far_->receive(frame) == Received::Frame ? frame : Bytes();
  }

  /// Says that no more frames come from the test; it can still receive.
  void finish() { shutdown(far_->fd(), SHUT_WR); }

  /// Takes the test's end away.
  void cut() { far_.reset(); }

 private:
  int near_ = -1;
  std::optional<FrameEnd> far_;
};

/// A frame of that many bytes, all of them `fill`.
inline Bytes FrameOf(std::uint8_t fill, std::size_t length = 60) {
  Bytes frame(length, fill);
  return frame;
}

}  // namespace virtual_onu::test
