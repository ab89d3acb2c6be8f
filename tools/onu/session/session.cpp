/// @file
/// The session: unit, dispatch, printing.
#include "session/session.h"

#include <utility>
#include <variant>

#include "language/failure.h"
#include "report/event_report.h"

namespace onu {

Session::Session(const SessionOptions& options, const CommandSet& commands, Console& console,
                 Sink out)
    : json_(options.json),
      commands_(commands),
      console_(console),
      prepare_(options.prepare),
      makeTicker_(options.makeTicker),
      out_(std::move(out)),
      log_(options.log) {
  restart(options.settings);
}

Session::~Session() = default;

void Session::execute(std::string_view line) {
  const Words words = SplitWords(line);
  if (words.empty()) {
    return;
  }
  const NamedCommand named = commands_.findOrThrow(words);
  const Command& command = *named.command;
  const Result result = perform(named);
  print(command.document.empty() ? command.name : command.document, result);
}

Result Session::perform(const NamedCommand& named) {
  const Command& command = *named.command;
  try {
    return command.run(*this, BindArguments(command.name, command.arguments, named.words));
  } catch (const Failure& failure) {
    throw failure.at(std::string(command.name));
  }
}

Observation Session::observe(const std::function<void()>& work) {
  work();
  Observation seen;
  seen.console = console_.take();
  const std::lock_guard lock(mutex_);
  seen.events.swap(pending_);
  return seen;
}

void Session::noteChange(const Words& words) {
  journal_.add(words, Json::object(), observe([] {}).events);
}

void Session::restart(const Settings& settings) {
  startUnit(settings);
  journal_ = {ConfigToWords(settings), {}};
}

Settings Session::settings() const {
  return {unit_->platform().config(), unit_->device().limits(),
          unit_->platform().performanceMarker()};
}

void Session::change(const Settings& settings, bool hardware) {
  if (!hardware) {
    unit_->platform().config() = settings.platform;
    unit_->platform().setPerformanceMarker(settings.performanceMarker);
    return;
  }
  if (!journal_.configurationOnly()) {
    throw WorkFailed(
        "the hardware is fixed once the unit was used; change it before the first operation, "
        "or with --config at the start");
  }
  startUnit(settings);
}

void Session::showLog(bool on) {
  const std::lock_guard lock(mutex_);
  log_ = on;
}

void Session::startUnit(const Settings& settings) {
  // There is one unit at a time: the old one has to be gone before the new one comes.
  unit_.reset();
  unit_ = std::make_unique<virtual_onu::Unit>(
      virtual_onu::UnitConfig{settings.platform, settings.chip, {}});
  rates_ = {};
  unit_->platform().setPerformanceMarker(settings.performanceMarker);
  unit_->trace().setListener([this](const virtual_onu::TraceEvent& event) { hear(event); });
  if (prepare_) {
    prepare_(*unit_);
  }
}

void Session::hear(const virtual_onu::TraceEvent& event) {
  const std::lock_guard lock(mutex_);
  pending_.push_back(event);
  const auto* line = std::get_if<virtual_onu::LogEvent>(&event.detail);
  if (line != nullptr && log_ && !json_) {
    out_(LogToText(*line));
  }
}

void Session::print(std::string_view command, const Result& result) {
  const std::lock_guard lock(mutex_);
  if (!json_) {
    out_(result.text);
    return;
  }
  Json document = {{"version", kJsonVersion}, {"command", std::string(command)}};
  document.update(result.json);
  out_(document.dump() + "\n");
}

}  // namespace onu
