/// @file
/// Tests of the unit's hold on the process: one at a time, its own directory, and the C library's
/// calls that it interposes.
#include "unit/unit.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>
#include <linux/mii.h>
#include <linux/sockios.h>
#include <net/if.h>
#include <stdexcept>
#include <string>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

#include <platform_config.h>
#include <platform_vos.h>

#include "support/left.h"

namespace virtual_onu {
namespace {

constexpr const char* kMarker = "/var/config/switch_perf";

TEST(Unit, Current_IsTheOneThatLives) {
  EXPECT_EQ(Unit::Current(), nullptr);
  {
    const Unit unit;
    EXPECT_EQ(Unit::Current(), &unit);
    EXPECT_THROW(const Unit second, std::logic_error);
    EXPECT_EQ(Unit::Current(), &unit);
  }
  EXPECT_EQ(Unit::Current(), nullptr);
}

TEST(Unit, PortRevert_FollowsTheConfiguration) {
  UnitConfig config;
  config.platform.portRevert = 1;
  {
    const Unit unit(config);
    EXPECT_EQ(g_PortRevert, 1U);
  }
  const Unit other;
  EXPECT_EQ(g_PortRevert, 0U);
}

TEST(Unit, Marker_LiesInTheUnitsOwnDirectoryAndNotOnTheMachine) {
  const bool onMachine = std::filesystem::exists(kMarker);
  Unit unit;
  EXPECT_NE(access(kMarker, F_OK), 0);
  unit.platform().setPerformanceMarker(true);
  EXPECT_EQ(access(kMarker, F_OK), 0);
  EXPECT_EQ(std::filesystem::exists(kMarker), onMachine);
  EXPECT_EQ(unlink(kMarker), 0);
  EXPECT_NE(access(kMarker, F_OK), 0);
  EXPECT_EQ(errno, ENOENT);
  EXPECT_EQ(std::filesystem::exists(kMarker), onMachine);
}

TEST(Unit, TemporaryDirectory_GoesWithTheUnit) {
  std::filesystem::path marker;
  {
    Unit unit;
    unit.platform().setPerformanceMarker(true);
    marker = unit.platform().mapPath(kMarker);
    EXPECT_TRUE(std::filesystem::exists(marker));
  }
  EXPECT_FALSE(std::filesystem::exists(marker.parent_path()));
}

TEST(Unit, GivenDirectory_StaysWithItsFiles) {
  std::string pattern = (std::filesystem::temp_directory_path() / "unit-test-XXXXXX").string();
  ASSERT_NE(mkdtemp(pattern.data()), nullptr);
  {
    UnitConfig config;
    config.directory = pattern;
    Unit unit(config);
    unit.platform().setPerformanceMarker(true);
  }
  EXPECT_TRUE(std::filesystem::exists(std::filesystem::path(pattern) / "switch_perf"));
  std::filesystem::remove_all(pattern);
}

TEST(Unit, OtherFilesAndDescriptors_AreTheSystems) {
  const Unit unit;
  std::string pattern = (std::filesystem::temp_directory_path() / "unit-test-XXXXXX").string();
  const int file = mkstemp(pattern.data());
  ASSERT_GE(file, 0);
  close(file);
  EXPECT_EQ(access(pattern.c_str(), F_OK), 0);
  EXPECT_EQ(unlink(pattern.c_str()), 0);
  EXPECT_NE(access(pattern.c_str(), F_OK), 0);

  std::array<int, 2> ends = {};
  ASSERT_EQ(pipe(ends.data()), 0);
  ASSERT_EQ(write(ends[1], "abc", 3), 3);
  int waiting = 0;
  EXPECT_EQ(ioctl(ends[0], FIONREAD, &waiting), 0);
  EXPECT_EQ(waiting, 3);
  close(ends[0]);
  close(ends[1]);
  EXPECT_TRUE(hal_test::Left(unit).empty()) << "the system's own calls are not the unit's";
}

TEST(Unit, DeviceDescriptor_IsServedByTheUnit) {
  Unit unit;
  const int fd = VOS_OpenDevice("BrmgrDev");
  ASSERT_GT(fd, 2);
  EXPECT_TRUE(unit.device().owns(fd));
  int waiting = 0;
  EXPECT_EQ(ioctl(fd, FIONREAD, &waiting), -1);
  EXPECT_EQ(errno, ENOTTY);
}

/// An MII request on the interface of that name; returns 0 or the errno value.
int Mii(int fd, unsigned long request, const char* name, mii_ioctl_data& mii) {
  ifreq packet = {};
  std::strncpy(std::data(packet.ifr_name), name, IFNAMSIZ - 1);
  std::memcpy(&packet.ifr_ifru, &mii, sizeof(mii));
  errno = 0;
  const int result = ioctl(fd, request, &packet);
  const int error = errno;
  EXPECT_EQ(result, error == 0 ? 0 : -1);
  std::memcpy(&mii, &packet.ifr_ifru, sizeof(mii));
  return error;
}

/// A datagram socket that closes itself.
class Socket {
 public:
  Socket() : fd_(socket(AF_INET, SOCK_DGRAM, 0)) { EXPECT_GE(fd_, 0); }
  ~Socket() { close(fd_); }
  Socket(const Socket&) = delete;
  Socket& operator=(const Socket&) = delete;
  [[nodiscard]] int fd() const { return fd_; }

 private:
  int fd_;
};

TEST(Unit, MiiRequest_OnAnOwnInterface_IsServedByTheUnit) {
  Unit unit;
  const Socket socket;
  mii_ioctl_data mii = {};
  EXPECT_EQ(Mii(socket.fd(), SIOCGMIIPHY, "eth1", mii), 0);
  mii.reg_num = 0;
  EXPECT_EQ(Mii(socket.fd(), SIOCGMIIREG, "eth1", mii), 0);
  EXPECT_EQ(mii.val_out, 0x1140);
  mii.val_in = 0x1940;
  EXPECT_EQ(Mii(socket.fd(), SIOCSMIIREG, "eth1", mii), 0);
  EXPECT_FALSE(unit.phy(2).link());
  EXPECT_TRUE(unit.phy(1).link());
  EXPECT_EQ(hal_test::Left(unit), std::vector<std::string>{"call mii eth1 reg 0 write 0x1940"});
}

TEST(Unit, MiiRequest_OnAnyOtherInterface_IsTheSystems) {
  const Unit unit;
  const Socket socket;
  mii_ioctl_data mii = {};
  EXPECT_EQ(Mii(socket.fd(), SIOCGIFINDEX, "", mii), ENODEV);
  EXPECT_EQ(Mii(socket.fd(), SIOCGIFINDEX, "eth77", mii), ENODEV);
  mii = {};
  EXPECT_EQ(Mii(socket.fd(), SIOCGIFINDEX, "lo", mii), 0) << "the machine's loopback";
}

TEST(Unit, MiiRequest_OnSomethingElseThanASocket_FailsAsOnAnyMachine) {
  const Unit unit;
  mii_ioctl_data mii = {};
  EXPECT_EQ(Mii(-1, SIOCGIFINDEX, "eth0", mii), EBADF);
  const int file = open("/dev/null", O_RDONLY | O_CLOEXEC);
  ASSERT_GE(file, 0);
  EXPECT_EQ(Mii(file, SIOCGIFINDEX, "eth0", mii), ENOTTY);
  close(file);
}

TEST(Unit, OtherRequestOnASocket_ItsArgumentIsNotLookedAt) {
  const Unit unit;
  const Socket socket;
  EXPECT_EQ(ioctl(socket.fd(), SIOCGMIIPHY - 1, 1UL), -1) << "1 is no address";
}

TEST(Unit, ShellLine_ReachesTheUnitsShell) {
  Unit unit;
  EXPECT_EQ(VOS_System("ethctl eth%d reg %d %x", 3, 0, 0x1940U), 0);
  EXPECT_FALSE(unit.phy(4).link());
  EXPECT_NE(VOS_System("ethctl eth%d reg %d %x", 4, 0, 0x1940U), 0);
  const std::vector<ShellEvent> lines = EventsOf<ShellEvent>(unit.trace().events());
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0].line, "ethctl eth3 reg 0 1940");
  EXPECT_EQ(lines[0].result, 0);
  EXPECT_EQ(lines[1].line, "ethctl eth4 reg 0 1940");
  EXPECT_NE(lines[1].result, 0);
  EXPECT_EQ(lines[1].reason, "no interface eth4");
}

TEST(Unit, NumberOfPorts_IsThatOfThePlatform) {
  UnitConfig config;
  config.platform.ethPorts = 2;
  Unit unit(config);
  EXPECT_EQ(unit.interfaces().count(), 2U);
  EXPECT_EQ(unit.device().limits().uniPorts, 2U);
  EXPECT_EQ(unit.dataPath().uniPorts(), 2U);
}

}  // namespace
}  // namespace virtual_onu
