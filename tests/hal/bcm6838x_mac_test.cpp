/// @file
/// Tests of the MAC table's operations: records, log lines, refusals, the walk to its end.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include <bcm6838x_mac.h>
#include <brmgr_cmd.h>
#include <hal_bcm6838x.h>

#include "support/library_test.h"
#include "support/refusal.h"
#include "support/wire_record.h"

namespace hal_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using virtual_onu::Bytes;

constexpr MacAddress kMac = {{0x02, 0x00, 0x5E, 0xAB, 0x0C, 0xFF}};
const Bytes kMacBytes = {0x02, 0x00, 0x5E, 0xAB, 0x0C, 0xFF};
const std::string kPlace = "log 1 hal/switch/bcm6838x/src/bcm6838x_mac.cpp ";

std::string EntrySent(const std::string& command, std::uint32_t port, std::uint16_t vid) {
  return Sent(command, 0, WireRecord(24).bytes(0, kMacBytes).u32(8, port).u16(12, vid));
}

std::string FilterSent(const std::string& command, std::uint32_t port, std::uint16_t vid) {
  return Sent(command, 0, WireRecord(20).bytes(4, kMacBytes).u32(12, port).u16(16, vid));
}

std::string Logged(const std::string& operation, const std::string& text) {
  return kPlace + "BCM6838X_" + operation + "(<line>), " + text + "\r\n";
}

std::string FilterLogged(const std::string& operation, const std::string& portAndVid) {
  return Logged(operation, portAndVid + ", macAddr:2:0:5e:ab:c:ff");
}

MacStaticEntry StaticEntry(std::uint8_t port, std::uint16_t vid) {
  MacStaticEntry entry = {};
  entry.vid = vid;
  std::ranges::copy(kMacBytes, std::begin(entry.mac));
  entry.port = port;
  return entry;
}

MacDynamicEntry DynamicEntry(std::uint32_t port, std::uint16_t vid) {
  MacDynamicEntry entry = {};
  entry.vid = vid;
  std::ranges::copy(kMacBytes, std::begin(entry.mac));
  entry.unused = 0xA1B2C3D4;
  entry.port = port;
  return entry;
}

/// What a reader gave back, with values that it must overwrite at the start.
struct Reading {
  std::uint32_t port = 0xAAAAAAAA;
  std::uint16_t vid = 0xAAAA;
  std::array<std::uint8_t, 6> mac = {0xAA, 0xAA, 0xAA, 0xAA, 0xAA, 0xAA};
  std::uint8_t flag = 0xAA;
  bool operator==(const Reading&) const = default;
};

std::uint32_t ReadFirst(Reading& reading) {
  return BCM6838X_GetFirstMacEntry(&reading.port, &reading.vid, reading.mac.data(), &reading.flag);
}

std::uint32_t ReadNext(Reading& reading) {
  return BCM6838X_GetNextMacEntry(&reading.port, &reading.vid, reading.mac.data(), &reading.flag);
}

class MacTest : public LibraryTest {
 protected:
  void SetUp() override {
    ASSERT_EQ(BCM6838X_InitDrv(), 0U);
    forget();
  }

  [[nodiscard]] const virtual_onu::MacTables& tables() { return unit.device().macTables(); }
};

TEST_F(MacTest, Static_AddAndDel_SendTheEntryWithoutALogLine) {
  const MacStaticEntry entry = StaticEntry(3, 0x0FA1);
  EXPECT_EQ(BCM6838X_AddMacStatic(&entry), 0U);
  EXPECT_EQ(tables().entries.size(), 1U);
  EXPECT_EQ(BCM6838X_DelMacStatic(&entry), 0U);
  EXPECT_THAT(left(), ElementsAre(EntrySent("MAC_STATIC_ADD", 3, 0x0FA1),
                                  EntrySent("MAC_STATIC_DEL", 3, 0x0FA1)));
  EXPECT_THAT(tables().entries, IsEmpty());
}

TEST_F(MacTest, Dynamic_AddAndDel_SendTheEntryWithoutALogLine) {
  const MacDynamicEntry entry = DynamicEntry(2, 100);
  EXPECT_EQ(BCM6838X_AddMacDynamic(&entry), 0U);
  EXPECT_EQ(tables().entries.size(), 1U);
  EXPECT_EQ(BCM6838X_DelMacDynamic(&entry), 0U);
  EXPECT_THAT(left(), ElementsAre(EntrySent("MAC_DYNAMIC_ADD", 2, 100),
                                  EntrySent("MAC_DYNAMIC_DEL", 2, 100)));
  EXPECT_THAT(tables().entries, IsEmpty());
}

TEST_F(MacTest, Entries_AStaticPortHasEightBitsADynamicOneAWord) {
  const MacStaticEntry narrow = StaticEntry(0xFF, 0xFFFF);
  const MacDynamicEntry wide = DynamicEntry(0x80000102, 0xFFFF);
  EXPECT_EQ(BCM6838X_AddMacStatic(&narrow), 0U);
  EXPECT_EQ(BCM6838X_AddMacDynamic(&wide), 0U);
  EXPECT_THAT(commands(), ElementsAre(EntrySent("MAC_STATIC_ADD", 0xFF, 0xFFFF),
                                      EntrySent("MAC_DYNAMIC_ADD", 0x80000102, 0xFFFF)));
}

TEST_F(MacTest, Entries_Null_AreInvalidAndLeaveNoTrace) {
  EXPECT_EQ(BCM6838X_AddMacStatic(nullptr), 2U);
  EXPECT_EQ(BCM6838X_DelMacStatic(nullptr), 2U);
  EXPECT_EQ(BCM6838X_AddMacDynamic(nullptr), 2U);
  EXPECT_EQ(BCM6838X_DelMacDynamic(nullptr), 2U);
  EXPECT_THAT(left(), IsEmpty());
}

struct FilterRow {
  std::string operation;
  std::string command;
  std::uint32_t (*call)(std::uint32_t port, std::uint32_t vid, MacAddress mac);
};

const std::vector<FilterRow> kFilters = {
    {"AddMacFilter", "MAC_FILTER_ADD", BCM6838X_AddMacFilter},
    {"DelMacFilter", "MAC_FILTER_DEL", BCM6838X_DelMacFilter},
    {"AddMacBind", "MAC_BIND_ADD", BCM6838X_AddMacBind},
    {"DelMacBind", "MAC_BIND_DEL", BCM6838X_DelMacBind},
};

TEST_F(MacTest, FiltersAndBinds_LogThenSend) {
  for (const FilterRow& row : kFilters) {
    forget();
    EXPECT_EQ(row.call(4, 4095, kMac), 0U);
    EXPECT_THAT(left(), ElementsAre(FilterLogged(row.operation, "port=4, vid=4095"),
                                    FilterSent(row.command, 4, 4095)));
  }
  EXPECT_EQ(kFilters.size(), 4U);
}

// Required: mac-filter-sends-low-byte
TEST_F(MacTest, FiltersAndBinds_OfThePortTheLowByteIsSent) {
  for (const FilterRow& row : kFilters) {
    forget();
    EXPECT_EQ(row.call(0x101, 0x10005, kMac), 0U);
    EXPECT_THAT(left(), ElementsAre(FilterLogged(row.operation, "port=257, vid=5"),
                                    FilterSent(row.command, 1, 5)));
  }
}

TEST_F(MacTest, FiltersAndBinds_AreKeptApart) {
  BCM6838X_AddMacFilter(1, 5, kMac);
  EXPECT_EQ(tables().filters.size(), 1U);
  EXPECT_THAT(tables().binds, IsEmpty());
  BCM6838X_AddMacBind(2, 5, kMac);
  BCM6838X_DelMacFilter(1, 5, kMac);
  EXPECT_THAT(tables().filters, IsEmpty());
  EXPECT_EQ(tables().binds.size(), 1U);
  BCM6838X_DelMacBind(2, 5, kMac);
  EXPECT_THAT(tables().binds, IsEmpty());
}

// Required: mac-limit-logs-what-was-given
TEST_F(MacTest, Limit_LogsTheValueAndSendsItsLowSixteenBits) {
  EXPECT_EQ(BCM6838X_SetMacLimitMacNum(70000), 0U);
  EXPECT_EQ(BCM6838X_SetMacLimitMacNum(0xFFFFFFFF), 0U);
  EXPECT_THAT(left(), ElementsAre(Logged("SetMacLimitMacNum", "limit=70000"),
                                  Sent("MAC_LIMIT", 0, WireRecord(2).u16(0, 4464)),
                                  Logged("SetMacLimitMacNum", "limit=-1"),
                                  Sent("MAC_LIMIT", 0, WireRecord(2).u16(0, 0xFFFF))));
}

TEST_F(MacTest, AgingTime_FeatureOn_SendsTheCommand) {
  EXPECT_EQ(BCM6838X_SetMacAgingTime(0x1012C), 0U);
  EXPECT_THAT(left(), ElementsAre(Logged("SetMacAgingTime", "ageTime=300"),
                                  Sent("MAC_AGING", 0, WireRecord(2).u16(0, 300))));
}

// Required: mac-aging-by-feature-27
TEST_F(MacTest, AgingTime_FeatureNotOne_SendsAMessageOfOneWordInstead) {
  const std::uint32_t word = 300;
  Bytes message(sizeof(word));
  std::memcpy(message.data(), &word, sizeof(word));
  int values = 0;
  for (const std::uint32_t feature : {0U, 2U, 0x101U}) {
    unit.platform().config().features[27] = feature;
    forget();
    EXPECT_EQ(BCM6838X_SetMacAgingTime(0xFFFF012C), 0U);
    EXPECT_THAT(left(), ElementsAre(Logged("SetMacAgingTime", "ageTime=300"),
                                    "message 42048 1091 " + virtual_onu::ToHex(message)));
    ++values;
  }
  EXPECT_EQ(values, 3);
}

// Required: mac-clear-is-learn-command
TEST_F(MacTest, Clear_PassesTheValueUnchanged) {
  EXPECT_EQ(BCM6838X_SetMacClear(0x80000001), 0U);
  EXPECT_THAT(left(), ElementsAre(Logged("SetMacClear", "clear=-2147483647"),
                                  Sent("MAC_LEARN", 0, WireRecord(4).u32(0, 0x80000001))));
}

// Required: mac-changes-succeed
TEST_F(MacTest, Changes_EachCommandRefused_LogAndSucceed) {
  static const MacStaticEntry fixed = StaticEntry(1, 5);
  static const MacDynamicEntry learned = DynamicEntry(1, 5);
  struct Row {
    std::uint32_t code;
    std::function<std::uint32_t()> call;
  };
  const std::vector<Row> rows = {
      {81, [] { return BCM6838X_AddMacStatic(&fixed); }},
      {82, [] { return BCM6838X_DelMacStatic(&fixed); }},
      {83, [] { return BCM6838X_AddMacDynamic(&learned); }},
      {84, [] { return BCM6838X_DelMacDynamic(&learned); }},
      {79, [] { return BCM6838X_AddMacFilter(1, 5, kMac); }},
      {80, [] { return BCM6838X_DelMacFilter(1, 5, kMac); }},
      {77, [] { return BCM6838X_AddMacBind(1, 5, kMac); }},
      {78, [] { return BCM6838X_DelMacBind(1, 5, kMac); }},
      {132, [] { return BCM6838X_SetMacLimitMacNum(1); }},
      {131, [] { return BCM6838X_SetMacAgingTime(1); }},
      {133, [] { return BCM6838X_SetMacClear(1); }},
  };
  unit.device().faults().refuseFrom(1);
  for (const Row& row : rows) {
    forget();
    EXPECT_EQ(row.call(), 0U) << row.code;
    EXPECT_EQ(commands().size(), 1U) << row.code;
    EXPECT_EQ(left().back(), RefusalLogged(row.code));
  }
  EXPECT_EQ(rows.size(), 11U);
}

TEST_F(MacTest, GetFirst_AsksWithZerosAndReadsTheRecord) {
  const MacStaticEntry entry = StaticEntry(3, 0x0FA1);
  BCM6838X_AddMacStatic(&entry);
  forget();
  Reading reading;
  EXPECT_EQ(ReadFirst(reading), 0U);
  EXPECT_EQ(reading, (Reading{3, 0x0FA1, {0x02, 0x00, 0x5E, 0xAB, 0x0C, 0xFF}, 1}));
  EXPECT_THAT(left(), ElementsAre(Sent("MAC_GET_NEXT", 1, WireRecord(24))));
}

// Required: mac-walk-asks-by-address
TEST_F(MacTest, GetNext_AsksWithTheAddressAlone) {
  MacDynamicEntry entry = DynamicEntry(4, 7);
  BCM6838X_AddMacDynamic(&entry);
  forget();
  Reading reading;
  reading.mac = {0x02, 0x00, 0x5E, 0xAB, 0x0C, 0xFE};
  EXPECT_EQ(ReadNext(reading), 0U);
  EXPECT_EQ(reading, (Reading{4, 7, {0x02, 0x00, 0x5E, 0xAB, 0x0C, 0xFF}, 0}));
  EXPECT_THAT(left(),
              ElementsAre(Sent("MAC_GET_NEXT", 1,
                               WireRecord(24).bytes(0, Bytes{0x02, 0, 0x5E, 0xAB, 0x0C, 0xFE}))));
}

TEST_F(MacTest, Walk_VisitsEveryEntryInOrderAndStandsStillAtTheEnd) {
  constexpr std::uint8_t kEntries = 40;
  for (std::uint8_t i = kEntries; i > 0; --i) {
    MacDynamicEntry entry = DynamicEntry(1 + i % 4U, i);
    entry.mac[4] = i;
    BCM6838X_AddMacDynamic(&entry);
  }
  Reading reading;
  ASSERT_EQ(ReadFirst(reading), 0U);
  std::uint8_t visited = 0;
  for (Reading last; reading.mac != last.mac && visited <= kEntries; ReadNext(reading)) {
    last = reading;
    ++visited;
    EXPECT_EQ(reading,
              (Reading{1 + visited % 4U, visited, {0x02, 0, 0x5E, 0xAB, visited, 0xFF}, 0}));
  }
  EXPECT_EQ(visited, kEntries);
  EXPECT_EQ(reading, (Reading{0, 0, {0x02, 0, 0x5E, 0xAB, kEntries, 0xFF}, 0}))
      << "the caller's own address, and zeros";
}

// Required: mac-walk-ignores-refusal
TEST_F(MacTest, Readers_DriverRefuses_SucceedWithWhatTheRecordHeld) {
  const MacStaticEntry entry = StaticEntry(3, 5);
  BCM6838X_AddMacStatic(&entry);
  unit.device().faults().refuseFrom(1);
  forget();
  Reading first;
  EXPECT_EQ(ReadFirst(first), 0U);
  EXPECT_EQ(first, (Reading{0, 0, {}, 0}));
  Reading next;
  next.mac = {1, 2, 3, 4, 5, 6};
  EXPECT_EQ(ReadNext(next), 0U);
  EXPECT_EQ(next, (Reading{0, 0, {1, 2, 3, 4, 5, 6}, 0}));
  EXPECT_THAT(logLines(), ElementsAre(RefusalLogged(73), RefusalLogged(73)));
}

TEST_F(MacTest, Readers_AnyNullPointer_AreInvalidAndSendNothing) {
  int calls = 0;
  for (const auto read : {BCM6838X_GetFirstMacEntry, BCM6838X_GetNextMacEntry}) {
    Reading reading;
    std::uint8_t* const mac = reading.mac.data();
    EXPECT_EQ(read(nullptr, &reading.vid, mac, &reading.flag), 2U);
    EXPECT_EQ(read(&reading.port, nullptr, mac, &reading.flag), 2U);
    EXPECT_EQ(read(&reading.port, &reading.vid, nullptr, &reading.flag), 2U);
    EXPECT_EQ(read(&reading.port, &reading.vid, mac, nullptr), 2U);
    EXPECT_EQ(reading, Reading());
    ++calls;
  }
  EXPECT_EQ(calls, 2);
  EXPECT_THAT(left(), IsEmpty());
}

class MacClosedTest : public LibraryTest {};

TEST_F(MacClosedTest, DeviceNotOpen_EveryOperationSucceeds) {
  const MacStaticEntry entry = StaticEntry(3, 5);
  EXPECT_EQ(BCM6838X_AddMacStatic(&entry), 0U);
  EXPECT_EQ(BCM6838X_AddMacBind(3, 5, kMac), 0U);
  EXPECT_EQ(BCM6838X_SetMacClear(1), 0U);
  Reading reading;
  EXPECT_EQ(ReadNext(reading), 0U);
  EXPECT_EQ(reading.port, 0U);
  EXPECT_THAT(commands(), IsEmpty());
}

}  // namespace
}  // namespace hal_test
