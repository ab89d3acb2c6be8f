/// @file
/// Multicast: the multicast VLANs of each UNI port with the treatment of their tags, and the table
/// of the groups that are forwarded to the ports. What holds for all operations is said in
/// bcm6838x_api.h.
///
/// The operations on the VLANs of a port take a UNI port number, counted from 1, in the low 8 bits
/// of `port`, and VLAN identifiers in their low 16 bits; outside 1..32 the port is refused with the
/// port line, beside the operation's own, and BCM6838X_FAILED, and nothing is changed. The
/// operations on groups take their ports as a mask, of which the bits of the Ethernet ports (at
/// most 32) count, and refuse none.
///
/// In multicast VLAN mode 1, unless the port's VLAN mode is transparent or ZTE stacking,
/// the multicast VLANs of a port are **members of its VLAN objects**: they are added with
/// BCM6838X_AddWanVlan and BCM6838X_AddLanVlan, and removed with BCM6838X_DelWanVlan and
/// BCM6838X_DelLanVlan. The table of groups has 1024 slots, one for each group and port.
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

/// Clears the channel table, and for each Ethernet port (at most 32) sets multicast VLAN mode 1,
/// without a strip action, multicast VLANs or translation rules. What the device and the VLAN
/// objects hold of them is not removed. Called by BCM6838X_Init. Sends and logs nothing.
///
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_InitIgmp(void);

/// Adds a multicast VLAN to a port, in the first of its eight places that is empty, and to its VLAN
/// objects where the VLANs are members of them. It is not looked for first: a VLAN that is added
/// twice takes two places. A ninth one is dropped silently. Sends nothing.
///
/// @par Logs
/// "###### %s,%d, add igmp vlan  %u  vid=%lu" on entry; the port line.
///
/// @param[in] port UNI port, 1..32
/// @param[in] vid multicast VLAN, 1..4095, not checked: others are kept and refused by the VLAN
///   objects; 0xFFFF marks an empty place and is not kept
/// @return BCM6838X_OK, or BCM6838X_FAILED when the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_AddIgmpVlan(uint32_t port, uint32_t vid);

/// Removes a multicast VLAN from the first place of a port that holds it, and from its VLAN objects
/// where the VLANs are members of them. A VLAN that the port does not have is told on standard
/// output, as "%s(%d) no igmp vlan=%d in the port=%d". Sends nothing.
///
/// @par Logs
/// "###### %s,%d, del igmp vlan  %u  vid=%lu" on entry; the port line.
///
/// @param[in] port UNI port, 1..32
/// @param[in] vid multicast VLAN; 0xFFFF is never found
/// @return BCM6838X_OK, or BCM6838X_FAILED when the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_DelIgmpVlan(uint32_t port, uint32_t vid);

/// Sets what becomes of the tag of a port's multicast frames. When the mode changes: leaving mode 0
/// deletes the port's strip action, also when it has none and the index is 0xFFFFFFFF; leaving mode
/// 1 removes the multicast VLANs from the VLAN objects where they are members of them. Whether it
/// changes or not, mode 0 creates a strip action, of which only the last
/// index is kept, and mode 1 adds the multicast VLANs to the VLAN objects where they are to be
/// members, so that a port that was in it gets one more reference on its LAN objects. Groups that
/// are forwarded keep the action that they have.
///
/// @par Sends
/// BRMGR_CMD_VLAN_ACTION_DEL when mode 0 is left, BRMGR_CMD_VLAN_ACTION_ADD for mode 0.
/// @par Logs
/// "###### %s,%d, set igmp vlan mode  %u  vlanMode=%lu" on entry; the port line;
/// "Create vlan action error" when the strip action cannot be created.
///
/// @param[in] port UNI port, 1..32
/// @param[in] mode 0 removes the tag, 1 keeps it, 2 replaces its VID by translation rules; only the
///   low 16 bits count, and other values are stored and leave the frames as mode 1 does, without
///   VLAN objects
/// @return BCM6838X_OK; BCM6838X_FAILED when the strip action cannot be created (the mode is then
///   set, and the index that the port had stays), or when the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_SetMulticastVlanMode(uint32_t port, uint32_t mode);

/// Adds a translation rule to a port, in the first of its eight rules that is free: the multicast
/// VLAN `mvlan` reaches the port as `iptvVlan`. Adds the pair to the port's WAN and LAN VLAN
/// objects, whatever its modes, and creates a VLAN action that replaces the VID; when that fails,
/// the rule keeps the index that the driver left in the record, which is none (0xFFFFFFFF) where it
/// wrote nothing. A ninth rule is refused on standard output, as
/// "%s(%d) add igmp vlan translation rule more than %d for the port %d".
///
/// @par Sends
/// BRMGR_CMD_VLAN_ACTION_ADD.
/// @par Logs
/// "###### %s,%d, port=%d mvlan=%lu, iptvVlan=%lu" on entry; the port line.
///
/// @param[in] port UNI port, 1..32
/// @param[in] mvlan multicast VLAN from the network, 1..4095, not checked; 0xFFFF marks a free rule
/// @param[in] iptvVlan VLAN towards the port, 1..4095, not checked
/// @return BCM6838X_OK, or BCM6838X_FAILED when the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_AddMulticastVlanTrans(uint32_t port, uint32_t mvlan,
                                                        uint32_t iptvVlan);

/// Removes the first translation rule of a multicast VLAN from a port, the pair from its VLAN
/// objects, and the rule's VLAN action if it has one. A rule that the port does not have is told on
/// standard output, as "%s(%d) igmp vlan translation rule(port=%d, %d->%d) not appear".
///
/// @par Sends
/// BRMGR_CMD_VLAN_ACTION_DEL.
/// @par Logs
/// "###### %s,%d, port=%d mvlan=%lu, iptvVlan=%lu" on entry; the port line.
///
/// @param[in] port UNI port, 1..32
/// @param[in] mvlan multicast VLAN from the network; 0xFFFF is never found
/// @param[in] iptvVlan VLAN towards the port that leaves the VLAN objects; not compared with the
///   rule's
/// @return BCM6838X_OK, or BCM6838X_FAILED when the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_DelMulticastVlanTrans(uint32_t port, uint32_t mvlan,
                                                        uint32_t iptvVlan);

/// Finds room for a channel. Sends and logs nothing.
///
/// @return the first slot that is not in use, 0..1023, or 0xFFFF when all are
BCM6838X_EXPORT uint16_t BCM6838X_FindUnuseMcastChanSlot(void);

/// Finds the channel of a group on a port. Whether a slot is in use is not looked at: port 0 and
/// addresses of zeros find a free one. Sends and logs nothing.
///
/// @param[in] ipv4 IPv4 group address, 4 bytes readable; with 0.0.0.0 the IPv6 addresses are
///   compared, otherwise these
/// @param[in] ipv6 IPv6 group address, 16 bytes readable
/// @param[in] port UNI port, in the low 8 bits
/// @return the first slot of that port with the group, or 0xFFFF when there is none or a pointer is
///   null
BCM6838X_EXPORT uint16_t BCM6838X_FindTargetMcastChanSlot(const uint8_t* ipv4, const uint8_t* ipv6,
                                                          uint32_t port);

/// Sends on an IGMP or MLD frame that the snooping service has handled (BCM6838X_SendPacket): a
/// frame of a UNI port once towards the uplink, any other once to each UNI port, in order.
///
/// @par Sends
/// What BCM6838X_SendPacket sends, for IGMP and MLD BRMGR_CMD_SEND_PKT.
/// @par Logs
/// The null line.
///
/// @param[in] packet the frame, `length` bytes readable
/// @param[in] length bytes of the frame; the low 16 bits count
/// @param[in] vlan passed on and not used
/// @param[in] port where the frame came in, in the low 8 bits: 0 or at most the number of Ethernet
///   ports for a UNI port
/// @return BCM6838X_OK; also, with nothing sent, when `packet` is null
BCM6838X_EXPORT uint32_t BCM6838X_DispatchIgmpPacket(const uint8_t* packet, uint32_t length,
                                                     uint32_t vlan, uint32_t port);

/// Forwards a group to one port, the first Ethernet port of the mask; the others are for
/// BCM6838X_ModifyMulticastMacAddr. The port's frames get the VLAN action of the first translation
/// rule whose `mvlan` is the group's VLAN when the port is in multicast VLAN mode 2, none without
/// such a rule, and the port's strip action, if it has one, in any other mode. Whether the port has
/// the group already is not looked at. When the command fails, which is told on standard output as
/// "%s(%d) create igmp entry failed for port=%d ", the slot is used all the same, with channel
/// index 0xFFFFFFFF.
///
/// @par Sends
/// BRMGR_CMD_MCAST_ADD, with channel index 0xFFFFFFFF; none without a port in the mask or a free
/// slot.
/// @par Logs
/// "Add IPTV group[%u.%u.%u.%u] Port[%d] vlanActionIndex %ld channelIndex %u  slot %u ret=%lu" at
/// the end; when no command was sent with port 0, action -1, channel index and slot 4294967295 and
/// result 0.
///
/// @param[in] request the group, 32 bytes readable
/// @return the command's result (codes of BCM6838X_Ioctl), BCM6838X_OK when none was sent;
///   BCM6838X_INVALID, without a line, when `request` is null
BCM6838X_EXPORT uint32_t BCM6838X_AddMulticastMacAddr(const McastGroupRequest* request);

/// Brings the ports of a group in line with the mask, port by port, in order: removes the group
/// where the bit is clear and the port has it, as BCM6838X_DelMulticastMacAddr does, and adds it
/// where the bit is set, the port does not have it and there is a free slot, as
/// BCM6838X_AddMulticastMacAddr does, but for the line on standard output. One record serves all
/// ports: the channel index of a port that was removed is sent with the creates
/// after it, which otherwise carry 0xFFFFFFFF, and a port in multicast VLAN mode 2 without a
/// matching rule gets the VLAN action of the port before it that was changed. The index that a
/// create returns goes into the port's slot alone, and 0xFFFFFFFF when it fails.
///
/// @par Sends
/// BRMGR_CMD_MCAST_DEL and BRMGR_CMD_MCAST_ADD, one for each port that changes.
/// @par Logs
/// - "del IPTV group[%u.%u.%u.%u] Port[%d] vlanActionIndex %ld channelIndex %u  slot %u ret=%lu"
///   for each removal;
/// - "Add IPTV group[%u.%u.%u.%u] Port[%d] vlanActionIndex %ld channelIndex %u  slot %u ret=%lu"
///   for each addition;
/// - "Modify IPTV group[%u.%u.%u.%u] PortMask[%d] ret=%lu" at the end.
///
/// @param[in] request the group, 32 bytes readable
/// @return the result of the last BRMGR_CMD_MCAST_ADD (codes of BCM6838X_Ioctl), BCM6838X_OK when
///   none was sent; BCM6838X_INVALID, without a line, when `request` is null
BCM6838X_EXPORT uint32_t BCM6838X_ModifyMulticastMacAddr(const McastGroupRequest* request);

/// Stops forwarding a group to one port, the first Ethernet port of the mask that has it; the slot
/// becomes free, whatever the driver answers. A slot that a refused create left has the channel
/// index 0xFFFFFFFF, which is sent then.
///
/// @par Sends
/// BRMGR_CMD_MCAST_DEL; none without such a port.
/// @par Logs
/// "del IPTV group[%u.%u.%u.%u] Port[%d] vlanActionIndex %ld channelIndex %u  slot %u ret=%lu" at
/// the end, with result 0; when no command was sent with port 0, action -1, channel index and slot
/// 4294967295.
///
/// @param[in] request the group, 32 bytes readable
/// @return BCM6838X_OK, or BCM6838X_INVALID, without a line, when `request` is null
BCM6838X_EXPORT uint32_t BCM6838X_DelMulticastMacAddr(const McastGroupRequest* request);

/// Prints bytes on standard output as hexadecimal digits and as characters (32 to 128 as they are,
/// others as a full stop), 16 a row, behind a heading with the address and the length. A length
/// that is a multiple of 16 ends with an empty row. Nothing is printed without a buffer or a
/// length. Sends and logs nothing.
///
/// @param[in] buffer the bytes, `length` of them readable
/// @param[in] length number of bytes
BCM6838X_EXPORT void BCM6838X_PrintHex(const void* buffer, uint32_t length);

BCM6838X_END_DECLS

#endif
