/// @file
/// What two ends of a link agree on by auto-negotiation (IEEE 802.3 annexes 28B.2 and 28B.3). The
/// exchange of pages and the PHY's registers are not known here.
#pragma once

#include <cstdint>
#include <optional>

#include "phy/registers.h"

namespace virtual_onu {

/// What one end advertises.
struct Advertisement {
  /// Layout of the advertisement register.
  std::uint16_t base =
      kSelector8023 | kAbility10Half | kAbility10Full | kAbility100Half | kAbility100Full;
  /// Layout of the 1000BASE-T control register.
  std::uint16_t gigabit = kAdvertise1000Half | kAdvertise1000Full;
  bool operator==(const Advertisement&) const = default;
};

struct LinkMode {
  std::uint32_t speed = 1000;  ///< Mbit/s: 10, 100 or 1000
  bool fullDuplex = true;
  bool operator==(const LinkMode&) const = default;
};

/// Directions in which one end uses pause frames.
struct PauseUse {
  bool transmit = false;
  bool receive = false;
  bool operator==(const PauseUse&) const = default;
};

/// The mode of highest priority that both ends advertise; nothing when there is none.
std::optional<LinkMode> BestCommonMode(const Advertisement& local, const Advertisement& partner);

/// Which pause frames the local end uses in full duplex.
PauseUse CommonPause(const Advertisement& local, const Advertisement& partner);

}  // namespace virtual_onu
