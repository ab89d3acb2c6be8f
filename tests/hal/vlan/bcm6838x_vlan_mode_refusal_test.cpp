/// @file
/// What every VLAN mode builder refuses: ports outside 1..32 and null lists; and what of the port's
/// number counts.
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <vector>

#include <bcm6838x_vlan.h>
#include <hal_bcm6838x.h>

#include "hal/vlan/vlan_mode_fixture.h"
#include "hal/vlan/vlan_modes.h"
#include "support/in_child.h"

namespace hal_test {
namespace {

using testing::IsEmpty;

const std::string kPlace = "log 4 hal/switch/bcm6838x/src/bcm6838x_vlan_us.cpp ";

using Number = std::uint32_t;

/// A builder, called with a valid list or with null.
struct Builder {
  std::string name;
  std::int32_t (*call)(Number port);
  std::int32_t (*callWithoutList)(Number port) = nullptr;
  bool logsEntry = true;  ///< as its first step
};

void PrintTo(const Builder& builder, std::ostream* out) {
  *out << builder.name;
}

const std::vector<Builder> kBuilders = {
    {"AddUsTransparent", BCM6838X_AddUsTransparent},
    {"AddUsTransparent_Perf", BCM6838X_AddUsTransparent_Perf},
    {"DelUsTransparent", BCM6838X_DelUsTransparent},
    {"AddUsTag", [](Number port) { return BCM6838X_AddUsTag(port, 10, 3); }},
    {"DelUsTag", [](Number port) { return BCM6838X_DelUsTag(port, 10, 3); }},
    {"AddUsZTETrunk",
     [](Number port) { return BCM6838X_AddUsZTETrunk(port, TrunkList(2, 2).data()); },
     [](Number port) { return BCM6838X_AddUsZTETrunk(port, nullptr); }},
    {"DelUsZTETrunk",
     [](Number port) { return BCM6838X_DelUsZTETrunk(port, TrunkList(2, 2).data()); },
     [](Number port) { return BCM6838X_DelUsZTETrunk(port, nullptr); }},
    {"AddUsHybrid",
     [](Number port) { return BCM6838X_AddUsHybrid(port, 10, 3, TrunkList(2, 2).data()); },
     [](Number port) { return BCM6838X_AddUsHybrid(port, 10, 3, nullptr); }},
    {"DelUsHybrid",
     [](Number port) { return BCM6838X_DelUsHybrid(port, 10, 3, TrunkList(2, 2).data()); },
     [](Number port) { return BCM6838X_DelUsHybrid(port, 10, 3, nullptr); }},
    {"AddUsTranslation",
     [](Number port) {
       return BCM6838X_AddUsTranslation(port, 10, 3, TranslationList(2, 2).data());
     },
     [](Number port) { return BCM6838X_AddUsTranslation(port, 10, 3, nullptr); }},
    {"DelUsTranslation",
     [](Number port) {
       return BCM6838X_DelUsTranslation(port, 10, 3, TranslationList(2, 2).data());
     },
     [](Number port) { return BCM6838X_DelUsTranslation(port, 10, 3, nullptr); }},
    {"AddUsZTEStacking", [](Number port) { return BCM6838X_AddUsZTEStacking(port, 10, 3); },
     nullptr, false},
    {"DelUsZTEStacking", [](Number port) { return BCM6838X_DelUsZTEStacking(port, 10, 3); },
     nullptr, false},
    {"AddUsBDCOMStacking",
     [](Number port) {
       return BCM6838X_AddUsBDCOMStacking(port, 10, 3, StackingList(2, 2).data());
     },
     [](Number port) { return BCM6838X_AddUsBDCOMStacking(port, 10, 3, nullptr); }},
    {"DelUsBDCOMStacking",
     [](Number port) {
       return BCM6838X_DelUsBDCOMStacking(port, 10, 3, StackingList(2, 2).data());
     },
     [](Number port) { return BCM6838X_DelUsBDCOMStacking(port, 10, 3, nullptr); }},
};

class VlanModeRefusal : public VlanModeTest, public testing::WithParamInterface<Builder> {
 protected:
  /// The entry, where it is logged first, and the reason.
  [[nodiscard]] static std::vector<std::string> refusal(const std::string& reason) {
    std::vector<std::string> lines;
    if (GetParam().logsEntry) {
      lines.push_back("log ++++++BCM6838X_" + GetParam().name + ",<line>");
    }
    lines.push_back(kPlace + reason + "\r\n");
    return lines;
  }
};

// Required: builders-port-has-16-bits
TEST_P(VlanModeRefusal, PortOutOfRange_IsLoggedAndChangesNothing) {
  struct Refused {
    std::uint32_t given;
    std::string logged;
  };
  const std::vector<Refused> refused = {{0, "0"},       {33, "33"},        {256, "256"},
                                        {257, "257"},   {0xFFFF, "65535"}, {0x10000, "0"},
                                        {0x20021, "33"}};
  for (const Refused& port : refused) {
    forget();
    EXPECT_EQ(GetParam().call(port.given), 1) << port.given;
    EXPECT_EQ(leftBriefly(), refusal("[BCM6838X_" + GetParam().name + " <line>] port " +
                                     port.logged + " is out of range"));
  }
  EXPECT_THAT(device(), IsEmpty());
}

TEST_P(VlanModeRefusal, EveryPortInRange_IsTaken) {
  for (std::uint32_t port = 1; port <= 32; ++port) {
    GetParam().call(port);
  }
  EXPECT_THAT(leftWith("log ++++++BCM6838X_" + GetParam().name + ",<line>"), testing::SizeIs(32));
  EXPECT_THAT(leftWith("log 4"), IsEmpty());
}

// Required: builders-port-has-16-bits
TEST_P(VlanModeRefusal, OfThePortsNumberSixteenBitsCount) {
  const auto call = [this](std::uint32_t port) {
    return InChild([this, port] {
      const std::int32_t result = GetParam().call(port);
      std::vector<std::string> lines = leftBriefly();
      lines.push_back(std::to_string(result));
      return lines;
    });
  };
  const ChildReport plain = call(2);
  const ChildReport wide = call(0xABCD0002);
  ASSERT_TRUE(plain.finished && wide.finished);
  EXPECT_THAT(plain.lines, testing::SizeIs(testing::Ge(2U)));
  EXPECT_EQ(wide.lines, plain.lines);
}

INSTANTIATE_TEST_SUITE_P(Builders, VlanModeRefusal, testing::ValuesIn(kBuilders),
                         [](const auto& test) { return test.param.name; });

/// The builders that read a list.
std::vector<Builder> ListBuilders() {
  std::vector<Builder> builders = kBuilders;
  std::erase_if(builders, [](const Builder& each) { return each.callWithoutList == nullptr; });
  return builders;
}

class VlanModeNullList : public VlanModeRefusal {};

TEST_P(VlanModeNullList, IsLoggedAndChangesNothing) {
  EXPECT_EQ(GetParam().callWithoutList(2), 2);
  EXPECT_EQ(leftBriefly(), refusal("BCM6838X_" + GetParam().name + "(<line>), null pointer"));
  EXPECT_EQ(GetParam().callWithoutList(33), 1) << "the port is looked at first";
  EXPECT_THAT(device(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Builders, VlanModeNullList, testing::ValuesIn(ListBuilders()),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace hal_test
