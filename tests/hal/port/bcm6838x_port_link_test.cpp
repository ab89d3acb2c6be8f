/// @file
/// Tests of port control by the PHY's registers: every media type, link and negotiation, pause,
/// power, and ports that cannot be read.
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/sockios.h>
#include <string>
#include <sys/resource.h>
#include <utility>
#include <vector>

#include <bcm6838x_port.h>

#include "phy/phy.h"
#include "port_link_fixture.h"

namespace hal_test::port_link {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string kMiiPlace = "log 4 hal/switch/bcm6838x/src/bcm6838x_port_mii.cpp ";
const std::string kLinkPlace = "log 4 hal/switch/bcm6838x/src/bcm6838x_port_link.cpp ";

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

}  // namespace
}  // namespace hal_test::port_link
