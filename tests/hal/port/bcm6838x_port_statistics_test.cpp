/// @file
/// Tests of the port counters: which words of the record each getter reads, the baseline of a
/// clear, the table of all ports, ports out of range, refusals.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <vector>

#include <bcm6838x_port.h>
#include <brmgr_record.h>
#include <hal_bcm6838x.h>

#include "support/library_test.h"
#include "support/refusal.h"
#include "support/wire_record.h"

namespace hal_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t kPorts = 4;
constexpr std::size_t kWords = 54;
constexpr std::size_t kEntryWords = 28;
using Words = std::array<std::uint32_t, kWords>;
using EntryWords = std::array<std::uint32_t, kEntryWords>;

const std::string kPlace = " hal/switch/bcm6838x/src/bcm6838x_port_statistics.cpp ";

/// A counter as it was read, in 64 bits.
using Read = std::function<std::uint32_t(std::uint32_t port, std::uint64_t& value)>;

Read ReadWith(std::uint32_t (*getter)(std::uint32_t, std::uint32_t*)) {
  return [getter](std::uint32_t port, std::uint64_t& value) {
    auto low = static_cast<std::uint32_t>(value);
    const std::uint32_t result = getter(port, &low);
    value = low;
    return result;
  };
}

Read ReadWith(std::uint32_t (*getter)(std::uint32_t, Counter64*)) {
  return [getter](std::uint32_t port, std::uint64_t& value) {
    Counter64 counter = {static_cast<std::uint32_t>(value >> 32U),
                         static_cast<std::uint32_t>(value)};
    const std::uint32_t result = getter(port, &counter);
    value = (std::uint64_t{counter.high} << 32U) | counter.low;
    return result;
  };
}

struct Getter {
  std::string name;     ///< behind "BCM6838X_GetPortStatistics"
  std::string logName;  ///< in the log line
  std::vector<std::size_t> words;
  Read read;
  bool octets = false;
};

#define GETTER(name) #name, ReadWith(BCM6838X_GetPortStatistics##name)
Getter MakeGetter(std::string name, Read read, std::string logName, std::vector<std::size_t> words,
                  bool octets = false) {
  return {std::move(name), std::move(logName), std::move(words), std::move(read), octets};
}

const std::vector<Getter> kGetters = {
    MakeGetter(GETTER(RxOctets), "RxOctets", {1}, true),
    MakeGetter(GETTER(RxUnicastPackets), "RxUnicast", {12}),
    MakeGetter(GETTER(RxMulticastPackets), "RxMulticast", {10}),
    MakeGetter(GETTER(RxBroadcastPackets), "RxBroadcast", {11}),
    MakeGetter(GETTER(RxErrorPackets), "RxErrorPackets", {23, 17, 24}),
    MakeGetter(GETTER(RxDiscardPackets), "RxDiscard", {17}),
    MakeGetter(GETTER(Rx64Octets), "Rx64Octets", {3}),
    MakeGetter(GETTER(Rx65to127Octets), "Rx65to127Octets", {4}),
    MakeGetter(GETTER(Rx128to255Octets), "Rx128to255Octets", {5}),
    MakeGetter(GETTER(Rx256to511Octets), "Rx256to511Octets", {6}),
    MakeGetter(GETTER(Rx512to1023Octets), "Rx512to1023Octets", {7}),
    MakeGetter(GETTER(Rx1024to1518Octets), "Rx1024to1518Octets", {8}),
    MakeGetter(GETTER(TxOctets), "TxOctet", {26}, true),
    MakeGetter(GETTER(TxUnicastPackets), "TxUnicast", {38}),
    MakeGetter(GETTER(TxMulticastPackets), "TxMulticast", {36}),
    MakeGetter(GETTER(TxBroadcastPackets), "TxBroadcast", {37}),
    MakeGetter(GETTER(TxErrorPackets), "TxErrorPackets", {51, 35, 47}),
    MakeGetter(GETTER(TxDiscardPackets), "TxDiscard", {35}),
    MakeGetter(GETTER(Tx64Octets), "Tx64Octets", {28}),
    MakeGetter(GETTER(Tx65to127Octets), "Tx65to127Octets", {29}),
    MakeGetter(GETTER(Tx128to255Octets), "Tx128to255Octets", {30}),
    MakeGetter(GETTER(Tx256to511Octets), "Tx256to511Octets", {31}),
    MakeGetter(GETTER(Tx512to1023Octets), "Tx512to1023Octets", {32}),
    MakeGetter(GETTER(Tx1024to1518Octets), "Tx1024to1518Octets", {33}),
};
#undef GETTER

TEST(PortStatistics, EveryCounter_IsTested) {
  std::vector<std::string> listed;
#define NOTE_COUNTER(name, ...) listed.emplace_back(#name);
  BCM6838X_COUNTER_LIST(NOTE_COUNTER)
#undef NOTE_COUNTER
  std::vector<std::string> tested;
  std::ranges::transform(kGetters, std::back_inserter(tested), &Getter::name);
  EXPECT_EQ(listed.size(), 24U);
  EXPECT_EQ(tested, listed);
}

/// A value that no other word of the unit has, and that no sum of words has by chance.
std::uint32_t Unique(std::uint32_t uni, std::size_t word) {
  return 0x01000000 * uni + 0x101 * static_cast<std::uint32_t>(word * word) + 7;
}

std::uint32_t SumOf(const Getter& getter, const Words& words) {
  std::uint32_t sum = 0;
  for (const std::size_t word : getter.words) {
    sum += words.at(word);
  }
  return sum;
}

std::string ReadSent(std::uint32_t port) {
  return Sent("PORT_STATS", 1, WireRecord(216).u32(0, port));
}

class PortStatisticsTest : public LibraryTest {
 protected:
  void SetUp() override {
    ASSERT_EQ(BCM6838X_InitDrv(), 0U);
    for (std::uint32_t uni = 1; uni <= kPorts; ++uni) {
      setWords(uni, uniqueWords(uni));
    }
    forget();
  }

  static Words uniqueWords(std::uint32_t uni) {
    Words words = {};
    for (std::size_t word = 1; word < kWords; ++word) {
      words.at(word) = Unique(uni, word);
    }
    return words;
  }

  void setWords(std::uint32_t uni, const Words& words) {
    static_assert(sizeof(words) == sizeof(PortStatsRecord));
    std::memcpy(&unit.device().counters(uni), words.data(), sizeof(words));
  }

  /// Reads every counter of a port and compares it with the difference of two sets of words.
  static void expectDifferences(std::uint32_t uni, const Words& now, const Words& then) {
    int reads = 0;
    for (const Getter& getter : kGetters) {
      std::uint64_t expected = std::uint64_t{SumOf(getter, now)} - SumOf(getter, then);
      expected = getter.octets ? expected : static_cast<std::uint32_t>(expected);
      std::uint64_t value = 0xDEAD;
      EXPECT_EQ(getter.read(uni, value), 0U) << getter.name;
      EXPECT_EQ(value, expected) << getter.name << " of port " << uni;
      ++reads;
    }
    EXPECT_EQ(reads, 24);
  }
};

TEST_F(PortStatisticsTest, Getters_EachReadsItsOwnWordsOfItsPort) {
  for (std::uint32_t uni = 1; uni <= kPorts; ++uni) {
    expectDifferences(uni, uniqueWords(uni), {});
  }
}

TEST_F(PortStatisticsTest, Getters_OneCommandEachWithThePortFromOne) {
  for (const Getter& getter : kGetters) {
    forget();
    std::uint64_t value = 0;
    EXPECT_EQ(getter.read(0xFFFFFF03, value), 0U);
    EXPECT_THAT(left(), ElementsAre(ReadSent(3))) << getter.name;
  }
}

TEST_F(PortStatisticsTest, Getters_PortOutOfRange_AreInvalidAndSendNothing) {
  int reads = 0;
  for (const std::uint32_t port : {0U, kPorts + 1, 255U, 256U}) {
    for (const Getter& getter : kGetters) {
      std::uint64_t value = 0xDEAD;
      EXPECT_EQ(getter.read(port, value), 2U) << getter.name << " " << port;
      EXPECT_EQ(value, 0xDEADU) << getter.name;
      ++reads;
    }
  }
  EXPECT_EQ(reads, 4 * 24);
  EXPECT_THAT(left(), IsEmpty());
}

TEST_F(PortStatisticsTest, Getters_MorePortsThanThereAreSlots_AreInvalidAbove) {
  unit.platform().config().ethPorts = 200;
  std::uint32_t value = 0xDEAD;
  EXPECT_EQ(BCM6838X_GetPortStatisticsRx64Octets(33, &value), 2U);
  EXPECT_THAT(left(), IsEmpty());
  EXPECT_EQ(BCM6838X_GetPortStatisticsRx64Octets(32, &value), 1U) << "the chip has no such port";
  EXPECT_THAT(commands(), ElementsAre(ReadSent(32)));
  EXPECT_EQ(value, 0xDEADU);
}

// Required: log-txoctet
TEST_F(PortStatisticsTest, Getters_CommandFails_LogAndLeaveTheResult) {
  unit.device().faults().refuseFrom(1);
  for (const Getter& getter : kGetters) {
    forget();
    std::uint64_t value = 0x12345678;
    EXPECT_EQ(getter.read(2, value), 1U) << getter.name;
    EXPECT_EQ(value, 0x12345678U) << getter.name;
    EXPECT_EQ(left().back(), "log 1" + kPlace + "BCM6838X_GetPortStatistics" + getter.name +
                                 " :<line>, Get Port Statistics " + getter.logName + " Error!\r\n");
    EXPECT_EQ(logLines().size(), 2U) << "the channel's line, and the getter's";
  }
}

TEST_F(PortStatisticsTest, Getters_Null_LogAndSendNothing) {
  EXPECT_EQ(BCM6838X_GetPortStatisticsRxOctets(1, nullptr), 2U);
  EXPECT_EQ(BCM6838X_GetPortStatisticsTx64Octets(1, nullptr), 2U);
  EXPECT_THAT(
      left(),
      ElementsAre(
          "log 4" + kPlace + "BCM6838X_GetPortStatisticsRxOctets(<line>), null pointer\r\n",
          "log 4" + kPlace + "BCM6838X_GetPortStatisticsTx64Octets(<line>), null pointer\r\n"));
}

TEST_F(PortStatisticsTest, Clear_EveryGetterOfThePortReadsZeroFromThere) {
  EXPECT_EQ(BCM6838X_SetPortStatisticsClear(1), 0U);
  EXPECT_THAT(left(), ElementsAre(ReadSent(0))) << "the slot's own first word, zero so far";
  expectDifferences(1, uniqueWords(1), uniqueWords(1));
  expectDifferences(2, uniqueWords(2), {});
}

// Required: clear-sends-its-slot
TEST_F(PortStatisticsTest, Clear_TheSlotItselfIsTheRequest) {
  Words words = uniqueWords(1);
  words[0] = 3;
  setWords(1, words);
  EXPECT_EQ(BCM6838X_SetPortStatisticsClear(2), 0U);
  EXPECT_THAT(commands(), ElementsAre(ReadSent(0)));
  forget();

  // The driver answers with another port's word, and the whole slot is sent the next time.
  EXPECT_EQ(BCM6838X_SetPortStatisticsClear(0x102), 0U);
  WireRecord slot(216);
  for (std::size_t word = 0; word < kWords; ++word) {
    slot.u32(4 * word, words.at(word));
  }
  EXPECT_THAT(left(), ElementsAre(Sent("PORT_STATS", 1, slot)));
  expectDifferences(2, uniqueWords(2), uniqueWords(3));
}

TEST_F(PortStatisticsTest, Clear_CountersThatGoOn_AreShownFromTheLastClear) {
  BCM6838X_SetPortStatisticsClear(1);
  Words later = uniqueWords(1);
  for (std::size_t word = 1; word < kWords; ++word) {
    later.at(word) += static_cast<std::uint32_t>(1000 + word);
  }
  setWords(1, later);
  expectDifferences(1, later, uniqueWords(1));
  BCM6838X_SetPortStatisticsClear(1);
  expectDifferences(1, later, later);
}

// Required: octets-borrow
TEST_F(PortStatisticsTest, Clear_CountersBelowTheBaseline_WrapAndTheOctetsBorrow) {
  BCM6838X_SetPortStatisticsClear(1);
  Words reset = {};
  for (std::size_t word = 1; word < kWords; ++word) {
    reset.at(word) = static_cast<std::uint32_t>(word);
  }
  setWords(1, reset);
  expectDifferences(1, reset, uniqueWords(1));

  Counter64 octets = {};
  BCM6838X_GetPortStatisticsRxOctets(1, &octets);
  EXPECT_EQ(octets.high, 0xFFFFFFFFU);
  EXPECT_EQ(octets.low, 1 - Unique(1, 1));
}

// Required: errors-include-discards
TEST_F(PortStatisticsTest, ErrorPackets_IncludeTheDiscards) {
  Words words = {};
  words[17] = 5;
  words[35] = 6;
  setWords(4, words);
  std::uint32_t errors = 0;
  EXPECT_EQ(BCM6838X_GetPortStatisticsRxErrorPackets(4, &errors), 0U);
  EXPECT_EQ(errors, 5U);
  EXPECT_EQ(BCM6838X_GetPortStatisticsTxErrorPackets(4, &errors), 0U);
  EXPECT_EQ(errors, 6U);
}

TEST_F(PortStatisticsTest, Clear_DriverRefuses_ReturnsEightAndKeepsTheBaseline) {
  unit.device().faults().refuseNth(1);
  EXPECT_EQ(BCM6838X_SetPortStatisticsClear(1), 8U);
  expectDifferences(1, uniqueWords(1), {});
}

TEST_F(PortStatisticsTest, Clear_PortWithoutASlot_SendsZerosEachTimeAndKeepsNothing) {
  int rounds = 0;
  for (const std::uint32_t port : {0U, 33U, 33U, 255U, 256U}) {
    forget();
    EXPECT_EQ(BCM6838X_SetPortStatisticsClear(port), 0U);
    EXPECT_THAT(left(), ElementsAre(ReadSent(0))) << port;
    ++rounds;
  }
  EXPECT_EQ(rounds, 5);
  for (std::uint32_t uni = 1; uni <= kPorts; ++uni) {
    expectDifferences(uni, uniqueWords(uni), {});
  }
  EXPECT_EQ(BCM6838X_SetPortStatisticsClear(32), 0U) << "more than the unit's ports are kept";
}

TEST_F(PortStatisticsTest, Clear_PortWithoutASlotRefused_ReturnsTheCommandsResult) {
  unit.device().faults().refuseNth(1);
  EXPECT_EQ(BCM6838X_SetPortStatisticsClear(33), 8U);
  EXPECT_THAT(left(), ElementsAre(ReadSent(0), RefusalLogged(95)));
}

/// Entry words and the record words that they add up.
struct EntryRow {
  std::size_t entryWord;
  std::vector<std::size_t> words;
};

const std::vector<EntryRow> kEntryRows = {
    {0, {}},    {1, {1}},   {2, {12}},  {3, {10}},  {4, {11}},  {5, {17, 23, 24}},  {6, {17}},
    {7, {3}},   {8, {4}},   {9, {5}},   {10, {6}},  {11, {7}},  {12, {8}},          {13, {22}},
    {14, {}},   {15, {26}}, {16, {38}}, {17, {36}}, {18, {37}}, {19, {35, 51, 47}}, {20, {35}},
    {21, {28}}, {22, {29}}, {23, {30}}, {24, {31}}, {25, {32}}, {26, {33}},
};

class PortTableTest : public PortStatisticsTest {
 protected:
  static constexpr std::uint32_t kUntouched = 0xA5A5A5A5;

  /// The table as words, one entry more than there are ports.
  static std::vector<EntryWords> readTable() {
    std::vector<EntryWords> words(kPorts + 1);
    for (EntryWords& entry : words) {
      entry.fill(kUntouched);
    }
    std::array<PortStatisticsEntry, kPorts + 1> entries = {};
    static_assert(sizeof(entries) == (kPorts + 1) * sizeof(EntryWords));
    std::memcpy(entries.data(), words.data(), sizeof(entries));
    EXPECT_EQ(BCM6838X_GetPortStatistics(entries.data()), 0U);
    std::memcpy(words.data(), entries.data(), sizeof(entries));
    return words;
  }

  static void expectEntry(const EntryWords& entry, const Words& words) {
    std::size_t rows = 0;
    for (const EntryRow& row : kEntryRows) {
      std::uint32_t sum = 0;
      for (const std::size_t word : row.words) {
        sum += words.at(word);
      }
      EXPECT_EQ(entry.at(row.entryWord), sum) << "entry word " << row.entryWord;
      ++rows;
    }
    EXPECT_EQ(rows, kEntryWords - 1);
    EXPECT_EQ(entry.at(kEntryWords - 1), kUntouched) << "the last word is not written";
  }
};

// Required: statistics-table-index-from-0
TEST_F(PortTableTest, RequestsCountPortsFromZero) {
  readTable();
  EXPECT_THAT(left(), ElementsAre(ReadSent(0), ReadSent(1), ReadSent(2), ReadSent(3)));
}

// Required: statistics-last-word-untouched, statistics-table-is-raw
TEST_F(PortTableTest, EveryEntryHoldsTheRawCountersOfItsAnswer) {
  BCM6838X_SetPortStatisticsClear(1);
  BCM6838X_SetPortStatisticsClear(2);
  const std::vector<EntryWords> table = readTable();
  // The driver takes 0 for the first port and counts the others from 1.
  expectEntry(table[0], uniqueWords(1));
  expectEntry(table[1], uniqueWords(1));
  expectEntry(table[2], uniqueWords(2));
  expectEntry(table[3], uniqueWords(3));
  EntryWords untouched;
  untouched.fill(kUntouched);
  EXPECT_EQ(table[4], untouched) << "behind the last port";
}

TEST_F(PortTableTest, EachCommandFailingInTurn_LeavesZerosInItsEntryAlone) {
  std::uint32_t rounds = 0;
  for (std::uint32_t nth = 1; nth <= kPorts; ++nth, ++rounds) {
    unit.device().faults().clear();
    unit.device().faults().refuseNth(nth);
    forget();
    const std::vector<EntryWords> table = readTable();
    EXPECT_EQ(commands().size(), kPorts);
    for (std::uint32_t i = 0; i < kPorts; ++i) {
      expectEntry(table[i], i + 1 == nth ? Words() : uniqueWords(i == 0 ? 1 : i));
    }
  }
  EXPECT_EQ(rounds, kPorts);
}

TEST_F(PortTableTest, NoPort_ReadsNothing) {
  unit.platform().config().ethPorts = 0;
  readTable();
  EXPECT_THAT(left(), IsEmpty());
}

TEST_F(PortTableTest, Null_IsLoggedReturnsZeroAndSendsNothing) {
  EXPECT_EQ(BCM6838X_GetPortStatistics(nullptr), 0U);
  EXPECT_THAT(left(), ElementsAre("log 4" + kPlace +
                                  "BCM6838X_GetPortStatistics(<line>), null pointer\r\n"));
}

TEST_F(PortStatisticsTest, InitAndSync_DoNothing) {
  BCM6838X_SetPortStatisticsClear(1);
  forget();
  EXPECT_EQ(BCM6838X_SetPortStatisticsInit(), 0U);
  EXPECT_EQ(BCM6838X_SetPortStatisticsSync(), 0U);
  EXPECT_THAT(left(), IsEmpty());
  expectDifferences(1, uniqueWords(1), uniqueWords(1));
}

class PortStatisticsClosedTest : public LibraryTest {};

TEST_F(PortStatisticsClosedTest, DeviceNotOpen_GettersFailAndTheClearSaysSo) {
  std::uint32_t value = 0xDEAD;
  EXPECT_EQ(BCM6838X_GetPortStatisticsTxUnicastPackets(1, &value), 1U);
  EXPECT_EQ(value, 0xDEADU);
  EXPECT_EQ(BCM6838X_SetPortStatisticsClear(1), 10U);
  EXPECT_EQ(BCM6838X_SetPortStatisticsClear(0), 10U);
}

}  // namespace
}  // namespace hal_test
