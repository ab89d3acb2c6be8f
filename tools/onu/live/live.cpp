/// @file
/// The live run: ends, script, threads, and the loop.
#include "live/live.h"

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include <hal_bcm6838x.h>

#include "clients/protocol_clients.h"
#include "language/script_file.h"
#include "live/capture_thread.h"
#include "live/live_report.h"
#include "live/open_end.h"
#include "live/pump.h"
#include "live/real_time.h"
#include "live/stop_signals.h"
#include "session/runner.h"

namespace onu {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;
using virtual_onu::ByteView;
using virtual_onu::FrameEnd;
using virtual_onu::PortId;
using virtual_onu::Pump;
using virtual_onu::Unit;

constexpr std::uint32_t kCaptureFeature = 27;

/// How long the loop waits at most: the unit's time is not behind real time by more.
constexpr milliseconds kLongestWait{100};

/// Events that the trace keeps of a live run, which may last for days.
constexpr std::uint64_t kEventsKept = 10'000;

/// Takes the cable out of every port that is not bound.
void Unplug(Unit& unit, const std::map<PortId, std::string>& bindings) {
  for (std::uint32_t uni = 1; uni <= unit.interfaces().count(); ++uni) {
    if (!bindings.contains(PortId::Uni(uni))) {
      unit.phy(uni).setPartner({.present = false});
    }
  }
  unit.tellLinks();
}

std::map<PortId, FrameEnd> OpenEnds(const std::map<PortId, std::string>& bindings) {
  std::map<PortId, FrameEnd> ends;
  for (const auto& [port, text] : bindings) {
    try {
      ends.emplace(port, virtual_onu::OpenFrameEnd(text));
    } catch (const virtual_onu::LiveError& error) {
      throw WorkFailed(BindingName(port) + ": " + error.what());
    }
  }
  return ends;
}

/// What configures the unit when no script does: the bound ports are up and transparent.
Words DefaultLines(const std::map<PortId, std::string>& bindings) {
  Words lines = {"Init"};
  for (const auto& [port, text] : bindings) {
    if (!port.isWan()) {
      const std::string number = std::to_string(port.uni);
      lines.push_back("SetPortAdminState " + number + " 1");
      lines.push_back("SetVlanTransparent " + number);
    }
  }
  return lines;
}

/// Runs the script, or the lines that stand for one.
ExitStatus Configure(Session& session, const LiveOptions& options, const Sink& errors) {
  Runner runner(session, errors, options.keepGoing);
  if (options.script) {
    ScriptFile script(*options.script);
    runner.runScript(script);
    return runner.status();
  }
  for (const std::string& line : DefaultLines(options.bindings)) {
    if (!runner.runLine(line, "onu")) {
      break;
    }
  }
  return runner.status();
}

/// The unit must have every bound port, and the library must run.
void CheckUnit(Unit& unit, const std::map<PortId, std::string>& bindings) {
  const std::uint32_t ports = unit.dataPath().uniPorts();
  const PortId last = bindings.rbegin()->first;
  if (last.uni > ports) {
    throw WrongUse(BindingName(last) + ": the unit has the UNI ports 1 to " +
                   std::to_string(ports) + " (--config eth=N gives it others)");
  }
  if (!unit.device().ports()) {
    throw WorkFailed("live: the library was not started: expected Init in the script");
  }
}

bool Captures(Unit& unit) {
  const auto& features = unit.platform().config().features;
  const auto feature = features.find(kCaptureFeature);
  return feature != features.end() && feature->second == 1;
}

/// "uni1 on tap:home, wan on tap:isp".
std::string Describe(const std::map<PortId, std::string>& bindings) {
  Words parts;
  for (const auto& [port, text] : bindings) {
    parts.push_back(port.name() + " on " + text);
  }
  return Join(parts, ", ");
}

/// The loop: carries frames, lets time pass, counts what the trace tells, and forgets what is
/// not shown.
void Carry(Session& session, Pump& pump, virtual_onu::RealTime& time, int stop,
           std::optional<milliseconds> duration, TraceCounts& counts) {
  const steady_clock::time_point start = steady_clock::now();
  virtual_onu::Trace& trace = session.unit().trace();
  std::uint64_t cleared = trace.next();
  milliseconds wait = kLongestWait;
  while (wait.count() > 0 && pump.turn(stop, wait)) {
    const steady_clock::time_point now = steady_clock::now();
    time.follow(now);
    counts.add(session.observe([] {}).events);
    if (trace.next() - cleared > kEventsKept) {
      trace.clear();
      cleared = trace.next();
    }
    if (duration) {
      const auto left = *duration - std::chrono::duration_cast<milliseconds>(now - start);
      wait = std::min(kLongestWait, std::max(left, milliseconds(0)));
    }
  }
}

/// Runs until the end with the threads that it needs.
Result Run(Session& session, const LiveOptions& options, std::map<PortId, FrameEnd>&& ends,
           int stop, const Sink& errors) {
  Unit& unit = session.unit();
  virtual_onu::RealTime time(unit.clock(), steady_clock::now());
  const auto gone = [&](PortId port, const FrameEnd& end) {
    errors("onu: live: " + port.name() + ": " + end.name() + " is gone\n");
    if (!port.isWan()) {
      unit.phy(port.uni).setPartner({.present = false});
      unit.tellLinks();
    }
  };
  const auto receive = [&](PortId port, ByteView frame) {
    time.follow(steady_clock::now());
    return unit.receive(port, frame);
  };
  Pump pump({receive, gone});
  for (auto& [port, end] : ends) {
    pump.bind(port, std::move(end));
  }
  unit.onTransmit([&pump](PortId port, ByteView frame) { pump.transmit(port, frame); });
  LiveRun run = {.names = options.bindings};
  session.observe([] {});
  {
    std::optional<virtual_onu::CaptureThread> capture;
    if (Captures(unit)) {
      capture.emplace(unit.device(), BCM6838X_CapturePacket);
    }
    errors("onu: live: " + Describe(options.bindings) + "\n");
    Carry(session, pump, time, stop, options.duration, run.trace);
  }
  unit.onTransmit({});
  run.trace.add(session.observe([] {}).events);
  run.traffic = pump.traffic();
  return ReportLive(run);
}

}  // namespace

void PrepareLive(SessionOptions& session, const LiveOptions& options) {
  session.settings.platform.runTasks = true;
  session.prepare = [bindings = options.bindings](Unit& unit) {
    Unplug(unit, bindings);
    unit.onClientCall(virtual_onu::ServeClient);
  };
}

ExitStatus RunLive(Session& session, const LiveOptions& options, const Sink& errors) {
  const virtual_onu::StopSignals stop;
  std::map<PortId, FrameEnd> ends = OpenEnds(options.bindings);
  const ExitStatus status = Configure(session, options, errors);
  if ((status != ExitStatus::Done && !options.keepGoing) || session.done()) {
    return status;
  }
  CheckUnit(session.unit(), options.bindings);
  session.print("live", Run(session, options, std::move(ends), stop.fd(), errors));
  session.unit().endTasks();
  return status;
}

}  // namespace onu
