/// @file
/// Tests of port control by the PHY's registers: every media type, pause, power, failures of every
/// single request, and no socket left open.
#include <array>
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
#include <optional>
#include <string>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include <bcm6838x_port.h>

#include "phy/phy.h"
#include "support/library_test.h"

namespace hal_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using virtual_onu::LinkPartner;

constexpr std::uint32_t kPorts = 5;
constexpr std::uint32_t kUntouched = 77;
const std::string kMiiPlace = "log 4 hal/switch/bcm6838x/src/bcm6838x_port_mii.cpp ";
const std::string kLinkPlace = "log 4 hal/switch/bcm6838x/src/bcm6838x_port_link.cpp ";

/// Advertised by the PHY after its reset: 10 and 100 Mbit/s in both duplex modes.
constexpr std::uint16_t kDefaultAbilities = 0x01E1;

constexpr std::uint16_t kSelector = 0x0001;

virtual_onu::UnitConfig FivePorts() {
  virtual_onu::UnitConfig config;
  config.platform.ethPorts = kPorts;
  return config;
}

/// A partner that negotiates, with these advertisement and 1000BASE-T control registers.
LinkPartner Advertising(std::uint16_t base, std::uint16_t gigabit) {
  LinkPartner partner;
  partner.advertisement = {static_cast<std::uint16_t>(base | kSelector), gigabit};
  return partner;
}

LinkPartner ForcedTo(std::uint32_t speed, bool fullDuplex) {
  LinkPartner partner;
  partner.negotiates = false;
  partner.forced = {speed, fullDuplex};
  return partner;
}

LinkPartner Unplugged() {
  LinkPartner partner;
  partner.present = false;
  return partner;
}

std::uint32_t MediaType(std::uint32_t port) {
  std::uint32_t type = kUntouched;
  EXPECT_EQ(BCM6838X_GetMediaType(port, &type), 0U);
  return type;
}

/// What an operation returns and what it writes through its pointer.
using Answer = std::pair<std::uint32_t, std::uint32_t>;

Answer Ask(std::uint32_t (*operation)(std::uint32_t, std::uint32_t*), std::uint32_t port) {
  std::uint32_t value = kUntouched;
  const std::uint32_t result = operation(port, &value);
  return {result, value};
}

class PortLinkTest : public LibraryTest {
 protected:
  PortLinkTest() : LibraryTest(FivePorts()) {}

  [[nodiscard]] std::vector<std::string> shellLines() const { return OfKind(left(), "shell"); }

  /// Makes the local end advertise that, and negotiate anew.
  void advertise(std::uint16_t base, std::uint16_t gigabit) {
    unit.phy(1).write(4, base | kSelector);
    unit.phy(1).write(9, gigabit);
    unit.phy(1).write(0, 0x1340);
  }

  /// Runs an operation and returns what it wrote on standard error.
  template <typename Operation>
  std::string console(Operation operation) {
    testing::internal::CaptureStderr();
    operation();
    return testing::internal::GetCapturedStderr();
  }
};

struct NegotiationRow {
  std::uint16_t local;
  std::uint16_t localGigabit;
  LinkPartner partner;
  std::uint32_t type;
  std::uint32_t negResult;
};

// Required: ability-bit-9-is-half-gigabit, link-down-negotiates-10-half
TEST_F(PortLinkTest, GetMediaType_AutoNegotiation_GivesTheBestCommonAbility) {
  const std::vector<NegotiationRow> rows = {
      {0x01E0, 0x0300, Advertising(0x01E0, 0x0300), 0, 5},  // 1000 full
      {0x01E0, 0x0200, Advertising(0x01E0, 0x0300), 0, 5},
      {0x01E0, 0x0300, Advertising(0x01E0, 0x0100), 1, 2},  // 1000 half
      {0x01E0, 0x0100, Advertising(0x01E0, 0x0300), 1, 2},
      {0x01E0, 0x0200, Advertising(0x01E0, 0x0100), 2, 4},  // no common mode at 1000
      {0x01E0, 0x0100, Advertising(0x01E0, 0x0200), 2, 4},
      {0x01E0, 0x0300, Advertising(0x01E0, 0), 2, 4},  // 100 full
      {0x0100, 0, Advertising(0x01E0, 0x0300), 2, 4},
      {0x03E0, 0, Advertising(0x03E0, 0), 2, 4},  // bit 8 before bit 9
      {0x02E0, 0, Advertising(0x03E0, 0), 1, 2},  // bit 9 before bit 7
      {0x0200, 0, Advertising(0x0200, 0), 1, 2},  // bit 9 alone
      {0x00E0, 0, Advertising(0x01E0, 0), 3, 1},  // 100 half
      {0x0080, 0, Advertising(0x00A0, 0), 3, 1},
      {0x0060, 0, Advertising(0x01E0, 0), 4, 3},  // 10 full
      {0x0020, 0, Advertising(0x01E0, 0), 5, 0},  // 10 half
      {0x0100, 0, Advertising(0x0080, 0), 6, 0},  // nothing in common: no link
      {0x01E0, 0x0300, Unplugged(), 6, 0},
  };
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const NegotiationRow& row = rows[i];
    unit.phy(1).setPartner(row.partner);
    advertise(row.local, row.localGigabit);
    EXPECT_EQ(MediaType(1), row.type) << "row " << i;
    EXPECT_EQ(Ask(BCM6838X_GetPortNegResult, 1), Answer(0, row.negResult)) << "row " << i;
    EXPECT_EQ(Ask(BCM6838X_GetPortLinkState, 1), Answer(0, row.type == 6 ? 0 : 1)) << "row " << i;
  }
}

struct ForcedRow {
  std::uint16_t control;
  LinkPartner partner;
  std::uint32_t type;
  std::uint32_t negResult;
};

TEST_F(PortLinkTest, GetMediaType_ForcedMode_GivesTheModeOfTheControlRegister) {
  const std::vector<ForcedRow> rows = {
      {0x2100, ForcedTo(100, true), 2, 4}, {0x2000, ForcedTo(100, false), 3, 1},
      {0x0100, ForcedTo(10, true), 4, 3},  {0x0000, ForcedTo(10, false), 5, 0},
      {0x2500, ForcedTo(100, true), 2, 4},  // a bit that does not count
      {0x2100, ForcedTo(10, true), 6, 0},   // other speeds: no link
      {0x2900, ForcedTo(100, true), 6, 0},  // powered down
      {0x0000, Unplugged(), 6, 0},
  };
  for (std::size_t i = 0; i < rows.size(); ++i) {
    unit.phy(2).setPartner(rows[i].partner);
    unit.phy(2).write(0, rows[i].control);
    EXPECT_EQ(MediaType(2), rows[i].type) << "row " << i;
    EXPECT_EQ(Ask(BCM6838X_GetPortNegResult, 2), Answer(0, rows[i].negResult)) << "row " << i;
  }
}

// Required: no-acknowledge-keeps-type
TEST_F(PortLinkTest, GetMediaType_PartnerDoesNotAcknowledge_LeavesTheType) {
  unit.phy(1).setPartner(ForcedTo(100, false));
  ASSERT_EQ(unit.phy(1).peek(5), 0x0080) << "an ability in common, but no acknowledge bit";
  EXPECT_EQ(MediaType(1), kUntouched);
  EXPECT_EQ(Ask(BCM6838X_GetPortLinkState, 1), Answer(0, 1));
  EXPECT_EQ(Ask(BCM6838X_GetPortNegResult, 1), Answer(1, kUntouched));
}

TEST_F(PortLinkTest, GetMediaType_OnlyOtherBitsInCommon_LeavesTheType) {
  unit.phy(1).setPartner(Advertising(0x05E0, 0));
  // Takes effect with the next negotiation only, so that the link stays.
  unit.phy(1).write(4, 0x0401);
  EXPECT_EQ(MediaType(1), kUntouched);
  EXPECT_EQ(Ask(BCM6838X_GetPortNegResult, 1), Answer(1, kUntouched));
  unit.phy(1).setPartner(Unplugged());
  EXPECT_EQ(MediaType(1), 6U) << "the link check comes after";
}

TEST_F(PortLinkTest, GetMediaType_EveryPort_ReadsItsOwnPhy) {
  for (std::uint32_t port = 1; port <= kPorts; ++port) {
    unit.phy(port).setPartner(Unplugged());
  }
  std::uint32_t asked = 0;
  for (std::uint32_t port = 1; port <= kPorts; ++port, ++asked) {
    EXPECT_EQ(MediaType(port), 6U);
    unit.phy(port).setPartner({});
    EXPECT_EQ(MediaType(port), 0U);
    EXPECT_EQ(MediaType(0xFFFFFF00 + port), 0U) << "only the low 8 bits count";
  }
  EXPECT_EQ(asked, kPorts);
}

TEST_F(PortLinkTest, GetMediaType_LatchedLossOfLink_IsClearedByTheFirstRead) {
  ASSERT_EQ(MediaType(1), 0U);
  unit.phy(1).setPartner(Unplugged());
  unit.phy(1).setPartner({});
  ASSERT_EQ(unit.phy(1).peek(1) & 0x0004, 0) << "the loss is latched";
  EXPECT_EQ(MediaType(1), 0U);
}

// Required: link-down-negotiates-10-half
TEST_F(PortLinkTest, LinkAndNegotiation_AreReadAfreshEachTime) {
  unit.phy(3).setPartner(Advertising(0x0100, 0));
  EXPECT_EQ(Ask(BCM6838X_GetPortNegResult, 3), Answer(0, 4));
  unit.phy(3).setPartner(Unplugged());
  EXPECT_EQ(Ask(BCM6838X_GetPortLinkState, 3), Answer(0, 0));
  EXPECT_EQ(Ask(BCM6838X_GetPortNegResult, 3), Answer(0, 0));
  unit.phy(3).setPartner({});
  EXPECT_EQ(Ask(BCM6838X_GetPortLinkState, 3), Answer(0, 1));
  EXPECT_EQ(Ask(BCM6838X_GetPortNegResult, 3), Answer(0, 5));
}

TEST_F(PortLinkTest, PortShutAndOpened_TakesTheLinkAwayAndBack) {
  unit.phy(2).setPartner(Advertising(0x0100, 0));
  EXPECT_EQ(BCM6838X_SetPortAdminState(2, 0), 0);
  EXPECT_EQ(Ask(BCM6838X_GetPortLinkState, 2), Answer(0, 0));
  EXPECT_EQ(BCM6838X_SetPortAdminState(2, 1), 0);
  EXPECT_EQ(Ask(BCM6838X_GetPortNegResult, 2), Answer(0, 4));
}

/// What the operations answer where no PHY can be read.
void ExpectUnreadable(std::uint32_t port, std::int32_t powerResult) {
  EXPECT_EQ(Ask(BCM6838X_GetMediaType, port), Answer(1, kUntouched)) << port;
  EXPECT_EQ(Ask(BCM6838X_GetPortLinkState, port), Answer(0, 0)) << port;
  EXPECT_EQ(Ask(BCM6838X_GetPortNegResult, port), Answer(1, kUntouched)) << port;
  EXPECT_EQ(Ask(BCM6838X_PauseAbilityGet, port), Answer(1, kUntouched)) << port;
  EXPECT_EQ(BCM6838X_PauseAbilitySet(port, 2), 1U) << port;
  EXPECT_EQ(BCM6838X_SetPortFlowControl(port, 1), 1U) << port;
  EXPECT_EQ(BCM6838X_PhyPowerDown(port, 1), powerResult) << port;
}

TEST_F(PortLinkTest, NoSuchPort_NoInterfaceIsFound) {
  for (const std::uint32_t port : {0U, 6U, 255U, 256U}) {
    ExpectUnreadable(port, 1);
  }
  EXPECT_THAT(left(), IsEmpty());
}

TEST_F(PortLinkTest, InterfaceIsNotFound) {
  unit.interfaces().faults().refuseFrom(1, SIOCGIFINDEX);
  ExpectUnreadable(1, 1);
  EXPECT_THAT(left(), IsEmpty());
}

TEST_F(PortLinkTest, NoSocket) {
  rlimit limit = {};
  ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
  const rlimit none = {0, limit.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
  ExpectUnreadable(1, 1);
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
  EXPECT_EQ(MediaType(1), 0U);
}

TEST_F(PortLinkTest, PhyDoesNotAnswer_ControlReadsAllOnes) {
  unit.phy(1).setResponding(false);
  EXPECT_EQ(console([] { ExpectUnreadable(1, -1); }), "");
  EXPECT_THAT(left(), IsEmpty());
}

TEST_F(PortLinkTest, PhyAddressIsUnknown_NobodyAnswers) {
  unit.interfaces().faults().refuseFrom(1, SIOCGMIIPHY);
  EXPECT_EQ(console([] { ExpectUnreadable(1, -1); }), "");
}

// Required: failed-mii-read-is-0
TEST_F(PortLinkTest, RegistersCannotBeRead_EveryFailureIsPrintedAndStatusReadsZero) {
  unit.interfaces().faults().refuseFrom(1, SIOCGMIIREG);
  const std::string line = "SIOCGMIIREG on eth2 failed: Input/output error\n";
  std::string expected;
  for (int i = 0; i < 7 * 2; ++i) {
    expected += line;
  }
  EXPECT_EQ(console([] { ExpectUnreadable(3, -1); }), expected);
}

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

// Required: pause-modes-3-to-5-advertise-none, pause-written-by-two-ways
TEST_F(PortLinkTest, PauseAbilitySet_EveryMode_AdvertisesItAndRestartsTheNegotiation) {
  const std::vector<std::pair<std::uint32_t, std::string>> rows = {
      {0, "1e1"}, {1, "5e1"}, {2, "5e1"}, {3, "1e1"},   {4, "1e1"},         {5, "1e1"},
      {6, "5e1"}, {7, "1e1"}, {8, "1e1"}, {258, "1e1"}, {0xFFFFFFFF, "1e1"}};
  for (const auto& [mode, advertisement] : rows) {
    for (const std::uint16_t before : {kDefaultAbilities, std::uint16_t{0x05E1}}) {
      unit.phy(1).write(4, before);
      forget();
      EXPECT_EQ(BCM6838X_PauseAbilitySet(0x101, mode), 0U);
      EXPECT_THAT(left(), ElementsAre("shell ethctl eth0 reg 4 " + advertisement,
                                      "call mii eth0 reg 0 write 0x1340"))
          << mode;
    }
  }
}

// Required: pause-written-by-two-ways
TEST_F(PortLinkTest, PauseAbilitySet_KeepsTheOtherAbilities) {
  unit.phy(5).write(4, 0x8D41);
  EXPECT_EQ(BCM6838X_PauseAbilitySet(5, 0), 0U);
  EXPECT_THAT(shellLines(), ElementsAre("shell ethctl eth4 reg 4 8941"));
}

// Required: pause-without-negotiation-unknown
TEST_F(PortLinkTest, PauseAbilitySet_NoAutoNegotiation_ChangesNothing) {
  unit.phy(1).write(0, 0x2100);
  EXPECT_EQ(BCM6838X_PauseAbilitySet(1, 2), 0U);
  EXPECT_THAT(left(), IsEmpty());
}

TEST_F(PortLinkTest, PauseAbilitySet_WriteFails_PrintsItAndSucceeds) {
  unit.interfaces().faults().refuseFrom(1, SIOCSMIIREG);
  EXPECT_EQ(console([] { EXPECT_EQ(BCM6838X_PauseAbilitySet(4, 2), 0U); }),
            "SIOCSMIIREG on eth3 failed: Input/output error\n");
}

TEST_F(PortLinkTest, PauseAbilitySet_ShellRefuses_RestartsTheNegotiationAllTheSame) {
  unit.shell().faults().refuseFrom(1);
  EXPECT_EQ(BCM6838X_PauseAbilitySet(1, 2), 0U);
  EXPECT_EQ(left().back(), "call mii eth0 reg 0 write 0x1340");
}

// Required: pause-without-negotiation-unknown
TEST_F(PortLinkTest, PauseAbilityGet_TellsWhatIsAdvertised) {
  EXPECT_EQ(Ask(BCM6838X_PauseAbilityGet, 1), Answer(0, 0));
  BCM6838X_PauseAbilitySet(1, 6);
  EXPECT_EQ(Ask(BCM6838X_PauseAbilityGet, 0x101), Answer(0, 2));
  EXPECT_EQ(Ask(BCM6838X_PauseAbilityGet, 2), Answer(0, 0));
  unit.phy(1).write(0, 0x2100);
  EXPECT_EQ(Ask(BCM6838X_PauseAbilityGet, 1), Answer(0, kUntouched));
}

TEST_F(PortLinkTest, SetPortFlowControl_OneInTheLowByteSwitchesItOn) {
  const std::vector<std::pair<std::uint32_t, std::string>> rows = {
      {1, "5e1"}, {0, "1e1"}, {0x101, "5e1"}, {2, "1e1"}, {0x100, "1e1"}, {0xFF, "1e1"}};
  for (const auto& [on, advertisement] : rows) {
    forget();
    EXPECT_EQ(BCM6838X_SetPortFlowControl(2, on), 0U);
    EXPECT_THAT(shellLines(), ElementsAre("shell ethctl eth1 reg 4 " + advertisement)) << on;
  }
}

TEST_F(PortLinkTest, PhyPowerDown_ChangesThePowerBitAlone) {
  unit.phy(1).write(0, 0x2100);
  EXPECT_EQ(BCM6838X_PhyPowerDown(1, 0x80000000), 0);
  EXPECT_EQ(BCM6838X_PhyPowerDown(1, 1), 0);
  EXPECT_EQ(BCM6838X_PhyPowerDown(0x101, 0), 0);
  EXPECT_THAT(left(), ElementsAre("shell ethctl eth0 reg 0 2900", "shell ethctl eth0 reg 0 2900",
                                  "shell ethctl eth0 reg 0 2100"));
}

TEST_F(PortLinkTest, PhyPowerDown_ShellRefuses_Succeeds) {
  unit.shell().faults().refuseFrom(1);
  EXPECT_EQ(BCM6838X_PhyPowerDown(1, 1), 0);
}

TEST_F(PortLinkTest, NullPointers_AreRefusedWithALogLine) {
  EXPECT_EQ(BCM6838X_GetMediaType(1, nullptr), 1U);
  EXPECT_EQ(BCM6838X_GetPortLinkState(1, nullptr), 0U);
  EXPECT_EQ(BCM6838X_GetPortNegResult(1, nullptr), 1U);
  EXPECT_EQ(BCM6838X_PauseAbilityGet(1, nullptr), 1U);
  EXPECT_EQ(et_get_phyid(0, nullptr), -1);
  EXPECT_EQ(mdio_read(0, nullptr, 1, 0), 0);
  const std::string text = "(<line>), null pointer\r\n";
  EXPECT_THAT(left(),
              ElementsAre(kLinkPlace + "BCM6838X_GetMediaType" + text,
                          kLinkPlace + "BCM6838X_GetPortLinkState" + text,
                          kLinkPlace + "BCM6838X_GetPortNegResult" + text,
                          kLinkPlace + "BCM6838X_PauseAbilityGet" + text,
                          kMiiPlace + "et_get_phyid" + text, kMiiPlace + "mdio_read" + text));
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
}  // namespace hal_test
