/// @file
/// The MAC table at work: which frames it refuses, where it sends a frame, and what it learns. When
/// it is asked is the data path's matter.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "base/bytes.h"
#include "base/clock.h"
#include "datapath/outcome.h"
#include "datapath/port_id.h"
#include "device/mac_tables.h"
#include "device/port_tables.h"

namespace virtual_onu {

/// The addresses of a frame, both in the VLAN of the frame.
struct FrameAddresses {
  MacKey source;
  MacKey destination;
  bool operator==(const FrameAddresses&) const = default;
};

/// Reads the addresses of a frame with a whole Ethernet header.
FrameAddresses AddressesOf(ByteView frame, std::uint16_t vid);

/// The VID of the outer tag; 0 when there is none.
std::uint16_t OuterVidOf(ByteView frame);

/// What of the MAC table decided about a frame.
enum class MacRule : std::uint8_t { Dynamic, Static, Filter, Bind, Limit };

/// "dynamic", "static", "filter", "bind" or "limit".
std::string_view Name(MacRule rule);

struct MacDecision {
  MacRule rule = MacRule::Dynamic;
  MacKey key;
  /// Of an entry the port it is at, of a blocked or bound address its port, and of the limit the
  /// port that has as many addresses as it may.
  PortId port;
  bool operator==(const MacDecision&) const = default;
};

/// Why a frame goes no further.
struct MacRefusal {
  Outcome outcome = Outcome::MacFiltered;
  MacDecision decision;
};

/// A group address is neither learned nor looked up.
class MacBridge {
 public:
  /// @param[in] capacity  the most entries of the table
  MacBridge(MacTables& tables, const PortTables& ports, const Clock& clock, std::size_t capacity)
      : tables_(&tables), ports_(&ports), clock_(&clock), capacity_(capacity) {}

  /// Why no frame from that address enters by the port; nothing when frames do.
  [[nodiscard]] std::optional<MacRefusal> refusal(PortId from, const MacKey& source) const;

  /// Where an address is, when that is another port than the frame's. At its own port it says
  /// nothing of the frame's way.
  [[nodiscard]] std::optional<MacDecision> locate(PortId from, const MacKey& destination) const;

  /// Tells whether an address is blocked at a port.
  [[nodiscard]] bool isBlocked(PortId port, const MacKey& address) const;

  /// Notes that a frame from that address passed the port, unless learning is off or the table
  /// full.
  void learn(PortId from, const MacKey& source);

 private:
  /// Tells whether a frame would make a new entry of the port.
  [[nodiscard]] bool isNew(PortId from, const MacKey& source) const;
  [[nodiscard]] bool isFull(PortId from) const;
  [[nodiscard]] bool learns() const { return ports_->macLearn.value_or(1) != 0; }
  [[nodiscard]] std::uint64_t now() const { return clock_->milliseconds(); }

  MacTables* tables_;
  const PortTables* ports_;
  const Clock* clock_;
  std::size_t capacity_;
};

}  // namespace virtual_onu
