/// @file
/// The way of frames between the ports and the library: a trapped frame becomes an event that the
/// library reads, and the frames of its transmit commands leave by the ports.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <set>
#include <utility>
#include <vector>

#include "base/bytes.h"
#include "base/trace.h"
#include "datapath/data_path.h"
#include "device/device.h"

namespace virtual_onu {

/// A frame that the library sent.
struct Transmission {
  std::uint64_t number = 0;   ///< counts from 1
  std::uint32_t command = 0;  ///< BRMGR_CMD_SEND_...
  PortId port;
  Outcome outcome = Outcome::Transmitted;  ///< any other: it did not leave
  Bytes frame;
  std::vector<MirrorCopy> copies;
};

/// Takes a frame that leaves by a port.
using FrameTaker = std::function<void(PortId port, ByteView frame)>;

/// Threads: see Unit.
class PacketPath {
 public:
  /// Transmissions beyond are forgotten, the oldest first.
  static constexpr std::size_t kKeptTransmissions = 1000;

  /// @param[in] uplinkPort  tells the number by which the library names the WAN side
  PacketPath(Device& device, DataPath& dataPath, Trace& trace,
             std::function<std::uint32_t()> uplinkPort);

  /// See Unit::receive().
  Verdict receive(PortId port, ByteView frame);

  /// See Unit::onTransmit().
  void onTransmit(FrameTaker taker);

  /// What the library sent, from that number on, the oldest first.
  [[nodiscard]] std::vector<Transmission> transmissions(std::uint64_t from = 0) const;

 private:
  using Station = std::pair<std::uint32_t, Bytes>;  ///< UNI port and address

  /// Hands a trapped frame to the library; the outcome when it cannot, else nothing.
  std::optional<Outcome> deliverEvent(PortId port, const Verdict& verdict);
  SentFrame send(const OutgoingFrame& frame);
  /// The port that a frame leaves by, which may be none of the unit's.
  [[nodiscard]] PortId wayOf(const OutgoingFrame& frame) const;
  [[nodiscard]] bool goesToNetwork(const OutgoingFrame& frame) const;

  Device& device_;
  DataPath& dataPath_;
  Trace& trace_;
  std::function<std::uint32_t()> uplinkPort_;
  mutable std::mutex mutex_;  ///< guards what follows
  FrameTaker taker_;
  std::deque<Transmission> transmissions_;
  std::uint64_t next_ = 1;
  std::set<Station> relayed_;  ///< sources of the frames that were trapped for a relay
};

}  // namespace virtual_onu
