/// @file
/// Tests of the VLAN area's start-up as a program sees it that links with the archive: which bytes
/// of the tables it clears.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <span>
#include <string>
#include <vector>

#include <bcm6838x_vlan_port.h>
#include <brmgr_record.h>
#include <hal_bcm6838x.h>

#include "hal/vlan/vlan_port_test.h"
#include "support/library_tables.h"

namespace hal_test {
namespace {

constexpr std::uint8_t kFilling = 0xEE;

struct Table {
  std::string name;
  std::span<std::uint8_t> bytes;
};

template <typename Object>
Table TableOf(const std::string& name, Object& object) {
  return {name, {reinterpret_cast<std::uint8_t*>(&object), sizeof(object)}};
}

std::vector<Table> ChipTables() {
  return {TableOf("g_wanVlan", g_wanVlan), TableOf("g_lanVlan", g_lanVlan),
          TableOf("g_vlanAction", g_vlanAction), TableOf("g_usIngressClass", g_usIngressClass),
          TableOf("g_dsIngressClass", g_dsIngressClass)};
}

PortVlanInfo RecordOf(std::uint8_t byte) {
  PortVlanInfo info;
  std::memset(static_cast<void*>(&info), byte, sizeof(info));
  return info;
}

bool AreEqual(const PortVlanInfo& a, const PortVlanInfo& b) {
  return std::memcmp(static_cast<const void*>(&a), &b, sizeof(a)) == 0;
}

class VlanInitStateTest : public VlanPortTest {};

TEST_F(VlanInitStateTest, ClearsEveryByteOfTheTablesOfChipObjects) {
  for (const Table& table : ChipTables()) {
    std::ranges::fill(table.bytes, kFilling);
  }
  EXPECT_EQ(BCM6838X_InitVlan(), 0U);
  std::size_t bytes = 0;
  for (const Table& table : ChipTables()) {
    EXPECT_EQ(std::ranges::count(table.bytes, 0), static_cast<std::ptrdiff_t>(table.bytes.size()))
        << table.name;
    bytes += table.bytes.size();
  }
  EXPECT_EQ(bytes, 0x800200U + 1536 + 7168 + 0x148000 + 41984);
}

TEST_F(VlanInitStateTest, ClearsTheRecordsOfThePortsAndCommitsAll) {
  std::ranges::fill(g_PortVlanInfo, RecordOf(kFilling));
  EXPECT_EQ(BCM6838X_InitVlan(), 0U);
  PortVlanInfo none = {};
  none.vlanMode = BCM6838X_VLAN_MODE_NONE;
  for (std::size_t i = 0; i < 32; ++i) {
    EXPECT_TRUE(AreEqual(g_PortVlanInfo[i], i < 4 ? none : RecordOf(kFilling))) << i;
    EXPECT_TRUE(AreEqual(g_oldPortVlanInfo[i], g_PortVlanInfo[i])) << i;
  }
}

}  // namespace
}  // namespace hal_test
