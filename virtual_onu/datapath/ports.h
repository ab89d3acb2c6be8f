/// @file
/// The ports as the data path sees them: by which of them frames may enter and leave now, and which
/// frames are mirrored. It reads what the driver and the PHYs keep.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "datapath/outcome.h"
#include "datapath/port_id.h"
#include "device/port_tables.h"

namespace virtual_onu {

class Ports {
 public:
  /// @param[in] passesFrames  tells whether the PHY of a UNI port, from 1 to `uniPorts`, does
  Ports(const PortTables& tables, std::uint32_t uniPorts,
        std::function<bool(std::uint32_t uni)> passesFrames);

  [[nodiscard]] std::uint32_t uniPorts() const { return uniPorts_; }

  /// Why no frame enters by a port; nothing when frames do.
  [[nodiscard]] std::optional<Outcome> entryBlock(PortId port) const;

  /// Why no frame that entered by one port leaves by another; nothing when frames do. Both are
  /// ports of the unit.
  [[nodiscard]] std::optional<Outcome> exitBlock(PortId from, PortId to) const;

  /// Tells whether the driver was told the VLAN configuration of the ports; until then every UNI
  /// port takes every frame.
  [[nodiscard]] bool hasVlans() const { return !tables_.vlans.empty(); }

  /// The VLAN configuration of a UNI port of the unit, once it was told.
  [[nodiscard]] const PortVlanInfo& vlanOf(std::uint32_t uni) const {
    return tables_.vlans.at(uni - 1);
  }

  /// What the driver traps by itself.
  [[nodiscard]] const TrapTables& traps() const { return tables_.traps; }

  /// The port that copies go to; nothing while nothing is mirrored.
  [[nodiscard]] std::optional<PortId> mirrorPort() const;

  /// The UNI port that copies of a port's frames go to; nothing when they are not mirrored. The
  /// mirror port's own frames and those of the WAN side are not.
  /// @param[in] received  the frames that enter by the port, or else those that leave by it
  [[nodiscard]] std::optional<PortId> mirrorOf(PortId port, bool received) const;

 private:
  [[nodiscard]] bool isAdminDown(PortId port) const;
  [[nodiscard]] bool isLinkDown(PortId port) const;

  const PortTables& tables_;
  std::uint32_t uniPorts_;
  std::function<bool(std::uint32_t uni)> passesFrames_;
};

}  // namespace virtual_onu
