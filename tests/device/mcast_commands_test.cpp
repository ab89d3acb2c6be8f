/// @file
/// Tests of the commands of the multicast groups.
#include <array>
#include <cerrno>
#include <cstdint>
#include <string>

#include "device_fixture.h"

namespace virtual_onu {
namespace {

constexpr std::uint32_t kNone = BRMGR_INDEX_NONE;

class McastCommandsTest : public DeviceTest {
 protected:
  static McastGroupEntry Group(std::uint32_t port, std::uint32_t vlanActionIndex = kNone) {
    McastGroupEntry entry = {};
    entry.vlanActionIndex = vlanActionIndex;
    entry.channelIndex = kNone;
    entry.port = port;
    entry.vlan = 100;
    entry.groupIpv4[0] = 239;
    return entry;
  }

  /// Adds an entry and returns its index.
  std::uint32_t add(McastGroupEntry entry) {
    EXPECT_EQ(send(BRMGR_CMD_MCAST_ADD, entry), 0) << lastCommand().reason;
    return entry.channelIndex;
  }

  void expectRefusal(std::uint32_t code, McastGroupEntry entry, int error,
                     const std::string& reason) {
    const std::size_t before = groups().size();
    const Bytes sent = BytesOf(entry);
    EXPECT_EQ(send(code, entry), error);
    EXPECT_EQ(lastCommand().reason, reason);
    EXPECT_EQ(BytesOf(entry), sent);
    EXPECT_EQ(groups().size(), before);
  }

  [[nodiscard]] const McastGroups& groups() const { return device_.mcastGroups(); }
};

TEST_F(McastCommandsTest, Add_GivesTheLowestFreeIndexAndKeepsTheEntry) {
  EXPECT_EQ(add(Group(1)), 0U);
  EXPECT_EQ(add(Group(4)), 1U);
  McastGroupEntry expected = Group(4);
  expected.channelIndex = 1;
  EXPECT_EQ(BytesOf(groups().at(1)), BytesOf(expected));
  McastGroupEntry first = Group(1);
  first.channelIndex = 0;
  EXPECT_EQ(send(BRMGR_CMD_MCAST_DEL, first, BRMGR_FLAG_INPUT), 0);
  McastGroupEntry again = Group(2);
  again.channelIndex = 7;
  EXPECT_EQ(add(again), 0U) << "the index that was sent is not looked at";
}

TEST_F(McastCommandsTest, Add_OnNoPort_IsRefused) {
  for (const std::uint32_t port : {0U, 5U, 0xFFFFFFFFU}) {
    expectRefusal(BRMGR_CMD_MCAST_ADD, Group(port), EINVAL,
                  "UNI port " + std::to_string(port) + " is none of 1 to 4");
  }
}

TEST_F(McastCommandsTest, Add_WithAVlanAction_NeedsItDownstream) {
  addAction(kUs);
  expectRefusal(BRMGR_CMD_MCAST_ADD, Group(1, 0), ENOENT, "no ds VLAN action 0");
  addAction(kDs);
  EXPECT_EQ(add(Group(1, 0)), 0U);
}

TEST_F(McastCommandsTest, Add_TableFull_IsRefused) {
  for (std::size_t i = 0; i < kLimits.mcastGroups; ++i) {
    EXPECT_EQ(add(Group(1)), i);
  }
  expectRefusal(BRMGR_CMD_MCAST_ADD, Group(1), ENOSPC, "all 3 multicast group entries are in use");
}

TEST_F(McastCommandsTest, Del_UnknownIndex_IsRefused) {
  add(Group(1));
  expectRefusal(BRMGR_CMD_MCAST_DEL, Group(1), ENOENT, "no multicast group entry 4294967295");
}

TEST_F(McastCommandsTest, ShortRecord_IsRefused) {
  std::array<std::uint8_t, 52> record = {};
  for (const std::uint32_t code : {25U, 26U}) {
    EXPECT_EQ(request(code, record.data(), record.size() - 1, BRMGR_FLAG_INPUT), EINVAL);
    EXPECT_EQ(lastCommand().reason, "short record");
  }
  EXPECT_TRUE(groups().empty());
}

}  // namespace
}  // namespace virtual_onu
