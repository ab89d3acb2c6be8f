/// @file
/// Tests of the requests of the network stack on the unit's interfaces.
#include "phy/interfaces.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <gtest/gtest.h>
#include <linux/mii.h>
#include <linux/sockios.h>
#include <net/if.h>
#include <optional>
#include <string>
#include <vector>

#include "base/clock.h"

namespace virtual_onu {
namespace {

constexpr std::uint32_t kPorts = 4;

class InterfacesTest : public testing::Test {
 protected:
  /// A request on the interface of that name, which is cut to the field's size.
  static ifreq Request(const std::string& name) {
    ifreq request = {};
    std::memcpy(&request.ifr_name, name.data(), std::min<std::size_t>(name.size(), IFNAMSIZ));
    return request;
  }

  static ifreq Request(const std::string& name, const mii_ioctl_data& mii) {
    ifreq request = Request(name);
    std::memcpy(&request.ifr_ifru, &mii, sizeof(mii));
    return request;
  }

  static mii_ioctl_data MiiOf(const ifreq& request) {
    mii_ioctl_data mii;
    std::memcpy(&mii, &request.ifr_ifru, sizeof(mii));
    return mii;
  }

  /// Reads a register over an interface.
  int read(const std::string& name, std::uint16_t address, std::uint16_t reg) {
    ifreq request = Request(name, {.phy_id = address, .reg_num = reg, .val_in = 0, .val_out = 0});
    EXPECT_EQ(interfaces_.ioctl(SIOCGMIIREG, &request), 0);
    return MiiOf(request).val_out;
  }

  /// Writes a register over an interface; returns 0 or the errno value.
  int write(const std::string& name, std::uint16_t address, std::uint16_t reg,
            std::uint16_t value) {
    ifreq request =
        Request(name, {.phy_id = address, .reg_num = reg, .val_in = value, .val_out = 0});
    errno = 0;
    const std::optional<int> result = interfaces_.ioctl(SIOCSMIIREG, &request);
    const int error = errno;
    EXPECT_EQ(result, error == 0 ? 0 : -1);
    return error;
  }

  [[nodiscard]] std::vector<std::string> calls() const {
    std::vector<std::string> lines;
    for (const CallEvent& event : EventsOf<CallEvent>(trace_.events())) {
      lines.push_back(event.call + " = " + std::to_string(event.result));
    }
    return lines;
  }

  Clock clock_;
  Trace trace_{clock_};
  Interfaces interfaces_{trace_, kPorts};
};

TEST_F(InterfacesTest, Find_TakesTheUnitsNamesAlone) {
  EXPECT_EQ(interfaces_.find("eth0"), 1U);
  EXPECT_EQ(interfaces_.find("eth3"), 4U);
  for (const char* name : {"", "eth", "eth4", "eth00", "eth+1", "eth-1", "eth0 ", "ETH0", "lo",
                           "weth0", "eth4294967295", "eth99999999999"}) {
    EXPECT_EQ(interfaces_.find(name), std::nullopt) << name;
  }
}

TEST_F(InterfacesTest, Index_IsDifferentForEachInterface) {
  std::vector<int> indexes;
  for (const char* name : {"eth0", "eth1", "eth2", "eth3"}) {
    ifreq request = Request(name);
    ASSERT_EQ(interfaces_.ioctl(SIOCGIFINDEX, &request), 0);
    EXPECT_STREQ(std::data(request.ifr_name), name);
    indexes.push_back(request.ifr_ifindex);
  }
  EXPECT_EQ(indexes, (std::vector<int>{2, 3, 4, 5}));
}

TEST_F(InterfacesTest, PhyAddress_IsTheUniPortNumber) {
  for (std::uint16_t uni = 1; uni <= kPorts; ++uni) {
    ifreq request = Request("eth" + std::to_string(uni - 1));
    ASSERT_EQ(interfaces_.ioctl(SIOCGMIIPHY, &request), 0);
    EXPECT_EQ(MiiOf(request).phy_id, uni);
  }
}

TEST_F(InterfacesTest, Read_ReachesThePhyOfTheAddressOverAnyInterface) {
  interfaces_.phy(2).write(24, 0x1234);
  EXPECT_EQ(read("eth1", 2, 24), 0x1234);
  EXPECT_EQ(read("eth0", 2, 24), 0x1234);
  EXPECT_EQ(read("eth1", 1, 24), 0);
}

TEST_F(InterfacesTest, Read_AddressWithoutAPhy_YieldsAllOnes) {
  for (const std::uint16_t address : {std::uint16_t{0}, std::uint16_t{5}, std::uint16_t{0xFFFF}}) {
    EXPECT_EQ(read("eth0", address, 0), 0xFFFF) << address;
    EXPECT_EQ(write("eth0", address, 0, 0), 0) << address;
  }
}

TEST_F(InterfacesTest, Read_LeavesNoTrace) {
  read("eth0", 1, 1);
  EXPECT_TRUE(calls().empty());
}

TEST_F(InterfacesTest, Write_ChangesTheRegisterAndIsTraced) {
  EXPECT_EQ(write("eth2", 3, 0, 0x1940), 0);
  EXPECT_EQ(interfaces_.phy(3).read(0), 0x1940);
  EXPECT_FALSE(interfaces_.phy(3).link());
  EXPECT_TRUE(interfaces_.phy(1).link());
  EXPECT_EQ(calls(), std::vector<std::string>{"mii eth2 reg 0 write 0x1940 = 0"});
}

TEST_F(InterfacesTest, RegisterAboveThirtyOne_IsRefused) {
  ifreq request = Request("eth0", {.phy_id = 1, .reg_num = 32, .val_in = 0, .val_out = 7});
  errno = 0;
  EXPECT_EQ(interfaces_.ioctl(SIOCGMIIREG, &request), -1);
  EXPECT_EQ(errno, EINVAL);
  EXPECT_EQ(MiiOf(request).val_out, 7);
  EXPECT_EQ(write("eth0", 1, 32, 0), EINVAL);
  EXPECT_EQ(write("eth0", 1, 0xFFFF, 0), EINVAL);
  EXPECT_EQ(calls(), (std::vector<std::string>{"mii eth0 reg 32 write 0x0000 = -1",
                                               "mii eth0 reg 65535 write 0x0000 = -1"}));
}

TEST_F(InterfacesTest, OtherInterfacesAndRequests_AreNotTheUnits) {
  for (const std::string& name :
       {std::string(), std::string("eth4"), std::string("lo"), std::string(IFNAMSIZ, 'e')}) {
    ifreq request = Request(name);
    EXPECT_EQ(interfaces_.ioctl(SIOCGIFINDEX, &request), std::nullopt) << name;
  }
  ifreq request = Request("eth0");
  EXPECT_EQ(interfaces_.ioctl(SIOCGIFFLAGS, &request), std::nullopt);
  EXPECT_FALSE(Interfaces::Knows(SIOCGIFFLAGS));
  EXPECT_EQ(interfaces_.ioctl(SIOCGMIIREG, nullptr), std::nullopt);
}

TEST_F(InterfacesTest, FaultRule_RefusesTheRequestOfItsNumber) {
  interfaces_.faults().refuseNth(2, SIOCGMIIREG);
  EXPECT_EQ(read("eth0", 1, 0), 0x1140);
  EXPECT_EQ(write("eth0", 1, 24, 5), 0);
  ifreq request = Request("eth0", {.phy_id = 1, .reg_num = 24, .val_in = 0, .val_out = 0});
  errno = 0;
  EXPECT_EQ(interfaces_.ioctl(SIOCGMIIREG, &request), -1);
  EXPECT_EQ(errno, EIO);
  EXPECT_EQ(read("eth0", 1, 24), 5);
}

}  // namespace
}  // namespace virtual_onu
