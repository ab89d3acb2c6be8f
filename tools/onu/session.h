/// @file
/// One session: the unit, the library that runs on it, the journal of what was done, and the way a
/// line becomes a result. What each command does is in commands.h.
#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "base/trace.h"
#include "config_table.h"
#include "console.h"
#include "journal.h"
#include "rate_meter.h"
#include "result.h"
#include "ticker.h"
#include "unit/unit.h"
#include "words.h"

namespace onu {

/// What left the library while something was done.
struct Observation {
  std::vector<virtual_onu::TraceEvent> events;
  std::string console;  ///< what was printed on standard output
};

struct SessionOptions {
  bool json = false;
  bool log = false;  ///< shows log lines as they come; JSON has them in the results
  Settings settings;
  /// What is done to every unit before it is used.
  std::function<void(virtual_onu::Unit& unit)> prepare = {};
  /// Makes the seconds of a command that watches; without it they pass at once, in the unit's time
  /// alone.
  std::function<std::unique_ptr<Ticker>()> makeTicker = {};
};

/// Takes what is printed, whole lines at a time.
using Sink = std::function<void(std::string_view)>;

/// The library's state is the process's: there is one session in a process.
class Session {
 public:
  Session(const SessionOptions& options, Console& console, Sink out);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  /// Carries out a line and prints its result; throws a Failure.
  void execute(std::string_view line);

  /// Carries out a command or an operation; throws a Failure.
  Result perform(const Words& words);

  /// Does something and tells what left the library meanwhile.
  Observation observe(const std::function<void()>& work);

  /// Notes in the journal a change that has no result, with what left the library meanwhile.
  void noteChange(const Words& words);

  /// Starts over with a new unit. The library's own state stays.
  void restart(const Settings& settings);

  [[nodiscard]] Settings settings() const;

  /// Changes the settings; throws a Failure when the hardware cannot change any more.
  void change(const Settings& settings, bool hardware);

  virtual_onu::Unit& unit() { return *unit_; }
  [[nodiscard]] const virtual_onu::Unit& unit() const { return *unit_; }
  Journal& journal() { return journal_; }
  RateMeter& rates() { return rates_; }

  /// The seconds of a command that watches; null where they pass at once.
  [[nodiscard]] std::unique_ptr<Ticker> makeTicker() const {
    return makeTicker_ ? makeTicker_() : nullptr;
  }

  /// Prints a result as that of a command.
  void print(std::string_view command, const Result& result);

  void showLog(bool on);

  void quit() { done_ = true; }
  [[nodiscard]] bool done() const { return done_; }

 private:
  void startUnit(const Settings& settings);
  void hear(const virtual_onu::TraceEvent& event);

  const bool json_;
  Console& console_;
  const std::function<void(virtual_onu::Unit& unit)> prepare_;
  const std::function<std::unique_ptr<Ticker>()> makeTicker_;
  std::mutex mutex_;  ///< guards what events of other threads touch: out_, log_ and pending_
  Sink out_;
  bool log_;
  std::vector<virtual_onu::TraceEvent> pending_;
  Journal journal_;
  RateMeter rates_;
  std::unique_ptr<virtual_onu::Unit> unit_;
  bool done_ = false;
};

}  // namespace onu
