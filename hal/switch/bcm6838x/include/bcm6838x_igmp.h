/// @file
/// Multicast: the multicast VLANs of each UNI port with the treatment of their tags, and the table
/// of the groups that are forwarded to the ports.
///
/// Every operation takes a UNI port number, counted from 1, in the low 8 bits of `port`, and VLAN
/// identifiers in their low 16 bits. An operation on a port outside 1..32 changes nothing, writes a
/// log line beside its own and returns BCM6838X_FAILED. The management layer serialises the calls.
#ifndef BCM6838X_IGMP_H
#define BCM6838X_IGMP_H

#include <stddef.h>
#include <stdint.h>

#include "bcm6838x_api.h"
#include "brmgr_record.h"

BCM6838X_BEGIN_DECLS

/// A group and the ports that have joined it.
typedef struct McastGroupRequest {
  uint16_t vlan;          ///< multicast VLAN of the group
  uint8_t groupMac[6];    ///< in network order
  uint8_t groupIpv4[4];   ///< in network order; 0.0.0.0 makes it an IPv6 group
  uint8_t groupIpv6[16];  ///< in network order
  uint32_t portMask;      ///< bit p - 1 for UNI port p
} McastGroupRequest;

/// @cond
BRMGR_STATIC_ASSERT(sizeof(McastGroupRequest) == 32, "McastGroupRequest has another size");
BRMGR_STATIC_ASSERT(offsetof(McastGroupRequest, groupMac) == 2, "groupMac is misplaced");
BRMGR_STATIC_ASSERT(offsetof(McastGroupRequest, groupIpv4) == 8, "groupIpv4 is misplaced");
BRMGR_STATIC_ASSERT(offsetof(McastGroupRequest, groupIpv6) == 12, "groupIpv6 is misplaced");
BRMGR_STATIC_ASSERT(offsetof(McastGroupRequest, portMask) == 28, "portMask is misplaced");
/// @endcond

/// Clears the channel table, and for each Ethernet port sets the mode that keeps multicast VLANs,
/// without a strip action, multicast VLANs or translation rules. Called by BCM6838X_Init.
///
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_InitIgmp(void);

/// Adds a multicast VLAN to a port; logs it. In multicast VLAN mode 1, unless the port's VLAN mode
/// is transparent (0) or ZTE stacking (160), the VLAN becomes a member of the port's WAN and LAN
/// VLAN objects. It is not looked for first: a VLAN that is added twice takes two places. A ninth
/// one is dropped.
///
/// @param[in] port UNI port, 1..32
/// @param[in] vid multicast VLAN; 0xFFFF marks an empty place and is not kept
/// @return BCM6838X_OK, or BCM6838X_FAILED, with a log line, when the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_AddIgmpVlan(uint32_t port, uint32_t vid);

/// Removes a multicast VLAN from a port, and from its VLAN objects under the same conditions as in
/// BCM6838X_AddIgmpVlan; logs it. A VLAN that the port does not have is told on standard output.
///
/// @param[in] port UNI port, 1..32
/// @param[in] vid multicast VLAN; 0xFFFF is never found
/// @return BCM6838X_OK, or BCM6838X_FAILED, with a log line, when the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_DelIgmpVlan(uint32_t port, uint32_t vid);

/// Sets what becomes of the tag of a port's multicast frames; logs it. Entering mode 0 creates the
/// port's strip action (BRMGR_CMD_VLAN_ACTION_ADD), also when the port was in it, and then only the
/// new index is kept; leaving it deletes the action (BRMGR_CMD_VLAN_ACTION_DEL). Unless the port's
/// VLAN mode is transparent (0) or ZTE stacking (160), entering mode 1 makes the multicast VLANs
/// members of the port's VLAN objects, and leaving it removes them.
///
/// @param[in] port UNI port, 1..32
/// @param[in] mode 0 removes the tag, 1 keeps it, 2 replaces its VID by translation rules; only the
///   low 16 bits count, and other values are stored and change nothing
/// @return BCM6838X_OK; BCM6838X_FAILED, with a log line, when the strip action cannot be created
///   (the mode is then set without one), or when the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_SetMulticastVlanMode(uint32_t port, uint32_t mode);

/// Adds a translation rule to a port: the multicast VLAN `mvlan` reaches the port as `iptvVlan`;
/// logs it. Adds the pair to the port's WAN and LAN VLAN objects and creates a VLAN action
/// (BRMGR_CMD_VLAN_ACTION_ADD), whose failure leaves the rule without an action. A ninth rule is
/// refused on standard output.
///
/// @param[in] port UNI port, 1..32
/// @param[in] mvlan multicast VLAN from the network; 0xFFFF marks a free rule
/// @param[in] iptvVlan VLAN towards the port
/// @return BCM6838X_OK, or BCM6838X_FAILED, with a log line, when the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_AddMulticastVlanTrans(uint32_t port, uint32_t mvlan,
                                                        uint32_t iptvVlan);

/// Removes the first translation rule of a multicast VLAN from a port, the pair from its VLAN
/// objects, and the rule's VLAN action (BRMGR_CMD_VLAN_ACTION_DEL) if it has one; logs it. A rule
/// that the port does not have is told on standard output.
///
/// @param[in] port UNI port, 1..32
/// @param[in] mvlan multicast VLAN from the network; 0xFFFF is never found
/// @param[in] iptvVlan VLAN towards the port that leaves the VLAN objects; not compared with the
///   rule's
/// @return BCM6838X_OK, or BCM6838X_FAILED, with a log line, when the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_DelMulticastVlanTrans(uint32_t port, uint32_t mvlan,
                                                        uint32_t iptvVlan);

/// Finds room for a channel.
///
/// @return the first slot that is not in use, 0..1023, or 0xFFFF when all are
BCM6838X_EXPORT uint16_t BCM6838X_FindUnuseMcastChanSlot(void);

/// Finds the channel of a group on a port. Whether a slot is in use is not looked at.
///
/// @param[in] ipv4 IPv4 group address, 4 bytes readable; with 0.0.0.0 the IPv6 addresses are
///   compared, otherwise these
/// @param[in] ipv6 IPv6 group address, 16 bytes readable
/// @param[in] port UNI port
/// @return the first slot of that port with the group, or 0xFFFF when there is none or, without a
///   log line, when a pointer is null
BCM6838X_EXPORT uint16_t BCM6838X_FindTargetMcastChanSlot(const uint8_t* ipv4, const uint8_t* ipv6,
                                                          uint32_t port);

/// Sends on an IGMP or MLD frame that the snooping service has handled (BCM6838X_SendPacket): a
/// frame of a UNI port once towards the uplink, any other once to each UNI port, in order.
///
/// @param[in] packet the frame, `length` bytes readable; not kept
/// @param[in] length bytes of the frame; the low 16 bits count
/// @param[in] vlan passed on and not used
/// @param[in] port where the frame came in, in the low 8 bits: at most the number of Ethernet ports
///   for a UNI port
/// @return BCM6838X_OK; BCM6838X_INVALID, with a log line, when `packet` is null
BCM6838X_EXPORT uint32_t BCM6838X_DispatchIgmpPacket(const uint8_t* packet, uint32_t length,
                                                     uint32_t vlan, uint32_t port);

/// Forwards a group to one port, the first Ethernet port of the mask, and logs it
/// (BRMGR_CMD_MCAST_ADD); the other ports are for BCM6838X_ModifyMulticastMacAddr. Without a port
/// or a free slot it only logs. A refusal by the driver is told on standard output as well, and the
/// slot is used all the same, with channel index 0xFFFFFFFF.
///
/// @param[in] request the group; not kept
/// @return the command's result (codes of BCM6838X_Ioctl), BCM6838X_OK when none was sent;
///   BCM6838X_INVALID, with a log line, when `request` is null
BCM6838X_EXPORT uint32_t BCM6838X_AddMulticastMacAddr(const McastGroupRequest* request);

/// Brings the ports of a group in line with the mask, port by port: removes the group where the bit
/// is clear (BRMGR_CMD_MCAST_DEL), adds it where the bit is set (BRMGR_CMD_MCAST_ADD) and it is not
/// there, as long as there are free slots; logs each step and the end. One record serves all ports:
/// an index that it got from an earlier port, deleted or created, is sent with the next create, and
/// a port without a matching translation rule gets the VLAN action of the port before it.
///
/// @param[in] request the group; not kept
/// @return the result of the last BRMGR_CMD_MCAST_ADD (codes of BCM6838X_Ioctl), BCM6838X_OK when
///   none was sent; BCM6838X_INVALID, with a log line, when `request` is null
BCM6838X_EXPORT uint32_t BCM6838X_ModifyMulticastMacAddr(const McastGroupRequest* request);

/// Stops forwarding a group to one port, the first Ethernet port of the mask that has it
/// (BRMGR_CMD_MCAST_DEL, its result ignored), and logs it; the slot becomes free. Without such a
/// port it only logs.
///
/// @param[in] request the group; not kept
/// @return BCM6838X_OK, or BCM6838X_INVALID, with a log line, when `request` is null
BCM6838X_EXPORT uint32_t BCM6838X_DelMulticastMacAddr(const McastGroupRequest* request);

/// Prints bytes on standard output as hexadecimal digits and characters, 16 a row. A length that is
/// a multiple of 16 ends with an empty row. Nothing is printed without a buffer or a length.
///
/// @param[in] buffer the bytes, `length` of them readable
/// @param[in] length number of bytes
BCM6838X_EXPORT void BCM6838X_PrintHex(const void* buffer, uint32_t length);

BCM6838X_END_DECLS

#endif
