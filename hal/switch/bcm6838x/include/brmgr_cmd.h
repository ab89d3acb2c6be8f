/// @file
/// Command codes of the bridge-manager device "BrmgrDev" that the library sends, from one table.
/// The records that the commands carry are in brmgr_record.h.
#ifndef BRMGR_CMD_H
#define BRMGR_CMD_H

/// The only ioctl request of the device. In the target's encoding: read and write, size 4, type
/// 'E', number 1. The size field says 4 although the request record is larger; the driver ignores
/// it.
// Required: ioctl-number-says-4-bytes
#define BRMGR_IOCTL_REQUEST 0xc0044501U

/// Record length of a command whose length depends on its payload.
#define BRMGR_LENGTH_VARIABLE 0xFFFFFFFFU

/// Read-back flag of a request.
#define BRMGR_FLAG_INPUT 0U      ///< the record is input only
#define BRMGR_FLAG_READ_BACK 1U  ///< the driver writes its result into the record before it returns

// clang-format off
/// Every command: X(code, NAME, record, record length in bytes, flag, other flag, purpose). The record
/// is `void` where the command has none. Where senders differ in the flag, `flag` is that of most
/// senders, `other flag` the second one, and the purpose names who sends it; elsewhere both are the
/// same. brmgr_traits.h makes the types of C++ from the table.
// Required: laser-on-reads-back, rule-deletes-read-back
#define BRMGR_COMMAND_LIST(X)                                                                                         \
  X(0,   INIT,            DrvInitRecord,     32,     INPUT,     INPUT,     "tells the driver the numbers of Ethernet ports") \
  X(25,  MCAST_ADD,       McastGroupEntry,   52,     READ_BACK, READ_BACK, "creates a multicast group entry for one port") \
  X(26,  MCAST_DEL,       McastGroupEntry,   52,     INPUT,     INPUT,     "deletes a multicast group entry")         \
  X(33,  SEND_BPDU,       RelayPkt,          BRMGR_LENGTH_VARIABLE, INPUT, INPUT, "sends a bridge protocol data unit") \
  X(35,  PORT_ADMIN,      PortAdminRecord,   48,     INPUT,     INPUT,     "sets a port's administrative state")      \
  X(39,  PORT_LOOPBACK,   PortLoopbackRecord, 48,    INPUT,     INPUT,     "switches a port's loopback")              \
  X(50,  IPHOST_VLAN_ADD, IphostVlanRecord,  4,      INPUT,     INPUT,     "sets the VLAN tag of the unit's own IP traffic") \
  X(51,  IPHOST_VLAN_DEL, IphostVlanRecord,  4,      INPUT,     INPUT,     "removes the VLAN tag of the unit's own IP traffic") \
  X(58,  PORT_MIRROR,     PortMirrorRecord,  16,     INPUT,     INPUT,     "switches port mirroring")                 \
  X(61,  DS_RATE_LIMIT,   DsRateLimitRecord, 8,      INPUT,     INPUT,     "sets a port's downstream rate limit")     \
  X(73,  MAC_GET_NEXT,    MacEntryRecord,    24,     READ_BACK, READ_BACK, "reads the MAC table entry after a given address") \
  X(77,  MAC_BIND_ADD,    MacFilterRecord,   20,     INPUT,     INPUT,     "binds a MAC address to a port")           \
  X(78,  MAC_BIND_DEL,    MacFilterRecord,   20,     INPUT,     INPUT,     "removes a MAC address binding")           \
  X(79,  MAC_FILTER_ADD,  MacFilterRecord,   20,     INPUT,     INPUT,     "blocks a MAC address")                    \
  X(80,  MAC_FILTER_DEL,  MacFilterRecord,   20,     INPUT,     INPUT,     "unblocks a MAC address")                  \
  X(81,  MAC_STATIC_ADD,  MacEntryRecord,    24,     INPUT,     INPUT,     "adds a static MAC table entry")           \
  X(82,  MAC_STATIC_DEL,  MacEntryRecord,    24,     INPUT,     INPUT,     "deletes a static MAC table entry")        \
  X(83,  MAC_DYNAMIC_ADD, MacEntryRecord,    24,     INPUT,     INPUT,     "adds a dynamic MAC table entry")          \
  X(84,  MAC_DYNAMIC_DEL, MacEntryRecord,    24,     INPUT,     INPUT,     "deletes a dynamic MAC table entry")       \
  X(85,  PORT_ISOLATE,    PortIsolateRecord, 16,     INPUT,     INPUT,     "isolates two ports from each other, or releases them") \
  X(95,  PORT_STATS,      PortStatsRecord,   216,    READ_BACK, READ_BACK, "reads a port's counters")                 \
  X(98,  IC_CREATE,       IngressClassCfg,   32,     READ_BACK, READ_BACK, "creates an ingress class")                \
  X(99,  IC_DEL,          IngressClassDel,   8,      READ_BACK, READ_BACK, "deletes an ingress class")                \
  X(100, FLOW_ADD,        IngressFlowRule,   164,    READ_BACK, READ_BACK, "adds a flow to an ingress class")         \
  X(101, FLOW_DEL,        IngressFlowDel,    12,     INPUT,     READ_BACK, "deletes a flow; read-back when sent by the scheduler and the classification") \
  X(102, VLAN_ACTION_ADD, VlanActionRule,    24,     READ_BACK, READ_BACK, "creates a VLAN action")                   \
  X(104, VLAN_ACTION_DEL, VlanActionDel,     8,      INPUT,     READ_BACK, "deletes a VLAN action; read-back when sent by the classification") \
  X(105, POLICER_ADD,     PolicerCfg,        24,     READ_BACK, READ_BACK, "creates a port's upstream policer")       \
  X(106, POLICER_DEL,     PolicerDel,        8,      INPUT,     INPUT,     "deletes a port's upstream policer")       \
  X(111, DSCP_MAP,        DscpMapRecord,     68,     INPUT,     INPUT,     "sets a port's map from DSCP to priority") \
  X(118, SEND_PKT,        RdpaPkt,           BRMGR_LENGTH_VARIABLE, INPUT, INPUT, "sends a frame")                    \
  X(119, LASER_ON,        void,              0,      READ_BACK, READ_BACK, "switches the EPON laser on")              \
  X(120, LASER_OFF,       void,              0,      INPUT,     INPUT,     "switches the EPON laser off")             \
  X(123, PORT_STATE,      PortRateRecord,    8,      INPUT,     INPUT,     "reports a port's line rate")              \
  X(124, QUEUE_SCHEDULE,  IngressFlowRule,   164,    READ_BACK, READ_BACK, "reads a flow back")                       \
  X(126, PORT_STP,        PortStpRecord,     12,     INPUT,     INPUT,     "switches spanning tree on a port")        \
  X(127, FEATURE,         FeatureRecord,     4,      INPUT,     INPUT,     "hands a feature switch to the driver")    \
  X(131, MAC_AGING,       MacAgingRecord,    2,      INPUT,     INPUT,     "sets the aging time of the MAC table")    \
  X(132, MAC_LIMIT,       MacLimitRecord,    2,      INPUT,     INPUT,     "sets the learning limit of the MAC table") \
  X(133, MAC_LEARN,       MacLearnRecord,    4,      INPUT,     INPUT,     "switches learning, or clears learned entries") \
  X(134, CTC_MODE_A,      CtcModeRecord,     1,      INPUT,     INPUT,     "names a port whose mode code is any other than those of CTC_MODE_B") \
  X(135, CTC_MODE_B,      CtcModeRecord,     1,      INPUT,     INPUT,     "names a port whose mode code is transparent or ZTE stacking") \
  X(140, DHCP_TRAP,       TrapEnableRecord,  8,      INPUT,     INPUT,     "switches the DHCP trap of a port")        \
  X(141, SEND_DHCP,       RelayPkt,          BRMGR_LENGTH_VARIABLE, INPUT, INPUT, "sends a DHCP frame")               \
  X(142, PPPOE_TRAP,      TrapEnableRecord,  8,      INPUT,     INPUT,     "switches the PPPoE trap of a port")       \
  X(143, SEND_PPPOE,      RelayPkt,          BRMGR_LENGTH_VARIABLE, INPUT, INPUT, "sends a PPPoE frame")              \
  X(158, VLAN_REBUILD,    PortVlanTable,     492032, INPUT,     INPUT,     "hands the VLAN configuration of all ports to the driver")
// clang-format on

/// BRMGR_CMD_INIT and its siblings, and the first code out of range.
enum {
/// @cond
#define BRMGR_DECLARE_COMMAND(code, name, record, length, flag, otherFlag, purpose) \
  BRMGR_CMD_##name = (code),
  BRMGR_COMMAND_LIST(BRMGR_DECLARE_COMMAND)
#undef BRMGR_DECLARE_COMMAND
  /// @endcond
  BRMGR_CMD_LIMIT = 183  ///< the first code out of range
};

#endif
