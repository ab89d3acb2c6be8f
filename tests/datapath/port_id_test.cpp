/// @file
/// The stable names of ports, and their order.
#include "datapath/port_id.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string_view>
#include <vector>

namespace virtual_onu {
namespace {

TEST(Port, Names_AreReadBack) {
  EXPECT_EQ(PortId::Wan().name(), "wan");
  EXPECT_EQ(PortId::Uni(1).name(), "uni1");
  for (std::uint32_t number = 0; number <= kMaxUniPorts; ++number) {
    EXPECT_EQ(ParsePort(PortId::Uni(number).name()), PortId::Uni(number));
  }
}

TEST(Port, AnythingElse_IsNoPort) {
  for (const std::string_view text :
       {"", "uni", "uni0", "uni33", "uni01", "uni1 ", " uni1", "uni-1", "UNI1", "wan0", "Wan",
        "lan1", "1", "uni4294967297"}) {
    EXPECT_FALSE(ParsePort(text)) << text;
  }
}

TEST(Port, Order_IsWanThenUniByNumber) {
  std::vector<PortId> ports = {PortId::Uni(10), PortId::Uni(2), PortId::Wan()};
  std::sort(ports.begin(), ports.end());
  EXPECT_EQ(ports, (std::vector<PortId>{PortId::Wan(), PortId::Uni(2), PortId::Uni(10)}));
}

}  // namespace
}  // namespace virtual_onu
