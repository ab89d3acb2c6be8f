/// @file
/// Tests of the commands of the MAC table.
#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <iterator>
#include <optional>
#include <string>

#include "device_fixture.h"

namespace virtual_onu {
namespace {

constexpr MacBytes kLow = {0x02, 0, 0, 0, 0, 0x01};
constexpr MacBytes kMiddle = {0x02, 0, 0, 0, 0x01, 0x00};
constexpr MacBytes kHigh = {0xFE, 0, 0, 0, 0, 0};

class MacCommandsTest : public DeviceTest {
 protected:
  static MacEntryRecord Entry(const MacBytes& mac, std::uint16_t vid, std::uint32_t port) {
    MacEntryRecord record = {};
    std::ranges::copy(mac, std::begin(record.mac));
    record.port = port;
    record.vid = vid;
    return record;
  }

  static MacFilterRecord Filter(const MacBytes& mac, std::uint16_t vid, std::uint32_t port) {
    MacFilterRecord record = {};
    std::ranges::copy(mac, std::begin(record.mac));
    record.port = port;
    record.vid = vid;
    return record;
  }

  template <typename Record>
  void expectDone(std::uint32_t code, Record record) {
    EXPECT_EQ(send(code, record, BRMGR_FLAG_INPUT), 0) << lastCommand().reason;
  }

  /// Sends a record that must be refused; the tables stay as they are.
  template <typename Record>
  void expectRefusal(std::uint32_t code, Record record, int error, const std::string& reason) {
    const std::string before = dump();
    EXPECT_EQ(send(code, record, BRMGR_FLAG_INPUT), error);
    EXPECT_EQ(lastCommand().reason, reason);
    EXPECT_EQ(dump(), before);
  }

  static std::string Dump(const MacPorts& addresses) {
    std::string text = ";";
    for (const auto& [key, uni] : addresses) {
      text += " " + FormatMac(key.mac) + "/" + std::to_string(key.vid) + "=" + std::to_string(uni);
    }
    return text;
  }

  /// Everything that the tables hold, as text.
  [[nodiscard]] std::string dump() const {
    const MacTables& tables = device_.macTables();
    std::string text;
    for (const auto& [key, entry] : tables.entries) {
      text += " " + FormatMac(key.mac) + "/" + std::to_string(key.vid) + "=" +
              std::to_string(entry.uni) + (entry.type == kMacEntryStatic ? "s" : "d");
    }
    return text + Dump(tables.filters) + Dump(tables.binds);
  }
};

TEST_F(MacCommandsTest, Entries_AreKeptByAddressAndVlan) {
  expectDone(BRMGR_CMD_MAC_STATIC_ADD, Entry(kLow, 5, 1));
  expectDone(BRMGR_CMD_MAC_DYNAMIC_ADD, Entry(kLow, 6, 4));
  EXPECT_EQ(dump(), " 02:00:00:00:00:01/5=1s 02:00:00:00:00:01/6=4d;;");
  expectDone(BRMGR_CMD_MAC_STATIC_ADD, Entry(kLow, 6, 2));
  EXPECT_EQ(dump(), " 02:00:00:00:00:01/5=1s 02:00:00:00:00:01/6=2s;;") << "added anew";
}

TEST_F(MacCommandsTest, Entries_AreDeletedByTheCommandOfTheirKind) {
  expectDone(BRMGR_CMD_MAC_STATIC_ADD, Entry(kLow, 5, 1));
  expectDone(BRMGR_CMD_MAC_DYNAMIC_ADD, Entry(kLow, 6, 1));
  expectRefusal(BRMGR_CMD_MAC_DYNAMIC_DEL, Entry(kLow, 5, 1), ENOENT,
                "no dynamic entry of 02:00:00:00:00:01 in VLAN 5");
  expectRefusal(BRMGR_CMD_MAC_STATIC_DEL, Entry(kLow, 6, 1), ENOENT,
                "no static entry of 02:00:00:00:00:01 in VLAN 6");
  expectRefusal(BRMGR_CMD_MAC_STATIC_DEL, Entry(kHigh, 5, 1), ENOENT,
                "no static entry of fe:00:00:00:00:00 in VLAN 5");
  expectDone(BRMGR_CMD_MAC_STATIC_DEL, Entry(kLow, 5, 2));
  expectDone(BRMGR_CMD_MAC_DYNAMIC_DEL, Entry(kLow, 6, 1));
  EXPECT_EQ(dump(), ";;");
}

TEST_F(MacCommandsTest, Entries_TableFull_IsRefusedButAKnownOneIsNot) {
  for (std::uint16_t vid = 1; vid <= kLimits.macEntries; ++vid) {
    expectDone(BRMGR_CMD_MAC_DYNAMIC_ADD, Entry(kLow, vid, 1));
  }
  expectRefusal(BRMGR_CMD_MAC_STATIC_ADD, Entry(kHigh, 1, 1), ENOSPC,
                "all 3 MAC table entries are in use");
  expectDone(BRMGR_CMD_MAC_STATIC_ADD, Entry(kLow, 2, 4));
}

TEST_F(MacCommandsTest, FiltersAndBinds_AreListsOfTheirOwn) {
  expectDone(BRMGR_CMD_MAC_FILTER_ADD, Filter(kLow, 5, 1));
  expectDone(BRMGR_CMD_MAC_BIND_ADD, Filter(kHigh, 6, 2));
  expectDone(BRMGR_CMD_MAC_BIND_ADD, Filter(kHigh, 6, 3));
  EXPECT_EQ(dump(), "; 02:00:00:00:00:01/5=1; fe:00:00:00:00:00/6=3");
  expectRefusal(BRMGR_CMD_MAC_FILTER_DEL, Filter(kHigh, 6, 3), ENOENT,
                "fe:00:00:00:00:00 in VLAN 6 is not in the list");
  expectRefusal(BRMGR_CMD_MAC_BIND_DEL, Filter(kLow, 5, 1), ENOENT,
                "02:00:00:00:00:01 in VLAN 5 is not in the list");
  expectDone(BRMGR_CMD_MAC_FILTER_DEL, Filter(kLow, 5, 1));
  expectDone(BRMGR_CMD_MAC_BIND_DEL, Filter(kHigh, 6, 3));
  EXPECT_EQ(dump(), ";;");
}

TEST_F(MacCommandsTest, PortOrVidOutOfRange_IsRefused) {
  for (const std::uint32_t port : {0U, 5U, 0xFFFFFFFFU}) {
    const std::string reason = "UNI port " + std::to_string(port) + " is none of 1 to 4";
    expectRefusal(BRMGR_CMD_MAC_STATIC_ADD, Entry(kLow, 5, port), EINVAL, reason);
    expectRefusal(BRMGR_CMD_MAC_DYNAMIC_ADD, Entry(kLow, 5, port), EINVAL, reason);
    expectRefusal(BRMGR_CMD_MAC_FILTER_ADD, Filter(kLow, 5, port), EINVAL, reason);
    expectRefusal(BRMGR_CMD_MAC_BIND_ADD, Filter(kLow, 5, port), EINVAL, reason);
  }
  expectRefusal(BRMGR_CMD_MAC_STATIC_ADD, Entry(kLow, 4096, 1), EINVAL, "VID 4096 is above 4095");
  expectRefusal(BRMGR_CMD_MAC_BIND_ADD, Filter(kLow, 0xFFFF, 1), EINVAL, "VID 65535 is above 4095");
  expectDone(BRMGR_CMD_MAC_STATIC_ADD, Entry(kLow, 4095, 4));
}

TEST_F(MacCommandsTest, GetNext_ReturnsTheEntryWithTheNextHigherAddress) {
  expectDone(BRMGR_CMD_MAC_DYNAMIC_ADD, Entry(kHigh, 7, 1));
  expectDone(BRMGR_CMD_MAC_STATIC_ADD, Entry(kLow, 6, 2));
  expectDone(BRMGR_CMD_MAC_DYNAMIC_ADD, Entry(kMiddle, 4095, 3));
  MacEntryRecord record = {};
  MacEntryRecord expected = Entry(kLow, 6, 2);
  expected.entryType = kMacEntryStatic;
  EXPECT_EQ(send(BRMGR_CMD_MAC_GET_NEXT, record), 0);
  EXPECT_EQ(BytesOf(record), BytesOf(expected));
  EXPECT_EQ(send(BRMGR_CMD_MAC_GET_NEXT, record), 0);
  EXPECT_EQ(BytesOf(record), BytesOf(Entry(kMiddle, 4095, 3)));
  EXPECT_EQ(send(BRMGR_CMD_MAC_GET_NEXT, record), 0);
  EXPECT_EQ(BytesOf(record), BytesOf(Entry(kHigh, 7, 1)));
  EXPECT_EQ(send(BRMGR_CMD_MAC_GET_NEXT, record), ENOENT);
  EXPECT_EQ(lastCommand().reason, "no entry after fe:00:00:00:00:00");
  EXPECT_EQ(BytesOf(record), BytesOf(Entry(kHigh, 7, 1)));
}

TEST_F(MacCommandsTest, GetNext_AddressInSeveralVlans_ReturnsTheLowest) {
  expectDone(BRMGR_CMD_MAC_DYNAMIC_ADD, Entry(kLow, 8, 1));
  expectDone(BRMGR_CMD_MAC_DYNAMIC_ADD, Entry(kLow, 7, 2));
  MacEntryRecord record = {};
  EXPECT_EQ(send(BRMGR_CMD_MAC_GET_NEXT, record), 0);
  EXPECT_EQ(BytesOf(record), BytesOf(Entry(kLow, 7, 2)));
  EXPECT_EQ(send(BRMGR_CMD_MAC_GET_NEXT, record), ENOENT);
}

TEST_F(MacCommandsTest, GetNext_ShowsLearnedEntriesToo_AndNoneThatAged) {
  expectDone(BRMGR_CMD_MAC_STATIC_ADD, Entry(kMiddle, 6, 2));
  clock_.advance(1000);
  device_.macTables().entries[{kHigh, 7}] = {0, kMacEntryDynamic, 1000};
  device_.macTables().entries[{kLow, 7}] = {3, kMacEntryDynamic, 0};
  clock_.advance(299'000);
  MacEntryRecord record = {};
  MacEntryRecord expected = Entry(kMiddle, 6, 2);
  expected.entryType = kMacEntryStatic;
  EXPECT_EQ(send(BRMGR_CMD_MAC_GET_NEXT, record), 0);
  EXPECT_EQ(BytesOf(record), BytesOf(expected)) << "the lower one was heard 300 s ago";
  EXPECT_EQ(send(BRMGR_CMD_MAC_GET_NEXT, record), 0);
  EXPECT_EQ(BytesOf(record), BytesOf(Entry(kHigh, 7, 0))) << "the WAN side";
  clock_.advance(1000);
  record = {};
  EXPECT_EQ(send(BRMGR_CMD_MAC_GET_NEXT, record), 0);
  EXPECT_EQ(send(BRMGR_CMD_MAC_GET_NEXT, record), ENOENT);
}

TEST_F(MacCommandsTest, LearnedEntry_IsDeletedAsADynamicOne) {
  device_.macTables().entries[{kLow, 7}] = {3, kMacEntryDynamic, 0};
  expectRefusal(BRMGR_CMD_MAC_STATIC_DEL, Entry(kLow, 7, 3), ENOENT,
                "no static entry of 02:00:00:00:00:01 in VLAN 7");
  expectDone(BRMGR_CMD_MAC_DYNAMIC_DEL, Entry(kLow, 7, 3));
  EXPECT_EQ(dump(), ";;");
  device_.macTables().entries[{kLow, 7}] = {3, kMacEntryDynamic, 0};
  clock_.advance(300'000);
  MacEntryRecord record = Entry(kLow, 7, 3);
  EXPECT_EQ(send(BRMGR_CMD_MAC_DYNAMIC_DEL, record, BRMGR_FLAG_INPUT), ENOENT) << "aged";
}

TEST_F(MacCommandsTest, DynamicEntry_IsAsIfItsAddressHadJustBeenHeard) {
  clock_.advance(5000);
  expectDone(BRMGR_CMD_MAC_DYNAMIC_ADD, Entry(kLow, 7, 3));
  clock_.advance(299'999);
  MacEntryRecord record = {};
  EXPECT_EQ(send(BRMGR_CMD_MAC_GET_NEXT, record), 0);
  clock_.advance(1);
  record = {};
  EXPECT_EQ(send(BRMGR_CMD_MAC_GET_NEXT, record), ENOENT);
}

TEST_F(MacCommandsTest, Entries_AgedOnesMakeRoom) {
  for (std::uint16_t vid = 1; vid <= kLimits.macEntries; ++vid) {
    expectDone(BRMGR_CMD_MAC_DYNAMIC_ADD, Entry(kLow, vid, 1));
  }
  clock_.advance(300'000);
  expectDone(BRMGR_CMD_MAC_STATIC_ADD, Entry(kHigh, 1, 1));
  EXPECT_EQ(dump(), " fe:00:00:00:00:00/1=1s;;");
}

TEST_F(MacCommandsTest, LearnCommand_ClearsTheDynamicEntriesAlone) {
  for (const std::uint32_t value : {0U, 1U, 7U}) {
    expectDone(BRMGR_CMD_MAC_STATIC_ADD, Entry(kLow, 5, 1));
    expectDone(BRMGR_CMD_MAC_DYNAMIC_ADD, Entry(kLow, 6, 1));
    expectDone(BRMGR_CMD_MAC_FILTER_ADD, Filter(kLow, 5, 1));
    expectDone(BRMGR_CMD_MAC_BIND_ADD, Filter(kHigh, 6, 2));
    expectDone(BRMGR_CMD_MAC_LEARN, MacLearnRecord{value});
    EXPECT_EQ(dump(), " 02:00:00:00:00:01/5=1s; 02:00:00:00:00:01/5=1; fe:00:00:00:00:00/6=2");
    EXPECT_EQ(device_.portTables().macLearn, value);
  }
}

TEST_F(MacCommandsTest, Aging_IsKept) {
  EXPECT_FALSE(device_.macTables().ageTime);
  EXPECT_EQ(device_.macTables().agingTime(), 300);
  expectDone(BRMGR_CMD_MAC_AGING, MacAgingRecord{10});
  EXPECT_EQ(device_.macTables().ageTime, 10);
  EXPECT_EQ(device_.macTables().agingTime(), 10);
  expectDone(BRMGR_CMD_MAC_AGING, MacAgingRecord{0});
  EXPECT_EQ(device_.macTables().agingTime(), std::nullopt);
}

TEST_F(MacCommandsTest, Aging_IsTheDriversWithFeatureValue1Alone) {
  for (const std::uint32_t value : {0U, 2U}) {
    expectDone(BRMGR_CMD_FEATURE, FeatureRecord{value});
    EXPECT_EQ(device_.macTables().agingTime(), std::nullopt) << value;
  }
  expectDone(BRMGR_CMD_FEATURE, FeatureRecord{1});
  EXPECT_EQ(device_.macTables().agingTime(), 300);
}

TEST_F(MacCommandsTest, ShortRecord_IsRefused) {
  struct Row {
    std::uint32_t code;
    std::uint32_t size;
  };
  constexpr std::array<Row, 10> kRows = {{{73, 24},
                                          {77, 20},
                                          {78, 20},
                                          {79, 20},
                                          {80, 20},
                                          {81, 24},
                                          {82, 24},
                                          {83, 24},
                                          {84, 24},
                                          {131, 2}}};
  std::array<std::uint8_t, 24> record = {};
  for (const Row& row : kRows) {
    EXPECT_EQ(request(row.code, record.data(), row.size - 1, BRMGR_FLAG_INPUT), EINVAL) << row.code;
    EXPECT_EQ(lastCommand().reason, "short record");
  }
  EXPECT_EQ(dump(), ";;");
  EXPECT_FALSE(device_.macTables().ageTime);
}

}  // namespace
}  // namespace virtual_onu
