/// @file
/// Tests of the way of IGMP and MLD frames from the snooping service to the ports.
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include <bcm6838x_igmp.h>
#include <hal_bcm6838x.h>

#include "support/library_test.h"
#include "support/wire_record.h"

namespace hal_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t kPorts = 4;

/// An IGMP report of 64 bytes, as far as its addresses tell.
virtual_onu::Bytes Report() {
  virtual_onu::Bytes frame = {0x01, 0x00, 0x5E, 0x01, 0x02, 0x03, 0x02, 0x00,
                              0x00, 0x00, 0x00, 0x01, 0x08, 0x00, 0x46, 0x00};
  frame.resize(64, 0x5A);
  return frame;
}

/// The frame with its descriptor: the port is 0 for the uplink.
std::string SentTo(std::uint32_t port) {
  return Sent("SEND_PKT", 0,
              WireRecord(18 + 64).u32(0, 64).u32(4, port).u32(12, 1).bytes(16, Report()));
}

class IgmpDispatchTest : public LibraryTest {
 protected:
  void SetUp() override {
    ASSERT_EQ(BCM6838X_InitDrv(), 0U);
    forget();
  }

  static std::uint32_t dispatch(std::uint32_t port) {
    const virtual_onu::Bytes frame = Report();
    return BCM6838X_DispatchIgmpPacket(frame.data(), static_cast<std::uint32_t>(frame.size()), 100,
                                       port);
  }
};

TEST_F(IgmpDispatchTest, FrameOfAUniPort_GoesOnceTowardsTheUplink) {
  for (std::uint32_t port = 1; port <= kPorts; ++port) {
    forget();
    EXPECT_EQ(dispatch(port), 0U);
    EXPECT_THAT(left(), ElementsAre(SentTo(0))) << port;
  }
}

TEST_F(IgmpDispatchTest, FrameOfAnyOtherPort_GoesToEveryUniPortInOrder) {
  for (const std::uint32_t port : {kPorts + 1, 255U}) {
    forget();
    EXPECT_EQ(dispatch(port), 0U);
    EXPECT_THAT(left(), ElementsAre(SentTo(1), SentTo(2), SentTo(3), SentTo(4))) << port;
  }
}

TEST_F(IgmpDispatchTest, Port_CountsInItsLowByte) {
  EXPECT_EQ(dispatch(0x0102), 0U);
  EXPECT_THAT(left(), ElementsAre(SentTo(0)));
}

// Required: mcast-port-0-goes-up
TEST_F(IgmpDispatchTest, FrameOfPort0_GoesTowardsTheUplinkToo) {
  for (const std::uint32_t port : {0U, 0x100U}) {
    forget();
    EXPECT_EQ(dispatch(port), 0U);
    EXPECT_THAT(left(), ElementsAre(SentTo(0))) << port;
  }
}

TEST_F(IgmpDispatchTest, Uplink_IsThePlatformsPort) {
  unit.platform().config().uplinkPort = 3;
  EXPECT_EQ(dispatch(1), 0U);
  EXPECT_THAT(left(), ElementsAre(SentTo(3)));
}

TEST_F(IgmpDispatchTest, Ports_AreAsManyAsThePlatformHas) {
  unit.platform().config().ethPorts = 2;
  EXPECT_EQ(dispatch(2), 0U);
  EXPECT_EQ(dispatch(3), 0U);
  EXPECT_THAT(left(), ElementsAre(SentTo(0), SentTo(1), SentTo(2)));
  forget();
  unit.platform().config().ethPorts = 0;
  EXPECT_EQ(dispatch(1), 0U);
  EXPECT_THAT(left(), IsEmpty()) << "no port to send it to";
}

TEST_F(IgmpDispatchTest, RefusalByTheDriver_IsNotPassedOnAndEndsNothing) {
  unit.device().faults().refuseFrom(1);
  EXPECT_EQ(dispatch(1), 0U);
  EXPECT_THAT(commands(), ElementsAre(SentTo(0)));
  forget();
  EXPECT_EQ(dispatch(kPorts + 1), 0U);
  EXPECT_THAT(commands(), ElementsAre(SentTo(1), SentTo(2), SentTo(3), SentTo(4)));
}

TEST_F(IgmpDispatchTest, NullFrame_IsLoggedReturnsZeroAndSendsNothing) {
  EXPECT_EQ(BCM6838X_DispatchIgmpPacket(nullptr, 64, 100, 1), 0U);
  EXPECT_EQ(BCM6838X_DispatchIgmpPacket(nullptr, 64, 100, kPorts + 1), 0U);
  const std::string line =
      "log 4 hal/switch/bcm6838x/src/bcm6838x_igmp_dispatch.cpp "
      "BCM6838X_DispatchIgmpPacket(<line>), null pointer\r\n";
  EXPECT_THAT(left(), ElementsAre(line, line));
}

}  // namespace
}  // namespace hal_test
