/// @file
/// The command that tells the unit's time and moves it on.
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/text.h"
#include "commands/command_rows.h"
#include "language/failure.h"
#include "session/session.h"

namespace onu {

namespace {

constexpr std::uint32_t kMillisecondsPerSecond = 1000;
constexpr std::size_t kDecimals = 3;

/// A year: what is longer is most likely a mistake.
constexpr std::uint32_t kMostSeconds = 365 * 24 * 60 * 60;

/// The milliseconds of "+SECONDS" with up to three decimals.
std::optional<std::uint64_t> ReadStep(std::string_view word) {
  if (!word.starts_with('+')) {
    return std::nullopt;
  }
  word.remove_prefix(1);
  const std::size_t point = word.find('.');
  std::string decimals(point == std::string_view::npos ? "0" : word.substr(point + 1));
  const auto seconds = virtual_onu::ParseDecimal(word.substr(0, point), kMostSeconds);
  if (!seconds || decimals.empty() || decimals.size() > kDecimals) {
    return std::nullopt;
  }
  decimals.resize(kDecimals, '0');
  const auto fraction = virtual_onu::ParseDecimal(decimals, kMillisecondsPerSecond - 1);
  return fraction ? std::optional(std::uint64_t{*seconds} * kMillisecondsPerSecond + *fraction)
                  : std::nullopt;
}

/// "12.345 s".
std::string TimeText(std::uint64_t milliseconds) {
  const std::string rest = std::to_string(milliseconds % kMillisecondsPerSecond);
  return std::to_string(milliseconds / kMillisecondsPerSecond) + "." +
         std::string(kDecimals - rest.size(), '0') + rest + " s";
}

Result MoveClock(Session& session, const Arguments& arguments) {
  constexpr std::string_view kStep = "+SECONDS";
  virtual_onu::Clock& clock = session.unit().clock();
  if (arguments.has(kStep)) {
    const std::string& word = arguments.word(kStep);
    const std::optional<std::uint64_t> step = ReadStep(word);
    if (!step) {
      throw WrongUse("+SECONDS: expected + and a number of seconds up to " +
                     std::to_string(kMostSeconds) + " such as +300 or +0.5, got " + Quote(word));
    }
    clock.advance(*step);
    session.noteChange({"clock", word});
  }
  const std::uint64_t now = clock.milliseconds();
  return {{{"milliseconds", now}}, TimeText(now) + "\n"};
}

}  // namespace

const Command kClock = {
    {"clock",
     {{"+SECONDS", ArgumentType::Word, "moves the time on, +300 or +0.5", Presence::Optional}},
     "tells the unit's time, which stands still until it is moved on or frames are carried live",
     {"clock", "Init\nAddMacDynamic 1 100 02:00:00:00:00:0b\nclock +300\nshow mac"}},
    MoveClock,
    true};

}  // namespace onu
