/// @file
/// Tests of the texts that name the ends of links.
#include "live/open_end.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <stdexcept>
#include <string>

#include "wire.h"

namespace virtual_onu {
namespace {

using test::FrameOf;
using test::Wire;

/// What is wrong with the text; empty when it names an end.
std::string ErrorOf(const std::string& text) {
  try {
    OpenFrameEnd(text);
    return "";
  } catch (const LiveError& error) {
    return error.what();
  }
}

TEST(OpenFrameEnd, Descriptor_IsTakenOver) {
  Wire wire;
  const std::string text = "fd:" + std::to_string(dup(wire.near()));
  FrameEnd end = OpenFrameEnd(text);
  EXPECT_EQ(end.name(), text);
  EXPECT_TRUE(end.send(FrameOf(7)));
  EXPECT_EQ(wire.next(), FrameOf(7));
}

TEST(OpenFrameEnd, DescriptorOfAFileOrAStream_IsRefused) {
  const int file = open("/dev/null", O_RDWR);
  int stream[2] = {-1, -1};
  ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, stream), 0);
  for (const int fd : {file, stream[0], 999}) {
    const std::string text = "fd:" + std::to_string(fd);
    EXPECT_EQ(ErrorOf(text), text +
                                 ": expected an open socket that keeps frames apart "
                                 "(SOCK_SEQPACKET or SOCK_DGRAM)");
  }
  EXPECT_EQ(fcntl(file, F_GETFD), 0) << "a descriptor that is refused stays open";
  for (const int fd : {file, stream[0], stream[1]}) {
    close(fd);
  }
}

TEST(OpenFrameEnd, WrongTexts_AreRefusedInOneLine) {
  constexpr const char* kKinds = ": expected tap:NAME, tap:NAME@NETNS or fd:N";
  constexpr const char* kName =
      ": expected an interface name of 1 to 15 characters without blanks, '/', ':' and '%'";
  for (const char* text : {"", "tap", "fd", "eth0", "tun:a", "TAP:a"}) {
    EXPECT_EQ(ErrorOf(text), std::string(text) + kKinds);
  }
  for (const char* text : {"tap:", "tap:@net", "tap:a234567890123456", "tap:a/b", "tap:a b",
                           "tap:onu%d", "tap:a:b", "tap:.", "tap:.."}) {
    EXPECT_EQ(ErrorOf(text), std::string(text) + kName);
  }
  for (const char* text : {"fd:", "fd:x", "fd:-1", "fd:2147483648"}) {
    EXPECT_EQ(ErrorOf(text),
              std::string(text) + ": expected the number of an open descriptor behind \"fd:\"");
  }
  for (const char* text : {"tap:a@", "tap:a@b/c"}) {
    EXPECT_EQ(ErrorOf(text),
              std::string(text) + ": expected the name of a network namespace behind '@'");
  }
}

TEST(OpenFrameEnd, UnknownNamespace_IsRefusedInOneLine) {
  EXPECT_EQ(ErrorOf("tap:a@onu-absent"),
            "tap:a@onu-absent: there is no such network namespace: \"ip netns list\" shows them");
}

}  // namespace
}  // namespace virtual_onu
