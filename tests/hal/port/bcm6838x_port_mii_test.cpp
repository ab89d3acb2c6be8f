/// @file
/// Tests of the requests to a PHY: failures of every single request, the exported MII calls, and no
/// socket left open.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>
#include <linux/mii.h>
#include <linux/sockios.h>
#include <net/if.h>
#include <ostream>
#include <string>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

#include <bcm6838x_port.h>

#include "port_link_fixture.h"

namespace hal_test::port_link {
namespace {

using testing::ElementsAre;

/// Fails the 1st, 2nd, ... request of an operation until it runs through without a failure, and
/// returns what was seen each time: the answer and the lines on standard error.
struct FailedRun {
  Answer answer;
  int lines;
  bool operator==(const FailedRun&) const = default;
};

void PrintTo(const FailedRun& run, std::ostream* out) {
  *out << "{" << run.answer.first << ", " << run.answer.second << ", " << run.lines << " lines}";
}

class NthRequestTest : public PortLinkTest {
 protected:
  std::vector<FailedRun> failEach(const std::function<Answer()>& operation) {
    std::vector<FailedRun> runs;
    for (std::uint32_t nth = 1; nth < 100; ++nth) {
      virtual_onu::FaultPlan& faults = unit.interfaces().faults();
      faults.clear();
      faults.refuseNth(nth);
      FailedRun run = {};
      const std::string text = console([&] { run.answer = operation(); });
      run.lines = static_cast<int>(std::ranges::count(text, '\n'));
      // The rule is spent when one more request, which would not be the nth, goes through.
      if (!isSpent(faults, nth)) {
        return runs;
      }
      runs.push_back(run);
    }
    return runs;
  }

 private:
  /// Whether the nth request has come: then none of the next `nth` is refused.
  static bool isSpent(virtual_onu::FaultPlan& faults, std::uint32_t nth) {
    bool refused = false;
    for (std::uint32_t i = 0; i < nth; ++i) {
      refused = faults.refuses(0) || refused;
    }
    return !refused;
  }
};

// Required: link-read-twice
TEST_F(NthRequestTest, GetMediaType_AutoNegotiation_TenRequestsInOrder) {
  unit.phy(1).setPartner(Advertising(0x0100, 0));
  const Answer failed = {1, kUntouched};
  const Answer fine = {0, 2};
  const Answer leftAsItWas = {0, kUntouched};
  const Answer down = {0, 6};
  EXPECT_THAT(failEach([] { return Ask(BCM6838X_GetMediaType, 1); }),
              ElementsAre(FailedRun{failed, 0},       // interface index
                          FailedRun{failed, 0},       // PHY address
                          FailedRun{{0, 5}, 1},       // register 0: forced mode, 10 half
                          FailedRun{failed, 1},       // register 1
                          FailedRun{leftAsItWas, 1},  // register 4: nothing in common
                          FailedRun{leftAsItWas, 1},  // register 5: no acknowledge
                          FailedRun{fine, 1},         // register 9
                          FailedRun{fine, 1},         // register 10
                          FailedRun{fine, 1},         // register 1, read for its latch
                          FailedRun{down, 1}));       // register 1
}

// Required: link-read-twice
TEST_F(NthRequestTest, GetMediaType_ForcedMode_EightRequestsInOrder) {
  unit.phy(1).setPartner(ForcedTo(100, true));
  unit.phy(1).write(0, 0x2100);
  const std::vector<FailedRun> runs = failEach([] { return Ask(BCM6838X_GetMediaType, 1); });
  EXPECT_THAT(runs,
              ElementsAre(FailedRun{{1, kUntouched}, 0}, FailedRun{{1, kUntouched}, 0},
                          FailedRun{{0, 5}, 1}, FailedRun{{1, kUntouched}, 1}, FailedRun{{0, 2}, 1},
                          FailedRun{{0, 2}, 1}, FailedRun{{0, 2}, 1}, FailedRun{{0, 6}, 1}));
}

TEST_F(NthRequestTest, PauseAbilityGet_FiveRequestsInOrder) {
  unit.phy(1).write(4, kDefaultAbilities | 0x0400);
  EXPECT_THAT(failEach([] { return Ask(BCM6838X_PauseAbilityGet, 1); }),
              ElementsAre(FailedRun{{1, kUntouched}, 0}, FailedRun{{1, kUntouched}, 0},
                          FailedRun{{0, kUntouched}, 1}, FailedRun{{1, kUntouched}, 1},
                          FailedRun{{0, 0}, 1}));
}

TEST_F(NthRequestTest, PauseAbilitySet_SevenRequestsInOrder) {
  const std::vector<FailedRun> runs =
      failEach([] { return Answer(BCM6838X_PauseAbilitySet(1, 1), 0); });
  EXPECT_THAT(runs, ElementsAre(FailedRun{{1, 0}, 0}, FailedRun{{1, 0}, 0}, FailedRun{{0, 0}, 1},
                                FailedRun{{1, 0}, 1}, FailedRun{{0, 0}, 1}, FailedRun{{0, 0}, 1},
                                FailedRun{{0, 0}, 1}));
}

TEST_F(NthRequestTest, PhyPowerDown_FourRequestsInOrder) {
  const std::vector<FailedRun> runs =
      failEach([] { return Answer(static_cast<std::uint32_t>(BCM6838X_PhyPowerDown(1, 0)), 0); });
  EXPECT_THAT(runs, ElementsAre(FailedRun{{1, 0}, 0}, FailedRun{{0xFFFFFFFF, 0}, 0},
                                FailedRun{{0, 0}, 1}, FailedRun{{0xFFFFFFFF, 0}, 1}));
}

/// A socket and a request on an interface, as the exported MII calls take them.
class MiiCallTest : public PortLinkTest {
 protected:
  MiiCallTest() { std::strcpy(std::data(request_.ifr_name), "eth1"); }
  ~MiiCallTest() override { close(socket_); }

  [[nodiscard]] mii_ioctl_data mii() const {
    mii_ioctl_data data = {};
    std::memcpy(&data, &request_.ifr_ifru, sizeof(data));
    return data;
  }

  int socket_ = socket(AF_INET, SOCK_DGRAM, 0);
  ifreq request_ = {};
};

TEST_F(MiiCallTest, EtGetPhyid_TellsTheAddress) {
  EXPECT_EQ(et_get_phyid(socket_, &request_), 2);
}

TEST_F(MiiCallTest, EtGetPhyid_Fails_ReturnsMinusOneWithTheAddressCleared) {
  const mii_ioctl_data before = {9, 8, 7, 6};
  std::memcpy(&request_.ifr_ifru, &before, sizeof(before));
  unit.interfaces().faults().refuseFrom(1);
  EXPECT_EQ(et_get_phyid(socket_, &request_), -1);
  EXPECT_EQ(mii().phy_id, 0);
  EXPECT_EQ(mii().reg_num, 8);
}

TEST_F(MiiCallTest, MdioRead_ReadsTheRegisterOfThatPhy) {
  unit.phy(3).write(4, 0x0123);
  EXPECT_EQ(mdio_read(socket_, &request_, 3, 4), 0x0123);
  EXPECT_EQ(mdio_read(socket_, &request_, 9, 4), 0xFFFF) << "nobody has that address";
}

// Required: failed-mii-read-is-0
TEST_F(MiiCallTest, MdioRead_Fails_PrintsAndReturnsZero) {
  EXPECT_EQ(console([this] { EXPECT_EQ(mdio_read(socket_, &request_, 2, 32), 0); }),
            "SIOCGMIIREG on eth1 failed: Invalid argument\n");
}

// Required: mii-flags-of-the-address
TEST_F(MiiCallTest, MdioRead_PassesTheTopByteOfTheAddressAsFlags) {
  unit.interfaces().faults().refuseFrom(1);
  console([this] { mdio_read(socket_, &request_, 0x12000002, 5); });
  EXPECT_EQ(mii().phy_id, 2);
  EXPECT_EQ(mii().reg_num, 5);
  EXPECT_EQ(mii().val_out, 0x12);
}

// Required: mii-flags-of-the-address
TEST_F(MiiCallTest, MdioRead_WithoutAPhyAddress_PassesEveryFlag) {
  unit.interfaces().faults().refuseFrom(1);
  const std::int32_t phy = et_get_phyid(socket_, &request_);
  ASSERT_EQ(phy, -1);
  console([&] { mdio_read(socket_, &request_, phy, 5); });
  EXPECT_EQ(mii().phy_id, 0xFFFF);
  EXPECT_EQ(mii().val_out, 0xFFFF);
  console([&] { mdio_read(socket_, &request_, INT32_MIN, 5); });
  EXPECT_EQ(mii().val_out, 0xFF80);
}

/// One way through an operation that opens a socket.
struct SocketPath {
  std::string name;
  std::function<void(virtual_onu::Unit&)> prepare;
  std::function<void()> call;
};

void PrintTo(const SocketPath& path, std::ostream* out) {
  *out << path.name;
}

void GetMediaTypeOnce() {
  std::uint32_t type = 0;
  BCM6838X_GetMediaType(1, &type);
}

void GetPauseOnce() {
  std::uint32_t mode = 0;
  BCM6838X_PauseAbilityGet(1, &mode);
}

void Negotiating(virtual_onu::Unit& /*unit*/) {}

void Forced(virtual_onu::Unit& unit) {
  unit.phy(1).write(0, 0x2100);
}

void NoAnswer(virtual_onu::Unit& unit) {
  unit.phy(1).setResponding(false);
}

void NoInterface(virtual_onu::Unit& unit) {
  unit.interfaces().faults().refuseFrom(1, SIOCGIFINDEX);
}

void NoReading(virtual_onu::Unit& unit) {
  unit.interfaces().faults().refuseFrom(1, SIOCGMIIREG);
}

void NoWriting(virtual_onu::Unit& unit) {
  unit.interfaces().faults().refuseFrom(1, SIOCSMIIREG);
}

const std::vector<SocketPath> kSocketPaths = {
    {"MediaTypeNegotiated", Negotiating, GetMediaTypeOnce},
    {"MediaTypeForced", Forced, GetMediaTypeOnce},
    {"MediaTypeNoAnswer", NoAnswer, GetMediaTypeOnce},
    {"MediaTypeNoInterface", NoInterface, GetMediaTypeOnce},
    {"MediaTypeNoReading", NoReading, GetMediaTypeOnce},
    {"PauseGetNegotiated", Negotiating, GetPauseOnce},
    {"PauseGetForced", Forced, GetPauseOnce},
    {"PauseGetNoAnswer", NoAnswer, GetPauseOnce},
    {"PauseGetNoInterface", NoInterface, GetPauseOnce},
    {"PauseSetNegotiated", Negotiating, [] { BCM6838X_PauseAbilitySet(1, 2); }},
    {"PauseSetForced", Forced, [] { BCM6838X_PauseAbilitySet(1, 2); }},
    {"PauseSetNoAnswer", NoAnswer, [] { BCM6838X_PauseAbilitySet(1, 2); }},
    {"PauseSetNoInterface", NoInterface, [] { BCM6838X_PauseAbilitySet(1, 2); }},
    {"PauseSetNoWriting", NoWriting, [] { BCM6838X_PauseAbilitySet(1, 2); }},
    {"PowerDown", Negotiating, [] { BCM6838X_PhyPowerDown(1, 1); }},
    {"PowerDownNoAnswer", NoAnswer, [] { BCM6838X_PhyPowerDown(1, 1); }},
    {"PowerDownNoInterface", NoInterface, [] { BCM6838X_PhyPowerDown(1, 1); }},
    {"AdminState", Negotiating, [] { BCM6838X_SetPortAdminState(1, 1); }},
    {"NegMode", Negotiating, [] { BCM6838X_SetPortNegMode(1, 4); }},
};

class SocketLeakTest : public PortLinkTest, public testing::WithParamInterface<SocketPath> {
 protected:
  /// The directory itself is open while it is read, each time alike.
  static std::ptrdiff_t OpenDescriptors() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                         std::filesystem::directory_iterator());
  }

  /// Lines of failed requests would fill the log of the test.
  static void SilenceStandardError() {
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    ASSERT_GE(nowhere, 0);
    ASSERT_GE(dup2(nowhere, STDERR_FILENO), 0);
    close(nowhere);
  }
};

TEST_P(SocketLeakTest, AHundredThousandCalls_LeaveNoSocketOpen) {
  constexpr int kCalls = 100'000;
  GetParam().prepare(unit);
  unit.trace().setRecording(false);
  SilenceStandardError();
  const std::ptrdiff_t before = OpenDescriptors();
  for (int i = 0; i < kCalls; ++i) {
    GetParam().call();
  }
  EXPECT_EQ(OpenDescriptors(), before);
}

std::string PathName(const testing::TestParamInfo<SocketPath>& path) {
  return path.param.name;
}

INSTANTIATE_TEST_SUITE_P(Paths, SocketLeakTest, testing::ValuesIn(kSocketPaths), PathName);

}  // namespace
}  // namespace hal_test::port_link
