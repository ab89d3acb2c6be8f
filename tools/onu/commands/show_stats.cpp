/// @file
/// The command that lists the counters of the UNI ports as the library returns them, and their rates
/// by the second.
#include <array>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <bcm6838x_port.h>

#include "commands/command_rows.h"
#include "language/failure.h"
#include "report/report_table.h"
#include "session/port_argument.h"
#include "session/session.h"
#include "session/ticker.h"

namespace onu {

namespace {

using virtual_onu::PortId;

/// A counter as a getter returns it; nothing when it fails.
using Reading = std::optional<std::uint64_t>;

template <auto getter>
Reading Read32(std::uint32_t uni) {
  std::uint32_t value = 0;
  return getter(uni, &value) == BCM6838X_OK ? Reading(value) : std::nullopt;
}

template <auto getter>
Reading Read64(std::uint32_t uni) {
  constexpr unsigned kWordBits = 32;
  Counter64 value = {};
  return getter(uni, &value) == BCM6838X_OK
             ? Reading((std::uint64_t{value.high} << kWordBits) | value.low)
             : std::nullopt;
}

#define OCTETS(name) Read64<BCM6838X_GetPortStatistics##name>
#define FRAMES(name) Read32<BCM6838X_GetPortStatistics##name>
/// Each counter of a UNI port.
const Columns<std::uint32_t> kCounters = {
    {"port", "counter", [](std::uint32_t uni) { return PortId::Uni(uni).name(); }},
    {"rxOctets", "received octets", OCTETS(RxOctets)},
    {"rxUnicast", "received unicast", FRAMES(RxUnicastPackets)},
    {"rxMulticast", "received multicast", FRAMES(RxMulticastPackets)},
    {"rxBroadcast", "received broadcast", FRAMES(RxBroadcastPackets)},
    {"rxErrors", "receive errors", FRAMES(RxErrorPackets)},
    {"rxDiscards", "receive discards", FRAMES(RxDiscardPackets)},
    {"rx64", "received of 64", FRAMES(Rx64Octets)},
    {"rx65to127", "received of 65-127", FRAMES(Rx65to127Octets)},
    {"rx128to255", "received of 128-255", FRAMES(Rx128to255Octets)},
    {"rx256to511", "received of 256-511", FRAMES(Rx256to511Octets)},
    {"rx512to1023", "received of 512-1023", FRAMES(Rx512to1023Octets)},
    {"rx1024to1518", "received of 1024-1518", FRAMES(Rx1024to1518Octets)},
    {"txOctets", "transmitted octets", OCTETS(TxOctets)},
    {"txUnicast", "transmitted unicast", FRAMES(TxUnicastPackets)},
    {"txMulticast", "transmitted multicast", FRAMES(TxMulticastPackets)},
    {"txBroadcast", "transmitted broadcast", FRAMES(TxBroadcastPackets)},
    {"txErrors", "transmit errors", FRAMES(TxErrorPackets)},
    {"txDiscards", "transmit discards", FRAMES(TxDiscardPackets)},
    {"tx64", "transmitted of 64", FRAMES(Tx64Octets)},
    {"tx65to127", "transmitted of 65-127", FRAMES(Tx65to127Octets)},
    {"tx128to255", "transmitted of 128-255", FRAMES(Tx128to255Octets)},
    {"tx256to511", "transmitted of 256-511", FRAMES(Tx256to511Octets)},
    {"tx512to1023", "transmitted of 512-1023", FRAMES(Tx512to1023Octets)},
    {"tx1024to1518", "transmitted of 1024-1518", FRAMES(Tx1024to1518Octets)},
};
#undef OCTETS
#undef FRAMES

/// The port of the argument N, or all ports.
std::vector<std::uint32_t> PortsOf(Session& session, const Arguments& arguments) {
  if (arguments.has("N")) {
    return {UniNumberArgument(session, arguments)};
  }
  std::vector<std::uint32_t> ports;
  for (std::uint32_t uni = 1; uni <= session.unit().dataPath().uniPorts(); ++uni) {
    ports.push_back(uni);
  }
  return ports;
}

/// The words that do the same again.
Words WordsOf(const Arguments& arguments) {
  Words words = {"show", "stats"};
  if (arguments.has("N")) {
    words.push_back(arguments.word("N"));
  }
  return words;
}

std::string RateText(double rate) {
  std::array<char, 32> text = {};
  std::snprintf(text.data(), text.size(), "%.1f", rate);
  return text.data();
}

std::string RatesText(std::uint64_t now, PortId port, const PortRates& rates) {
  constexpr double kMilliseconds = 1000;
  return RateText(static_cast<double>(now) / kMilliseconds) + " s " + port.name() + ": in " +
         RateText(rates.rxFrames) + " frames/s " + RateText(rates.rxOctets) + " octets/s " +
         RateText(rates.rxDiscards) + " discards/s " + RateText(rates.rxErrors) +
         " errors/s, out " + RateText(rates.txFrames) + " frames/s " + RateText(rates.txOctets) +
         " octets/s " + RateText(rates.txDiscards) + " discards/s\n";
}

/// One line of a watch: the rates of every port in the second that passed.
Result ReadRates(Session& session, const std::vector<std::uint32_t>& ports) {
  const std::uint64_t now = session.unit().clock().milliseconds();
  const auto held = session.unit().hold();
  const auto report = [&](std::uint32_t uni) -> Result {
    const PortRates rates = session.rates().read(uni, now, session.unit().device().counters(uni));
    return {{{"port", PortId::Uni(uni).name()},
             {"rxFrames", rates.rxFrames},
             {"rxOctets", rates.rxOctets},
             {"rxDiscards", rates.rxDiscards},
             {"rxErrors", rates.rxErrors},
             {"txFrames", rates.txFrames},
             {"txOctets", rates.txOctets},
             {"txDiscards", rates.txDiscards}},
            RatesText(now, PortId::Uni(uni), rates)};
  };
  return Result().add("milliseconds", now).add("rates", Listed(ports, report));
}

/// Prints the rates of each second that passes, until there are `count` of them.
Result Watch(Session& session, const Arguments& arguments) {
  constexpr std::uint64_t kSecond = 1000;
  const std::optional<std::uint32_t> count = arguments.optionalNumber("COUNT");
  const std::unique_ptr<Ticker> ticker = session.makeTicker();
  if (!count && !ticker) {
    throw WrongUse("expected --count with --watch, since nobody is at the prompt to end it");
  }
  const std::vector<std::uint32_t> ports = PortsOf(session, arguments);
  std::uint32_t seconds = 0;
  while ((!count || seconds < *count) && (!ticker || ticker->second())) {
    session.unit().clock().advance(kSecond);
    session.print("show stats", ReadRates(session, ports));
    ++seconds;
  }
  Words words = WordsOf(arguments);
  words.insert(words.end(), {"--watch", "--count", std::to_string(seconds)});
  session.noteChange(words);
  return {{{"seconds", seconds}}, ""};
}

Result ShowStats(Session& session, const Arguments& arguments) {
  if (arguments.has("WATCH")) {
    return Watch(session, arguments);
  }
  if (arguments.has("COUNT")) {
    throw WrongUse("--count: expected --watch with it");
  }
  const Table table(kCounters, PortsOf(session, arguments), Layout::Turned);
  session.noteChange(WordsOf(arguments));
  return Result().add("stats", table);
}

}  // namespace

const Command kShowStats = {
    {"show stats",
     {{"N", ArgumentType::Number, "only UNI port N, from 1", Presence::Optional},
      {"WATCH", ArgumentType::Flag,
       "the rates of the chip's counters instead, by the second of the unit's time: "
       "first those since the last watch, or since the start of the unit; "
       "a second passes with each line, and at the prompt it lasts a second, until Ctrl-C",
       Presence::Optional, "--watch"},
      {"COUNT", ArgumentType::Number, "ends the watch after so many lines", Presence::Optional,
       "--count"}},
     "lists the counters of the UNI ports since the last clear, as the library returns them; "
     "that takes a command for each",
     {"Init\nSetPortAdminState 1 1\nsend uni1 tests/data/stp.pcap\nshow stats",
      "Init\nSetPortAdminState 1 1\nsend uni1 tests/data/stp.pcap\n"
      "show stats 1 --watch --count 2"}},
    ShowStats,
    true};

}  // namespace onu
