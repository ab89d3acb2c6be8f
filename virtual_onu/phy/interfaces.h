/// @file
/// The unit's network interfaces "eth0", "eth1", ..., one a UNI port, as the Linux network stack
/// shows them: by their ioctl requests, which reach the registers of the PHYs.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <string_view>

#include "base/fault_plan.h"
#include "base/trace.h"
#include "phy/phy.h"

namespace virtual_onu {

/// The PHYs share one management bus: a request on any interface reaches the PHY whose address it
/// carries. The address of a PHY is its UNI port number.
class Interfaces {
 public:
  Interfaces(Trace& trace, std::uint32_t uniPorts);

  [[nodiscard]] std::uint32_t count() const { return static_cast<std::uint32_t>(phys_.size()); }

  /// The PHY of a UNI port, from 1 to count().
  Phy& phy(std::uint32_t uni) { return phys_.at(uni - 1); }
  [[nodiscard]] const Phy& phy(std::uint32_t uni) const { return phys_.at(uni - 1); }

  /// The UNI port of an interface name; nothing for a name that is none of the unit's.
  [[nodiscard]] std::optional<std::uint32_t> find(std::string_view name) const;

  /// Tells whether requests of that number may be the unit's: SIOCGIFINDEX, SIOCGMIIPHY,
  /// SIOCGMIIREG and SIOCSMIIREG.
  [[nodiscard]] static bool Knows(unsigned long request);

  /// Serves a request that Knows() accepts on one of the unit's interfaces: 0, or -1 with errno
  /// set. Nothing when the interface is not the unit's. Writes of registers are traced.
  ///
  /// EINVAL: a register number above 31. EIO: refused by a fault rule.
  /// @param[in,out] argument  address of an ifreq
  std::optional<int> ioctl(unsigned long request, void* argument);

  /// Faults of the requests, counted by request number.
  FaultPlan& faults() { return faults_; }

 private:
  Trace& trace_;
  std::deque<Phy> phys_;
  FaultPlan faults_;
};

}  // namespace virtual_onu
