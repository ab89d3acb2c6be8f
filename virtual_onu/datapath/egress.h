/// @file
/// How frames leave: by which of the ports that they are to leave by, what each of these does to
/// its copy, and the copies for the mirror port. Where a frame is to go is decided before.
#pragma once

#include <optional>
#include <vector>

#include "base/bytes.h"
#include "datapath/group_table.h"
#include "datapath/mac_bridge.h"
#include "datapath/port_id.h"
#include "datapath/ports.h"
#include "datapath/rate_limits.h"
#include "datapath/verdict.h"
#include "device/chip_tables.h"

namespace virtual_onu {

/// Names a flow of the direction at hand.
struct FlowId {
  std::uint32_t icIndex = 0;
  std::uint32_t flowIndex = 0;
};

class Egress {
 public:
  /// @param[in] limits  null: nothing is limited
  /// @param[in] bridge  null: no address is blocked
  Egress(const DirectionTables& downstream, const Ports& ports, const Limits* limits,
         const MacBridge* bridge)
      : downstream_(downstream), ports_(ports), limits_(limits), bridge_(bridge) {}

  /// Lets the frame of a verdict leave by those of the ports that are open to it and take it.
  /// @param[in] flow  the downstream flow that brings it to UNI ports
  void leave(PortId from, const std::vector<PortId>& destinations, const FlowId& flow,
             Verdict& verdict) const;

  /// Lets a frame leave by those of the ports that joined its group that are open to it.
  void leaveToGroup(PortId from, ByteView frame, const GroupId& group,
                    const std::vector<GroupMember>& members, Verdict& verdict) const;

  /// The frame as a downstream flow and the port's VLAN configuration let it leave by a port;
  /// nothing when the port does not take it.
  [[nodiscard]] std::optional<Delivery> treat(PortId to, ByteView frame, const FlowId& flow) const;

  /// Adds the copy of a frame that enters or leaves by a port, if the port is mirrored. Isolation
  /// does not hold copies back.
  void mirror(PortId port, bool received, ByteView frame, std::vector<MirrorCopy>& copies) const;

 private:
  /// Closes a port to a frame that it may not leave by; says whether it did.
  [[nodiscard]] bool close(PortId from, PortId to, Verdict& verdict) const;
  /// Delivers a frame as it leaves by a port, unless the port's limit holds it back.
  void deliver(PortId from, Delivery delivery, Verdict& verdict) const;
  [[nodiscard]] Delivery treatGroup(const GroupMember& member, const GroupId& group,
                                    ByteView frame) const;
  /// Holds a frame that came from the WAN side against the downstream limit of the port.
  [[nodiscard]] bool isWithinLimit(PortId from, const Delivery& delivery) const;

  const DirectionTables& downstream_;
  const Ports& ports_;
  const Limits* limits_;
  const MacBridge* bridge_;
};

}  // namespace virtual_onu
