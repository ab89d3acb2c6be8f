/// @file
/// What a live run prints at its end.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <variant>
#include <vector>

#include "base/trace.h"
#include "live/pump.h"
#include "report/result.h"

namespace onu {

/// What the trace told during a live run, by kind.
class TraceCounts {
 public:
  void add(const std::vector<virtual_onu::TraceEvent>& events);

  /// The counts; in words "trace: 3 commands, 1 log line, ...".
  [[nodiscard]] Result report() const;

 private:
  std::array<std::uint64_t, std::variant_size_v<virtual_onu::TraceDetail>> counts_ = {};
};

/// What a live run did.
struct LiveRun {
  std::map<virtual_onu::PortId, std::string> names;  ///< of the ends that ports were bound to
  std::map<virtual_onu::PortId, virtual_onu::PortTraffic> traffic = {};
  TraceCounts trace = {};
};

Result ReportLive(const LiveRun& run);

}  // namespace onu
