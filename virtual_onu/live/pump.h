/// @file
/// Carries frames between the ends that are bound to the unit's ports and the unit, and counts
/// them. What becomes of a frame is the unit's matter.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <utility>
#include <vector>

#include "base/bytes.h"
#include "datapath/outcome.h"
#include "datapath/port_id.h"
#include "datapath/verdict.h"
#include "live/frame_end.h"

namespace virtual_onu {

/// What crossed one port.
struct PortTraffic {
  std::uint64_t framesIn = 0;
  std::uint64_t octetsIn = 0;
  std::uint64_t framesOut = 0;
  std::uint64_t octetsOut = 0;
  std::uint64_t transmitted = 0;              ///< of the frames out: those that the library sent
  std::uint64_t lost = 0;                     ///< frames for the port that its end did not take
  std::uint64_t eventsLost = 0;               ///< trapped frames that did not reach the library
  std::map<Outcome, std::uint64_t> outcomes;  ///< of the frames in; their sum is framesIn
  bool operator==(const PortTraffic&) const = default;
};

/// Who decides on the frames that come in, and who is told that no more will come from an end.
struct PumpCalls {
  std::function<Verdict(PortId port, ByteView frame)> receive;
  std::function<void(PortId port, const FrameEnd& end)> gone = {};
};

/// bind() is called before the first turn, turn() on one thread. Threads: see Unit.
class Pump {
 public:
  /// Frames that one end may bring in a turn, so that no port starves the others.
  static constexpr int kFramesPerTurn = 64;

  explicit Pump(PumpCalls calls) : calls_(std::move(calls)) {}

  /// Binds a port that is not bound yet.
  void bind(PortId port, FrameEnd end);

  /// Waits until a frame comes, but no longer than `wait` and not while `stop` is readable, and
  /// carries the frames that are there.
  /// @param[in] stop  a descriptor, or -1
  /// @return false when `stop` is readable or no frame will come from any end
  bool turn(int stop, std::chrono::milliseconds wait);

  /// Puts a frame of the library out at a port.
  void transmit(PortId port, ByteView frame);

  /// The ports that are bound and those that a frame was for.
  [[nodiscard]] std::map<PortId, PortTraffic> traffic() const;

 private:
  /// Carries what the end of a port brings; false when no more will come.
  bool drain(PortId port);
  void take(PortId port, ByteView frame);
  void putOut(PortId port, ByteView frame, bool ofLibrary);

  PumpCalls calls_;
  mutable std::mutex mutex_;  ///< guards traffic_ and sending; not held while the unit decides
  std::map<PortId, FrameEnd> ends_;
  std::vector<PortId> sources_;  ///< the ports whose ends may bring frames
  std::map<PortId, PortTraffic> traffic_;
  Bytes frame_;
};

}  // namespace virtual_onu
