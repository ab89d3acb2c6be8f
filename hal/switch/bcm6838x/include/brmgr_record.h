/// @file
/// Records that cross the boundary to the bridge-manager driver. Each record has one field table,
/// from which come its structure, the assertions on its layout, the decoder of the tools and the
/// reference page docs/records.md. The command codes are in brmgr_cmd.h.
///
/// All fields are in the processor's byte order, which on the target is big-endian, and naturally
/// aligned. A builder zeroes the record, then sets fields; reserved bytes are sent as zero.
#ifndef BRMGR_RECORD_H
#define BRMGR_RECORD_H

#include <stddef.h>
#include <stdint.h>

/// @def BRMGR_STATIC_ASSERT
/// The assertion at compile time of the language in use.
#ifdef __cplusplus
#define BRMGR_STATIC_ASSERT static_assert
#else
#define BRMGR_STATIC_ASSERT _Static_assert
#endif

/// Index that names no object, in every record and table; index 0 is a valid object.
#define BRMGR_INDEX_NONE 0xFFFFFFFFU

/// Direction of classes, flows and actions.
enum {
  BRMGR_DIR_DOWNSTREAM = 0,  ///< from the PON side towards the UNI ports
  BRMGR_DIR_UPSTREAM = 1     ///< towards the PON side
};

/// Forwarding decision of a flow.
enum {
  BRMGR_FORWARD_PASS = 1,  ///< forward the frame; every VLAN flow
  BRMGR_FORWARD_TRAP = 2,  ///< hand the frame to the unit itself; the flows made at start-up
  BRMGR_FORWARD_ACL = 4    ///< access control; the QoS flows of that kind
};

/// Tag operations of a VLAN action, combined by OR.
enum {
  BRMGR_TAG_PUSH = 0x1,               ///< push tag[0]
  BRMGR_TAG_POP = 0x4,                ///< remove the outer tag
  BRMGR_TAG_REPLACE_VID = 0x8,        ///< replace the outer VID by tag[0].vid
  BRMGR_TAG_REPLACE_PRIORITY = 0x100  ///< replace the outer priority by tag[0].pbit
};

/// Kind of an event; any other is ignored.
enum {
  BRMGR_EVENT_MCAST_IN = 1,   ///< multicast control frame from a UNI port
  BRMGR_EVENT_BPDU = 3,       ///< bridge protocol data unit
  BRMGR_EVENT_MCAST_OUT = 5,  ///< multicast control frame to send
  BRMGR_EVENT_DHCP = 6,       ///< DHCP frame for the relay
  BRMGR_EVENT_PPPOE = 7       ///< PPPoE frame for the relay
};

// clang-format off
/// Key fields of an ingress class: X(bit of fieldMask, NAME, field of IngressFlowRule with the key).
#define BRMGR_KEY_LIST(X)                          \
  X(0x00001, SOURCE_IP,      srcIp)                \
  X(0x00002, DESTINATION_IP, dstIp)                \
  X(0x00020, L4_SOURCE,      l4SrcPort)            \
  X(0x00040, L4_DESTINATION, l4DstPort)            \
  X(0x00080, OUTER_VID,      outerVid)             \
  X(0x00200, DESTINATION_MAC, dstMac)              \
  X(0x00400, SOURCE_MAC,     srcMac)               \
  X(0x00800, ETHERTYPE,      etherType)            \
  X(0x01000, IP_PROTOCOL,    ipProtocol)           \
  X(0x02000, DSCP,           dscp)                 \
  X(0x08000, INGRESS_PORT,   ingressPort)          \
  X(0x10000, OUTER_PBIT,     outerPbit)            \
  X(0x40000, VLAN_NUM,       vlanNum)
// clang-format on

/// BRMGR_KEY_OUTER_VID and its siblings.
enum {
/// @cond
#define BRMGR_DECLARE_KEY(bit, name, field) BRMGR_KEY_##name = (bit),
  BRMGR_KEY_LIST(BRMGR_DECLARE_KEY)
#undef BRMGR_DECLARE_KEY
  /// @endcond
};

// Field tables: FIELD(record, offset, type, name, array suffix or nothing, format, access,
// meaning). The formats are those of the decoder: DEC, HEX, INDEX, DIR, KEYS, FORWARD, TAG_OPS,
// MAC, IP, BYTES, TAG (a nested VlanTagSpec), LIST (an array of records of which those are in use
// that are not all zero) and RESERVED. Access says who fills the field: CALLER, DRIVER (sent as a
// placeholder, filled by the driver), BOTH (a proposal that the driver may change) or NOBODY (sent
// as zero).
/// @cond
// clang-format off
#define BRMGR_DRV_INIT_RECORD_FIELDS(FIELD, R)                                                        \
  FIELD(R, 0,   uint32_t, reserved0,       ,     RESERVED, NOBODY, "zero")                            \
  FIELD(R, 4,   uint32_t, fePortNum,       ,     DEC,      CALLER, "number of Fast-Ethernet ports")   \
  FIELD(R, 8,   uint32_t, gePortNum,       ,     DEC,      CALLER, "number of Gigabit-Ethernet ports") \
  FIELD(R, 12,  uint8_t,  reserved12,      [20], RESERVED, NOBODY, "zero")

#define BRMGR_FEATURE_RECORD_FIELDS(FIELD, R)                                                         \
  FIELD(R, 0,   uint32_t, value,           ,     DEC,      CALLER, "value of the platform's feature switch 27")

#define BRMGR_INGRESS_CLASS_CFG_FIELDS(FIELD, R)                                                      \
  FIELD(R, 0,   uint32_t, type,            ,     DEC,      CALLER, "always 2")                        \
  FIELD(R, 4,   uint32_t, fieldMask,       ,     KEYS,     CALLER, "key fields that the class compares") \
  FIELD(R, 8,   uint32_t, priority,        ,     DEC,      CALLER, "order among the classes of one direction: 1 to 5 upstream and 1 to 3 downstream at start-up, 6 and 3 in performance mode, from 7 on in QoS rules") \
  FIELD(R, 12,  uint8_t,  reserved12,      [12], RESERVED, NOBODY, "zero")                            \
  FIELD(R, 24,  uint32_t, dir,             ,     DIR,      CALLER, "1 upstream, 0 downstream")        \
  FIELD(R, 28,  uint32_t, icIndex,         ,     INDEX,    BOTH,   "the class's index: the caller's choice, or another that the driver returns")

#define BRMGR_INGRESS_CLASS_DEL_FIELDS(FIELD, R)                                                      \
  FIELD(R, 0,   uint32_t, dir,             ,     DIR,      CALLER, "1 upstream, 0 downstream")        \
  FIELD(R, 4,   uint32_t, icIndex,         ,     INDEX,    CALLER, "the class to delete")

#define BRMGR_INGRESS_FLOW_RULE_FIELDS(FIELD, R)                                                      \
  FIELD(R, 0,   uint32_t, srcIpVersion,    ,     DEC,      CALLER, "source address: 0 IPv4, 1 IPv6")  \
  FIELD(R, 4,   uint8_t,  srcIp,           [16], IP,       CALLER, "source IP address in network order; IPv4 in the first four bytes") \
  FIELD(R, 20,  uint32_t, dstIpVersion,    ,     DEC,      CALLER, "destination address: 0 IPv4, 1 IPv6") \
  FIELD(R, 24,  uint8_t,  dstIp,           [16], IP,       CALLER, "destination IP address in network order; IPv4 in the first four bytes") \
  FIELD(R, 40,  uint16_t, l4SrcPort,       ,     DEC,      CALLER, "layer-4 source port")             \
  FIELD(R, 42,  uint16_t, l4DstPort,       ,     DEC,      CALLER, "layer-4 destination port")        \
  FIELD(R, 44,  uint8_t,  ipProtocol,      ,     DEC,      CALLER, "IP protocol number")              \
  FIELD(R, 45,  uint8_t,  reserved45,      ,     RESERVED, NOBODY, "zero")                            \
  FIELD(R, 46,  uint16_t, outerVid,        ,     DEC,      CALLER, "outer VLAN identifier; 0 where the class does not compare it") \
  FIELD(R, 48,  uint8_t,  reserved48,      [2],  RESERVED, NOBODY, "zero")                            \
  FIELD(R, 50,  uint8_t,  dstMac,          [6],  MAC,      CALLER, "destination MAC address")         \
  FIELD(R, 56,  uint8_t,  srcMac,          [6],  MAC,      CALLER, "source MAC address")              \
  FIELD(R, 62,  uint16_t, etherType,       ,     HEX,      CALLER, "EtherType behind the VLAN tags")  \
  FIELD(R, 64,  uint8_t,  dscp,            ,     DEC,      CALLER, "IPv4 TOS byte or DSCP")           \
  FIELD(R, 65,  uint8_t,  reserved65,      [3],  RESERVED, NOBODY, "zero")                            \
  FIELD(R, 68,  uint32_t, ingressPort,     ,     DEC,      CALLER, "data-path port of the UNI; 0 in downstream flows") \
  FIELD(R, 72,  uint8_t,  outerPbit,       ,     DEC,      CALLER, "priority of the outer tag, 0..7") \
  FIELD(R, 73,  uint8_t,  reserved73,      ,     RESERVED, NOBODY, "zero")                            \
  FIELD(R, 74,  uint8_t,  vlanNum,         ,     DEC,      CALLER, "number of VLAN tags: 0, 1 or 2")  \
  FIELD(R, 75,  uint8_t,  reserved75,      [13], RESERVED, NOBODY, "zero")                            \
  FIELD(R, 88,  uint32_t, result88,        ,     DEC,      CALLER, "result word; 0 in every flow")    \
  FIELD(R, 92,  uint8_t,  result92,        ,     DEC,      CALLER, "result byte; 0 in every flow")    \
  FIELD(R, 93,  uint8_t,  reserved93,      [3],  RESERVED, NOBODY, "zero")                            \
  FIELD(R, 96,  uint32_t, forward,         ,     FORWARD,  CALLER, "forwarding decision: 1 pass, 2 trap, 4 access control") \
  FIELD(R, 100, uint32_t, reserved100,     ,     RESERVED, NOBODY, "zero")                            \
  FIELD(R, 104, uint32_t, result104,       ,     DEC,      CALLER, "result word; 1 in the upstream flows of the VLAN modes and in downstream performance-mode flows, else 0") \
  FIELD(R, 108, uint32_t, result108,       ,     DEC,      CALLER, "result word; 2 in downstream performance-mode flows, else 0") \
  FIELD(R, 112, uint32_t, queue,           ,     DEC,      CALLER, "traffic queue: the priority of the frame, of the port or of the QoS rule, 8 above it under scheduling scheme 1; 0 in other flows") \
  FIELD(R, 116, uint8_t,  reserved116,     [4],  RESERVED, NOBODY, "zero")                            \
  FIELD(R, 120, uint8_t,  remark,          ,     DEC,      CALLER, "1 in QoS re-marking flows, else 0") \
  FIELD(R, 121, uint8_t,  remarkPriority,  ,     DEC,      CALLER, "priority given by a QoS re-marking flow, else 0") \
  FIELD(R, 122, uint8_t,  reserved122,     [6],  RESERVED, NOBODY, "zero")                            \
  FIELD(R, 128, uint32_t, result128,       ,     DEC,      CALLER, "result word; 0 in every flow")    \
  FIELD(R, 132, uint8_t,  reserved132,     [8],  RESERVED, NOBODY, "zero")                            \
  FIELD(R, 140, uint32_t, dir,             ,     DIR,      CALLER, "0 downstream, 1 upstream")        \
  FIELD(R, 144, uint32_t, icIndex,         ,     INDEX,    CALLER, "the class to which the flow belongs") \
  FIELD(R, 148, uint32_t, flowIndex,       ,     INDEX,    DRIVER, "sent as none; the driver returns the new flow's index") \
  FIELD(R, 152, uint32_t, vlanActionIndex, ,     INDEX,    CALLER, "VLAN action applied to matching frames, or none") \
  FIELD(R, 156, uint32_t, policer,         ,     INDEX,    CALLER, "UNI port whose policer applies, or none") \
  FIELD(R, 160, uint32_t, refCount,        ,     DEC,      NOBODY, "sent as zero and ignored by the driver; references in the library's tables")

#define BRMGR_INGRESS_FLOW_DEL_FIELDS(FIELD, R)                                                       \
  FIELD(R, 0,   uint32_t, dir,             ,     DIR,      CALLER, "0 downstream, 1 upstream")        \
  FIELD(R, 4,   uint32_t, icIndex,         ,     INDEX,    CALLER, "the flow's class")                \
  FIELD(R, 8,   uint32_t, flowIndex,       ,     INDEX,    CALLER, "the flow to delete")

#define BRMGR_VLAN_TAG_SPEC_FIELDS(FIELD, R)                                                          \
  FIELD(R, 0,   uint16_t, vid,             ,     DEC,      CALLER, "VLAN identifier, 0..4095")        \
  FIELD(R, 2,   uint8_t,  pbit,            ,     DEC,      CALLER, "priority code point, 0..7")       \
  FIELD(R, 3,   uint8_t,  reserved3,       ,     RESERVED, NOBODY, "zero")                            \
  FIELD(R, 4,   uint16_t, tpid,            ,     HEX,      CALLER, "tag protocol identifier")

#define BRMGR_VLAN_ACTION_RULE_FIELDS(FIELD, R)                                                       \
  FIELD(R, 0,   uint32_t, cmd,             ,     TAG_OPS,  CALLER, "tag operations: 0x1 push tag[0], 0x4 pop, 0x8 replace the VID, 0x100 replace the priority") \
  FIELD(R, 4,   VlanTagSpec, tag,          [2],  TAG,      CALLER, "tag contents; tag[1] is zero in every action built here") \
  FIELD(R, 16,  uint32_t, dir,             ,     DIR,      CALLER, "0 downstream, any other value upstream") \
  FIELD(R, 20,  uint32_t, vlanActionIndex, ,     INDEX,    DRIVER, "sent as none, or as 0 by the QoS classification; the driver returns the new action's index")

#define BRMGR_VLAN_ACTION_DEL_FIELDS(FIELD, R)                                                        \
  FIELD(R, 0,   uint32_t, dir,             ,     DIR,      CALLER, "0 downstream, any other value upstream") \
  FIELD(R, 4,   uint32_t, vlanActionIndex, ,     INDEX,    CALLER, "the action to delete")

#define BRMGR_PORT_ADMIN_RECORD_FIELDS(FIELD, R)                                                      \
  FIELD(R, 0,   uint32_t, port,            ,     DEC,      CALLER, "device port: the UNI port number plus 1") \
  FIELD(R, 4,   uint8_t,  reserved4,       [40], RESERVED, NOBODY, "zero")                            \
  FIELD(R, 44,  uint8_t,  enable,          ,     DEC,      CALLER, "1 administratively up, 0 down")   \
  FIELD(R, 45,  uint8_t,  reserved45,      [3],  RESERVED, NOBODY, "zero")

#define BRMGR_PORT_LOOPBACK_RECORD_FIELDS(FIELD, R)                                                   \
  FIELD(R, 0,   uint32_t, port,            ,     DEC,      CALLER, "device port: the UNI port number plus 1") \
  FIELD(R, 4,   uint8_t,  enable,          ,     DEC,      CALLER, "1 loopback on, 0 off")            \
  FIELD(R, 5,   uint8_t,  reserved5,       [43], RESERVED, NOBODY, "zero")

#define BRMGR_PORT_ISOLATE_RECORD_FIELDS(FIELD, R)                                                    \
  FIELD(R, 0,   uint32_t, port,            ,     DEC,      CALLER, "device port being configured")    \
  FIELD(R, 4,   uint32_t, peerPort,        ,     DEC,      CALLER, "peer device port, 2..5")          \
  FIELD(R, 8,   uint32_t, isolate,         ,     DEC,      CALLER, "1 the two ports may not exchange traffic, 0 they may") \
  FIELD(R, 12,  uint32_t, word12,          ,     DEC,      CALLER, "always 2")

#define BRMGR_PORT_STP_RECORD_FIELDS(FIELD, R)                                                        \
  FIELD(R, 0,   uint32_t, portIndex,       ,     DEC,      CALLER, "port index, from 0")              \
  FIELD(R, 4,   uint32_t, enable,          ,     DEC,      CALLER, "spanning tree on the port, as the caller gave it") \
  FIELD(R, 8,   uint32_t, reserved8,       ,     RESERVED, NOBODY, "zero")

#define BRMGR_PORT_MIRROR_RECORD_FIELDS(FIELD, R)                                                     \
  FIELD(R, 0,   uint32_t, selector,        ,     DEC,      CALLER, "mirrored port selector, 0")       \
  FIELD(R, 4,   uint32_t, destinationPort, ,     DEC,      CALLER, "device port that receives the copies, 2..5") \
  FIELD(R, 8,   uint32_t, enable,          ,     DEC,      CALLER, "mirroring, as the caller gave it") \
  FIELD(R, 12,  uint32_t, direction,       ,     DEC,      CALLER, "0, 1 or 2 for the modes 2, 1 and 3")

#define BRMGR_MCAST_GROUP_ENTRY_FIELDS(FIELD, R)                                                      \
  FIELD(R, 0,   uint32_t, vlanActionIndex, ,     INDEX,    CALLER, "downstream VLAN action for the port's copies, or none") \
  FIELD(R, 4,   uint32_t, channelIndex,    ,     INDEX,    BOTH,   "create: sent as none, or as the index of a port that was removed before in the same call, and the driver returns the entry's index; delete: the entry to delete") \
  FIELD(R, 8,   uint32_t, port,            ,     DEC,      CALLER, "UNI port number")                 \
  FIELD(R, 12,  uint32_t, portMask,        ,     HEX,      CALLER, "ports that have joined, bit p - 1 for UNI port p, as the caller gave it") \
  FIELD(R, 16,  uint16_t, vlan,            ,     DEC,      CALLER, "multicast VLAN of the group")     \
  FIELD(R, 18,  uint8_t,  reserved18,      [6],  RESERVED, NOBODY, "zero")                            \
  FIELD(R, 24,  uint8_t,  groupMac,        [6],  MAC,      CALLER, "group MAC address")               \
  FIELD(R, 30,  uint8_t,  groupIpv4,       [4],  IP,       CALLER, "IPv4 group address; 0.0.0.0 in an IPv6 group") \
  FIELD(R, 34,  uint8_t,  groupIpv6,       [16], IP,       CALLER, "IPv6 group address")              \
  FIELD(R, 50,  uint8_t,  reserved50,      [2],  RESERVED, NOBODY, "zero")

#define BRMGR_PORT_STATS_RECORD_FIELDS(FIELD, R)                                                      \
  FIELD(R, 0,   uint32_t, port,            ,     DEC,      CALLER, "port whose counters are read: a getter counts it from 1, the table of all ports from 0, a clear sends what the driver left there") \
  FIELD(R, 4,   uint32_t, rxOctets,        ,     DEC,      DRIVER, "received octets")                 \
  FIELD(R, 8,   uint32_t, word2,           ,     DEC,      DRIVER, "not read")                        \
  FIELD(R, 12,  uint32_t, rx64,            ,     DEC,      DRIVER, "received frames of 64 octets")    \
  FIELD(R, 16,  uint32_t, rx65to127,       ,     DEC,      DRIVER, "received frames of 65 to 127 octets") \
  FIELD(R, 20,  uint32_t, rx128to255,      ,     DEC,      DRIVER, "received frames of 128 to 255 octets") \
  FIELD(R, 24,  uint32_t, rx256to511,      ,     DEC,      DRIVER, "received frames of 256 to 511 octets") \
  FIELD(R, 28,  uint32_t, rx512to1023,     ,     DEC,      DRIVER, "received frames of 512 to 1023 octets") \
  FIELD(R, 32,  uint32_t, rx1024to1518,    ,     DEC,      DRIVER, "received frames of 1024 to 1518 octets") \
  FIELD(R, 36,  uint32_t, word9,           ,     DEC,      DRIVER, "not read")                        \
  FIELD(R, 40,  uint32_t, rxMulticast,     ,     DEC,      DRIVER, "received multicast frames")       \
  FIELD(R, 44,  uint32_t, rxBroadcast,     ,     DEC,      DRIVER, "received broadcast frames")       \
  FIELD(R, 48,  uint32_t, rxUnicast,       ,     DEC,      DRIVER, "received unicast frames")         \
  FIELD(R, 52,  uint32_t, word13,          [4],  DEC,      DRIVER, "not read")                        \
  FIELD(R, 68,  uint32_t, rxDiscard,       ,     DEC,      DRIVER, "received frames that were discarded; also the first of three terms of the receive errors") \
  FIELD(R, 72,  uint32_t, word18,          [4],  DEC,      DRIVER, "not read")                        \
  FIELD(R, 88,  uint32_t, rxWord22,        ,     DEC,      DRIVER, "a receive counter that only the table of all ports shows") \
  FIELD(R, 92,  uint32_t, rxError23,       ,     DEC,      DRIVER, "second term of the receive errors") \
  FIELD(R, 96,  uint32_t, rxError24,       ,     DEC,      DRIVER, "third term of the receive errors") \
  FIELD(R, 100, uint32_t, word25,          ,     DEC,      DRIVER, "not read")                        \
  FIELD(R, 104, uint32_t, txOctets,        ,     DEC,      DRIVER, "transmitted octets")              \
  FIELD(R, 108, uint32_t, word27,          ,     DEC,      DRIVER, "not read")                        \
  FIELD(R, 112, uint32_t, tx64,            ,     DEC,      DRIVER, "transmitted frames of 64 octets") \
  FIELD(R, 116, uint32_t, tx65to127,       ,     DEC,      DRIVER, "transmitted frames of 65 to 127 octets") \
  FIELD(R, 120, uint32_t, tx128to255,      ,     DEC,      DRIVER, "transmitted frames of 128 to 255 octets") \
  FIELD(R, 124, uint32_t, tx256to511,      ,     DEC,      DRIVER, "transmitted frames of 256 to 511 octets") \
  FIELD(R, 128, uint32_t, tx512to1023,     ,     DEC,      DRIVER, "transmitted frames of 512 to 1023 octets") \
  FIELD(R, 132, uint32_t, tx1024to1518,    ,     DEC,      DRIVER, "transmitted frames of 1024 to 1518 octets") \
  FIELD(R, 136, uint32_t, word34,          ,     DEC,      DRIVER, "not read")                        \
  FIELD(R, 140, uint32_t, txDiscard,       ,     DEC,      DRIVER, "frames to transmit that were discarded; also the first of three terms of the transmit errors") \
  FIELD(R, 144, uint32_t, txMulticast,     ,     DEC,      DRIVER, "transmitted multicast frames")    \
  FIELD(R, 148, uint32_t, txBroadcast,     ,     DEC,      DRIVER, "transmitted broadcast frames")    \
  FIELD(R, 152, uint32_t, txUnicast,       ,     DEC,      DRIVER, "transmitted unicast frames")      \
  FIELD(R, 156, uint32_t, word39,          [8],  DEC,      DRIVER, "not read")                        \
  FIELD(R, 188, uint32_t, txError47,       ,     DEC,      DRIVER, "second term of the transmit errors") \
  FIELD(R, 192, uint32_t, word48,          [3],  DEC,      DRIVER, "not read")                        \
  FIELD(R, 204, uint32_t, txError51,       ,     DEC,      DRIVER, "third term of the transmit errors") \
  FIELD(R, 208, uint32_t, word52,          [2],  DEC,      DRIVER, "not read")

#define BRMGR_MAC_ENTRY_RECORD_FIELDS(FIELD, R)                                                       \
  FIELD(R, 0,   uint8_t,  mac,             [6],  MAC,      BOTH,   "the entry's address; in a read the address after which to look, then that of the entry found") \
  FIELD(R, 6,   uint16_t, reserved6,       ,     RESERVED, NOBODY, "zero")                            \
  FIELD(R, 8,   uint32_t, port,            ,     DEC,      BOTH,   "UNI port number; a read sends zero") \
  FIELD(R, 12,  uint16_t, vid,             ,     DEC,      BOTH,   "VLAN identifier; a read sends zero") \
  FIELD(R, 14,  uint16_t, reserved14,      ,     RESERVED, NOBODY, "zero")                            \
  FIELD(R, 16,  uint32_t, entryType,       ,     DEC,      DRIVER, "sent as zero; a read returns the kind of the entry") \
  FIELD(R, 20,  uint32_t, reserved20,      ,     RESERVED, NOBODY, "zero")

#define BRMGR_MAC_FILTER_RECORD_FIELDS(FIELD, R)                                                      \
  FIELD(R, 0,   uint32_t, reserved0,       ,     RESERVED, NOBODY, "zero")                            \
  FIELD(R, 4,   uint8_t,  mac,             [6],  MAC,      CALLER, "MAC address")                     \
  FIELD(R, 10,  uint16_t, reserved10,      ,     RESERVED, NOBODY, "zero")                            \
  FIELD(R, 12,  uint32_t, port,            ,     DEC,      CALLER, "UNI port number")                 \
  FIELD(R, 16,  uint16_t, vid,             ,     DEC,      CALLER, "VLAN identifier")                 \
  FIELD(R, 18,  uint16_t, reserved18,      ,     RESERVED, NOBODY, "zero")

#define BRMGR_MAC_AGING_RECORD_FIELDS(FIELD, R)                                                       \
  FIELD(R, 0,   uint16_t, ageTime,         ,     DEC,      CALLER, "aging time of learned entries")

#define BRMGR_MAC_LIMIT_RECORD_FIELDS(FIELD, R)                                                       \
  FIELD(R, 0,   uint16_t, limit,           ,     DEC,      CALLER, "number of MAC addresses that may be learned")

#define BRMGR_MAC_LEARN_RECORD_FIELDS(FIELD, R)                                                       \
  FIELD(R, 0,   uint32_t, value,           ,     DEC,      CALLER, "learning switch or clear value, as the caller gave it")

#define BRMGR_POLICER_CFG_FIELDS(FIELD, R)                                                            \
  FIELD(R, 0,   uint32_t, word0,           ,     DEC,      CALLER, "always 0")                        \
  FIELD(R, 4,   uint32_t, rate,            ,     DEC,      CALLER, "committed rate in bit/s")         \
  FIELD(R, 8,   uint32_t, burst,           ,     DEC,      CALLER, "burst size; always 501536")       \
  FIELD(R, 12,  uint32_t, word12,          ,     DEC,      CALLER, "always 1")                        \
  FIELD(R, 16,  uint32_t, word16,          ,     DEC,      CALLER, "always 1")                        \
  FIELD(R, 20,  uint32_t, port,            ,     DEC,      CALLER, "UNI port number")

#define BRMGR_POLICER_DEL_FIELDS(FIELD, R)                                                            \
  FIELD(R, 0,   uint32_t, word0,           ,     DEC,      CALLER, "always 1")                        \
  FIELD(R, 4,   uint32_t, port,            ,     DEC,      CALLER, "UNI port number")

#define BRMGR_PORT_RATE_RECORD_FIELDS(FIELD, R)                                                       \
  FIELD(R, 0,   uint32_t, port,            ,     DEC,      CALLER, "device port: the UNI port number plus 1; 0 for a port that has none") \
  FIELD(R, 4,   uint32_t, rate,            ,     DEC,      CALLER, "line rate in bit/s; 0 when it is not known")

#define BRMGR_DS_RATE_LIMIT_RECORD_FIELDS(FIELD, R)                                                   \
  FIELD(R, 0,   uint32_t, port,            ,     DEC,      CALLER, "the caller's port index, which counts from 0, plus 1") \
  FIELD(R, 4,   uint32_t, rate,            ,     DEC,      CALLER, "downstream limit in bit/s")

#define BRMGR_DSCP_MAP_RECORD_FIELDS(FIELD, R)                                                        \
  FIELD(R, 0,   uint32_t, port,            ,     DEC,      CALLER, "data-path port of the UNI")       \
  FIELD(R, 4,   uint8_t,  priority,        [64], BYTES,    CALLER, "priority given to each DSCP")

#define BRMGR_PORT_VLAN_TRUNK_ENTRY_FIELDS(FIELD, R)                                                  \
  FIELD(R, 0,   uint8_t,  port,            ,     DEC,      CALLER, "UNI port, 1..32")                 \
  FIELD(R, 1,   uint8_t,  reserved1,       ,     RESERVED, NOBODY, "zero")                            \
  FIELD(R, 2,   uint16_t, vid,             ,     DEC,      CALLER, "VID, 1..4095; not checked, and the rules skip 0")

#define BRMGR_PORT_VLAN_TRANS_ENTRY_FIELDS(FIELD, R)                                                  \
  FIELD(R, 0,   uint8_t,  port,            ,     DEC,      CALLER, "UNI port, 1..32")                 \
  FIELD(R, 1,   uint8_t,  reserved1,       ,     RESERVED, NOBODY, "zero")                            \
  FIELD(R, 2,   uint16_t, dsPriority,      ,     DEC,      CALLER, "priority written into the downstream action, 0..7; not checked") \
  FIELD(R, 4,   uint16_t, localVid,        ,     DEC,      CALLER, "VID on the UNI side, 1..4095; not checked, and the rules skip an entry with 0") \
  FIELD(R, 6,   uint16_t, usPriority,      ,     DEC,      CALLER, "priority written into the upstream action, 0..7; not checked") \
  FIELD(R, 8,   uint16_t, netVid,          ,     DEC,      CALLER, "VID on the network side, 1..4095; not checked, and the rules skip an entry with 0")

#define BRMGR_PORT_VLAN_STACK_ENTRY_FIELDS(FIELD, R)                                                  \
  FIELD(R, 0,   uint8_t,  port,            ,     DEC,      CALLER, "UNI port, 1..32")                 \
  FIELD(R, 1,   uint8_t,  reserved1,       [3],  RESERVED, NOBODY, "zero")                            \
  FIELD(R, 4,   uint32_t, stackParam,      ,     DEC,      CALLER, "2 in the entries that BDCOM stacking builds") \
  FIELD(R, 8,   uint32_t, cvid,            ,     DEC,      CALLER, "customer VID; of a value other than 0 the rules use the low 12 bits") \
  FIELD(R, 12,  uint16_t, reserved12,      ,     RESERVED, NOBODY, "zero")                            \
  FIELD(R, 14,  uint16_t, svid,            ,     DEC,      CALLER, "service VID, 1..4095")

#define BRMGR_PORT_VLAN_INFO_FIELDS(FIELD, R)                                                         \
  FIELD(R, 0,   uint16_t, pvid,            ,     DEC,      CALLER, "port VID, 1..4095; not checked, and 0 before it was set") \
  FIELD(R, 2,   uint16_t, priority,        ,     DEC,      CALLER, "default priority of the port, 0..7; of any value the low 8 bits are kept") \
  FIELD(R, 4,   uint16_t, tpid,            ,     HEX,      CALLER, "tag protocol identifier of the port VID's tag; 0x8100 once a port VID was set") \
  FIELD(R, 6,   uint16_t, tagAttr,         ,     DEC,      CALLER, "cleared whenever a port VID is set") \
  FIELD(R, 8,   uint32_t, vlanMode,        ,     DEC,      CALLER, "0 transparent, 1 tag, 2 and 3 translation, 4 trunk, 19 ZTE trunk, 20 hybrid, 160 ZTE stacking, 253 BDCOM stacking, 255 none") \
  FIELD(R, 12,  uint32_t, stackingEnable,  ,     DEC,      CALLER, "1 since an entry was put into the stacking list, 0 again when a delete has left it empty") \
  FIELD(R, 16,  PortVlanTrunkEntry, trunkList, [512], LIST, CALLER, "VLANs of trunk, hybrid and ZTE trunk mode") \
  FIELD(R, 2064, PortVlanTransEntry, translationList, [512], LIST, CALLER, "pairs of translation mode") \
  FIELD(R, 7184, PortVlanStackEntry, stackingList, [512], LIST, CALLER, "customer and service VLANs of BDCOM stacking mode")

#define BRMGR_PORT_VLAN_TABLE_FIELDS(FIELD, R)                                                        \
  FIELD(R, 0,   PortVlanInfo, port,        [32], LIST,     CALLER, "configuration of each UNI port; port 1 is the first")

#define BRMGR_IPHOST_VLAN_RECORD_FIELDS(FIELD, R)                                                     \
  FIELD(R, 0,   uint16_t, tci,             ,     HEX,      CALLER, "tag control information: priority 7 and the VID") \
  FIELD(R, 2,   uint16_t, reserved2,       ,     RESERVED, NOBODY, "zero")

#define BRMGR_CTC_MODE_RECORD_FIELDS(FIELD, R)                                                        \
  FIELD(R, 0,   uint8_t,  port,            ,     DEC,      CALLER, "UNI port, 1..32; any number with a code that names no mode")

#define BRMGR_TRAP_ENABLE_RECORD_FIELDS(FIELD, R)                                                     \
  FIELD(R, 0,   uint32_t, portIndex,       ,     DEC,      CALLER, "port index, from 0")              \
  FIELD(R, 4,   uint32_t, enable,          ,     DEC,      CALLER, "trap of the port, as the caller gave it")

#define BRMGR_RELAY_PKT_FIELDS(FIELD, R)                                                              \
  FIELD(R, 0,   uint32_t, desPort,         ,     DEC,      CALLER, "UNI port that the frame concerns") \
  FIELD(R, 4,   uint32_t, length,          ,     DEC,      CALLER, "frame length in bytes; the record ends behind the frame") \
  FIELD(R, 8,   uint8_t,  data,            [1700], BYTES,  CALLER, "the frame")

#define BRMGR_RDPA_PKT_FIELDS(FIELD, R)                                                               \
  FIELD(R, 0,   uint32_t, size,            ,     DEC,      CALLER, "frame length in bytes; the record ends two bytes behind the frame") \
  FIELD(R, 4,   uint32_t, desPort,         ,     DEC,      CALLER, "destination UNI port, 0 for none") \
  FIELD(R, 8,   uint32_t, srcPort,         ,     DEC,      CALLER, "source UNI port, 0 for none")     \
  FIELD(R, 12,  uint32_t, gemFlowId,       ,     DEC,      CALLER, "flow identifier")                 \
  FIELD(R, 16,  uint8_t,  data,            [2048], BYTES,  CALLER, "the frame")

#define BRMGR_EVENT_FIELDS(FIELD, R)                                                                  \
  FIELD(R, 0,   uint32_t, eventType,       ,     DEC,      DRIVER, "kind of event: 1, 3, 5, 6 or 7")  \
  FIELD(R, 4,   uint32_t, length,          ,     DEC,      DRIVER, "frame length in bytes")           \
  FIELD(R, 8,   uint32_t, reserved8,       ,     RESERVED, DRIVER, "not read")                        \
  FIELD(R, 12,  uint32_t, port,            ,     DEC,      DRIVER, "UNI port, 0 for none or all")     \
  FIELD(R, 16,  uint32_t, gemFlowId,       ,     DEC,      DRIVER, "flow identifier of the frame's ingress flow") \
  FIELD(R, 20,  uint8_t,  data,            [2048], BYTES,  DRIVER, "the frame, which in events 3, 6 and 7 begins at offset 22")

/// Every record, and those nested in others: X(record, FIELD TABLE, size in bytes, what it is).
#define BRMGR_RECORD_LIST(X)                                                                          \
  X(DrvInitRecord,   BRMGR_DRV_INIT_RECORD_FIELDS,   32,  "Port counts handed over at start-up.")           \
  X(FeatureRecord,   BRMGR_FEATURE_RECORD_FIELDS,    4,   "Feature switch handed over at start-up.")        \
  X(IngressClassCfg, BRMGR_INGRESS_CLASS_CFG_FIELDS, 32,  "An ingress class: which key fields its flows compare.") \
  X(IngressClassDel, BRMGR_INGRESS_CLASS_DEL_FIELDS, 8,   "Names an ingress class to delete.")              \
  X(IngressFlowRule, BRMGR_INGRESS_FLOW_RULE_FIELDS, 164, "A flow of an ingress class: key values, then the result for matching frames.") \
  X(IngressFlowDel,  BRMGR_INGRESS_FLOW_DEL_FIELDS,  12,  "Names a flow to delete.")                        \
  X(VlanTagSpec,     BRMGR_VLAN_TAG_SPEC_FIELDS,     6,   "One VLAN tag inside a VLAN action.")             \
  X(VlanActionRule,  BRMGR_VLAN_ACTION_RULE_FIELDS,  24,  "A VLAN action: how the tags of a matching frame are edited.") \
  X(VlanActionDel,   BRMGR_VLAN_ACTION_DEL_FIELDS,   8,   "Names a VLAN action to delete.")                 \
  X(PortAdminRecord, BRMGR_PORT_ADMIN_RECORD_FIELDS, 48,  "Administrative state of a port.")                \
  X(PortLoopbackRecord, BRMGR_PORT_LOOPBACK_RECORD_FIELDS, 48, "Loopback of a port.")                       \
  X(PortIsolateRecord, BRMGR_PORT_ISOLATE_RECORD_FIELDS, 16, "Isolation of two ports from each other.")     \
  X(PortStpRecord,   BRMGR_PORT_STP_RECORD_FIELDS,   12,  "Spanning tree of a port.")                       \
  X(PortMirrorRecord, BRMGR_PORT_MIRROR_RECORD_FIELDS, 16, "Port mirroring.")                               \
  X(McastGroupEntry, BRMGR_MCAST_GROUP_ENTRY_FIELDS, 52,  "A multicast group that is forwarded to one port.") \
  X(PortStatsRecord, BRMGR_PORT_STATS_RECORD_FIELDS, 216, "Counters of a port.")                            \
  X(MacEntryRecord,  BRMGR_MAC_ENTRY_RECORD_FIELDS,  24,  "An entry of the MAC table.")                    \
  X(MacFilterRecord, BRMGR_MAC_FILTER_RECORD_FIELDS, 20,  "A MAC address that is blocked, or bound to a port.") \
  X(MacAgingRecord,  BRMGR_MAC_AGING_RECORD_FIELDS,  2,   "Aging time of the MAC table.")                  \
  X(MacLimitRecord,  BRMGR_MAC_LIMIT_RECORD_FIELDS,  2,   "Learning limit of the MAC table.")               \
  X(MacLearnRecord,  BRMGR_MAC_LEARN_RECORD_FIELDS,  4,   "Learning switch of the MAC table.")             \
  X(PolicerCfg,      BRMGR_POLICER_CFG_FIELDS,       24,  "Upstream policer of a port.")                    \
  X(PolicerDel,      BRMGR_POLICER_DEL_FIELDS,       8,   "Names the port whose policer to delete.")        \
  X(PortRateRecord,  BRMGR_PORT_RATE_RECORD_FIELDS,  8,   "Line rate of a port.")                           \
  X(DsRateLimitRecord, BRMGR_DS_RATE_LIMIT_RECORD_FIELDS, 8, "Downstream rate limit of a port.")            \
  X(DscpMapRecord,   BRMGR_DSCP_MAP_RECORD_FIELDS,   68,  "Map of a port from DSCP to priority.")                \
  X(PortVlanTrunkEntry, BRMGR_PORT_VLAN_TRUNK_ENTRY_FIELDS, 4, "A VLAN of a port's trunk list.")            \
  X(PortVlanTransEntry, BRMGR_PORT_VLAN_TRANS_ENTRY_FIELDS, 10, "A pair of a port's translation list.")     \
  X(PortVlanStackEntry, BRMGR_PORT_VLAN_STACK_ENTRY_FIELDS, 16, "A customer VLAN of a port's stacking list and the service VLAN around it.") \
  X(PortVlanInfo,    BRMGR_PORT_VLAN_INFO_FIELDS,    15376, "VLAN configuration of a UNI port.")            \
  X(PortVlanTable,   BRMGR_PORT_VLAN_TABLE_FIELDS,   492032, "VLAN configuration of all UNI ports.")        \
  X(IphostVlanRecord, BRMGR_IPHOST_VLAN_RECORD_FIELDS, 4, "VLAN tag of the unit's own IP traffic.")         \
  X(CtcModeRecord,   BRMGR_CTC_MODE_RECORD_FIELDS,   1,   "Names a port whose VLAN mode was set by its code.") \
  X(TrapEnableRecord, BRMGR_TRAP_ENABLE_RECORD_FIELDS, 8, "Trap of a protocol on a port.")                  \
  X(RelayPkt,        BRMGR_RELAY_PKT_FIELDS,         1708, "A BPDU, DHCP or PPPoE frame to send.")          \
  X(RdpaPkt,         BRMGR_RDPA_PKT_FIELDS,          2064, "A frame to send, and the descriptor of a trapped one.") \
  X(BrmgrEvent,      BRMGR_EVENT_FIELDS,       2068, "An event read from the device: a trapped frame.")
// clang-format on

#define BRMGR_DECLARE_FIELD(record, offset, type, name, array, format, access, text) \
  type name array;
#define BRMGR_ASSERT_FIELD(record, offset, type, name, array, format, access, text) \
  BRMGR_STATIC_ASSERT(offsetof(record, name) == (offset), #record "." #name " is misplaced");
#define BRMGR_DECLARE_RECORD(record, fields, size, text)                                  \
  typedef struct record {                                                                 \
    fields(BRMGR_DECLARE_FIELD, record)                                                   \
  } record;                                                                               \
  BRMGR_STATIC_ASSERT(sizeof(record) == (size), #record " has another size on the wire"); \
  fields(BRMGR_ASSERT_FIELD, record)

BRMGR_RECORD_LIST(BRMGR_DECLARE_RECORD)

#undef BRMGR_DECLARE_FIELD
#undef BRMGR_ASSERT_FIELD
#undef BRMGR_DECLARE_RECORD
/// @endcond

/// The argument of the device's ioctl: 16 bytes on the target. On a 64-bit development machine
/// `buf` is as wide as a pointer there, and nothing else changes.
typedef struct BrmgrRequest {
  uint32_t cmd;   ///< command code, 0..182
  uint32_t len;   ///< length of the command record in bytes; 0 where the command has none
  uint32_t flag;  ///< BRMGR_FLAG_READ_BACK or BRMGR_FLAG_INPUT
  void* buf;      ///< the command record; null where the command has none
} BrmgrRequest;

BRMGR_STATIC_ASSERT(sizeof(void*) != 4 || sizeof(BrmgrRequest) == 16,
                    "BrmgrRequest has another size on the target");

#endif
