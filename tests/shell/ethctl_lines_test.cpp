/// @file
/// Tests of the Ethernet tool's lines.
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "shell_fixture.h"

namespace virtual_onu {
namespace {

using EthctlLines = ShellTest;

TEST_F(EthctlLines, Reg_WritesTheRegisterOfTheNamedInterface) {
  run("ethctl eth2 reg 0 1940");
  EXPECT_EQ(interfaces_.phy(3).read(kMiiControl), 0x1940);
  EXPECT_FALSE(interfaces_.phy(3).link());
  EXPECT_TRUE(interfaces_.phy(1).link());
  run("ethctl eth2 reg 0 0x1140");
  EXPECT_TRUE(interfaces_.phy(3).link());
}

TEST_F(EthctlLines, Reg_OutOfRange_IsRefused) {
  EXPECT_EQ(refusal("ethctl eth0 reg 32 1"), "register 32 is out of range, expected 0 to 31");
  EXPECT_EQ(refusal("ethctl eth0 reg 31 10000"),
            "value 0x10000 is wider than a register, which has 16 bits");
  run("ethctl eth0 reg 31 ffff");
  EXPECT_EQ(interfaces_.phy(1).read(31), 0xFFFF);
}

TEST_F(EthctlLines, UnknownInterface_IsRefused) {
  EXPECT_EQ(refusal("ethctl eth4 reg 0 0"), "no interface eth4");
  EXPECT_EQ(refusal("ethctl eth-1 media-type auto"), "no interface eth-1");
}

TEST_F(EthctlLines, MediaType_SetsTheModeOrNegotiates) {
  const std::vector<std::pair<std::string, LinkMode>> types = {
      {"10HD", {10, false}},  {"100HD", {100, false}}, {"10FD", {10, true}},
      {"100FD", {100, true}}, {"auto", {1000, true}},
  };
  for (const auto& [type, mode] : types) {
    run("ethctl eth0 media-type " + type);
    ASSERT_TRUE(interfaces_.phy(1).link()) << type;
    EXPECT_EQ(interfaces_.phy(1).link()->mode, mode) << type;
  }
  EXPECT_EQ(interfaces_.phy(1).read(kMiiControl), 0x1140);
}

TEST_F(EthctlLines, MediaType_PowersThePhyUp) {
  run("ethctl eth0 reg 0 1940");
  run("ethctl eth0 media-type 100FD");
  EXPECT_EQ(interfaces_.phy(1).read(kMiiControl), 0x2100);
}

TEST_F(EthctlLines, MediaType_Unknown_IsRefused) {
  EXPECT_EQ(refusal("ethctl eth0 media-type 1000FD"),
            "no media type 1000FD, expected 10HD, 100HD, 10FD, 100FD or auto");
  EXPECT_EQ(interfaces_.phy(1).read(kMiiControl), 0x1140);
}

}  // namespace
}  // namespace virtual_onu
