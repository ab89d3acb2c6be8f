/// @file
/// Tests of the names of registers and bits.
#include "phy/register_text.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "phy/phy.h"

namespace virtual_onu {
namespace {

using Names = std::vector<std::string_view>;

TEST(RegisterText, Registers_HaveTheNamesOfTheStandard) {
  EXPECT_EQ(RegisterName(0), "control");
  EXPECT_EQ(RegisterName(5), "partner-ability");
  EXPECT_EQ(RegisterName(15), "extended-status");
  for (const std::uint32_t reg : {11U, 14U, 16U, 31U, 32U}) {
    EXPECT_EQ(RegisterName(reg), "") << reg;
    EXPECT_EQ(RegisterBits(reg, 0xFFFF), Names()) << reg;
  }
}

TEST(RegisterText, Bits_AreNamedFromTheHighest) {
  EXPECT_EQ(RegisterBits(0, 0x1940),
            (Names{"negotiate", "power-down", "full-duplex", "speed-1000"}));
  EXPECT_EQ(RegisterBits(0, 0xE600),
            (Names{"reset", "loopback", "speed-100", "isolate", "restart"}));
  EXPECT_EQ(RegisterBits(1, 0x796D), (Names{"negotiated", "link"}));
  EXPECT_EQ(RegisterBits(4, 0x05E1),
            (Names{"pause", "100-full", "100-half", "10-full", "10-half"}));
  EXPECT_EQ(RegisterBits(5, 0xCA00),
            (Names{"next-page", "acknowledge", "asymmetric-pause", "100-t4"}));
  EXPECT_EQ(RegisterBits(6, 0x000F), (Names{"partner-next-page-able", "next-page-able",
                                            "page-received", "partner-negotiates"}));
  EXPECT_EQ(RegisterBits(9, 0x0300), (Names{"1000-full", "1000-half"}));
  EXPECT_EQ(RegisterBits(10, 0x3C00), (Names{"local-receiver-ok", "remote-receiver-ok",
                                             "partner-1000-full", "partner-1000-half"}));
}

TEST(RegisterText, Bits_OfAPhyThatNegotiated) {
  const Phy phy;
  EXPECT_EQ(RegisterBits(kMiiControl, phy.peek(kMiiControl)),
            (Names{"negotiate", "full-duplex", "speed-1000"}));
}

}  // namespace
}  // namespace virtual_onu
