/// @file
/// The VLAN configuration of the UNI ports: start-up of the VLAN area, modes, lists, port VID,
/// priority, CTC mode, the table of VLAN membership and the VLAN of the unit's own IP traffic.
///
/// The library keeps two copies of the configuration of ports 1..32: the current one, which these
/// operations change, and the applied one, by which rules are removed from the chip. To commit is
/// to copy the current configuration of all ports over the applied one.
///
/// Unless an operation says otherwise: it takes the UNI port in the low 8 bits of `port`, or in the
/// `port` of its request; a port outside 1..32 is refused with a log line of the level for invalid
/// parameters, and nothing else is done; the results of device commands and of the VLAN mode's own
/// operations are not looked at. The management layer calls these operations one at a time; nothing
/// is locked. Requests are not kept.
#ifndef BCM6838X_VLAN_PORT_H
#define BCM6838X_VLAN_PORT_H

#include <stdint.h>

#include "bcm6838x_api.h"
#include "brmgr_record.h"

BCM6838X_BEGIN_DECLS

/// A range of customer VLANs to put into a port's stacking list or to take out of it.
typedef struct PortVlanStackRange {
  uint8_t port;          ///< UNI port, 1..32
  uint8_t reserved1[3];  ///< not read
  uint32_t stackParam;   ///< as in PortVlanStackEntry
  uint32_t cvidStart;    ///< first customer VID; advanced by the operation
  uint16_t cvidEnd;      ///< last customer VID
  uint16_t svid;         ///< service VID, 1..4095
} PortVlanStackRange;
/// @cond
BRMGR_STATIC_ASSERT(offsetof(PortVlanStackRange, stackParam) == 4, "stackParam is misplaced");
BRMGR_STATIC_ASSERT(offsetof(PortVlanStackRange, cvidStart) == 8, "cvidStart is misplaced");
BRMGR_STATIC_ASSERT(offsetof(PortVlanStackRange, cvidEnd) == 12, "cvidEnd is misplaced");
BRMGR_STATIC_ASSERT(offsetof(PortVlanStackRange, svid) == 14, "svid is misplaced");
BRMGR_STATIC_ASSERT(sizeof(PortVlanStackRange) == 16, "PortVlanStackRange has another size");
/// @endcond

/// Starts the VLAN area; called by BCM6838X_Init. Creates the downstream default action, which
/// removes the outer tag (BRMGR_CMD_VLAN_ACTION_ADD) and whose earlier index stays in use when the
/// driver refuses; clears the configuration of every Ethernet port and gives it no mode; commits;
/// clears the tables of VLAN objects, actions and flows. No rule is created.
///
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_InitVlan(void);

/// Switches a port to transparent mode: logs; removes the rules of the applied configuration,
/// stores the mode, creates the rules of the current configuration, hands the configuration to the
/// driver (BRMGR_CMD_VLAN_REBUILD) and commits. A port that is in the mode already is left alone.
///
/// @param[in] port UNI port, 1..32
/// @return BCM6838X_OK, or BCM6838X_FAILED when the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_SetVlanTransparent(uint32_t port);

/// Switches a port to tag mode, as BCM6838X_SetVlanTransparent does to transparent mode.
///
/// @param[in] port UNI port, 1..32
/// @return BCM6838X_OK, or BCM6838X_FAILED when the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_SetVlanTag(uint32_t port);

/// Switches a port to translation mode, as BCM6838X_SetVlanTransparent does to transparent mode.
///
/// @param[in] port UNI port, 1..32
/// @return BCM6838X_OK, or BCM6838X_FAILED when the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_SetVlanTranslation(uint32_t port);

/// Switches a port to trunk mode, as BCM6838X_SetVlanTransparent does to transparent mode.
///
/// @param[in] port UNI port, 1..32
/// @return BCM6838X_OK, or BCM6838X_FAILED when the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_SetVlanTrunk(uint32_t port);

/// Switches a port to ZTE trunk mode, as BCM6838X_SetVlanTransparent does to transparent mode.
///
/// @param[in] port UNI port, 1..32
/// @return BCM6838X_OK, or BCM6838X_FAILED when the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_SetZteVlanTrunk(uint32_t port);

/// Switches a port to ZTE stacking mode, as BCM6838X_SetVlanTransparent does to transparent mode.
///
/// @param[in] port UNI port, 1..32
/// @return BCM6838X_OK, or BCM6838X_FAILED when the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_SetZteStacking(uint32_t port);

/// Switches a port to BDCOM stacking mode, as BCM6838X_SetVlanTransparent does to transparent mode.
///
/// @param[in] port UNI port, 1..32
/// @return BCM6838X_OK, or BCM6838X_FAILED when the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_SetBdcomStacking(uint32_t port);

/// Makes the current configuration of a port effective, whether it has changed or not: logs, takes
/// the port administratively down, removes its rules, creates them anew, takes the port up,
/// whatever its state was, and commits.
///
/// @param[in] port UNI port, 1..32; ports without an interface have no administrative state
/// @return BCM6838X_OK, or BCM6838X_FAILED when the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_ApplyVlan(uint32_t port);

/// Removes the rules of a port's applied configuration from the chip. Neither copy of the
/// configuration changes. Logs nothing itself.
///
/// @param[in] port UNI port, 1..32
/// @return BCM6838X_OK, or BCM6838X_FAILED when the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_ClearVlanRule(uint32_t port);

/// Creates the rules of a port's current configuration in the chip and hands the configuration of
/// all ports to the driver (BRMGR_CMD_VLAN_REBUILD), in every mode. Does not commit. Logs nothing
/// itself.
///
/// @param[in] port UNI port, 1..32
/// @return BCM6838X_OK, or BCM6838X_FAILED when the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_RebuildVlanRule(uint32_t port);

/// Adds a VLAN to a port's trunk list and commits; the rules follow with the next
/// BCM6838X_ApplyVlan or change of mode. A VLAN that is in the list already changes nothing and
/// commits nothing; a list of 512 entries drops the VLAN silently. Logs the request.
///
/// @param[in] req 4 bytes readable: `port` and `vid`, which is not checked
/// @return BCM6838X_OK; BCM6838X_INVALID with a log line when `req` is null; BCM6838X_FAILED when
/// the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_AddVlanTrunk(const PortVlanTrunkEntry* req);

/// Takes a VLAN out of a port's trunk list, where it stands first, and does not commit, so that the
/// next removal of rules still finds it. Logs the request.
///
/// @param[in] req 4 bytes readable: `port` and `vid`
/// @return BCM6838X_OK, also when the VLAN is not in the list; BCM6838X_INVALID with a log line
/// when `req` is null; BCM6838X_FAILED when the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_DelVlanTrunk(const PortVlanTrunkEntry* req);

/// Does what BCM6838X_AddVlanTrunk does, on the same list.
///
/// @param[in] req 4 bytes readable: `port` and `vid`, which is not checked
/// @return BCM6838X_OK; BCM6838X_INVALID with a log line when `req` is null; BCM6838X_FAILED when
/// the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_AddZteVlanTrunk(const PortVlanTrunkEntry* req);

/// Does what BCM6838X_DelVlanTrunk does, on the same list.
///
/// @param[in] req 4 bytes readable: `port` and `vid`
/// @return BCM6838X_OK, also when the VLAN is not in the list; BCM6838X_INVALID with a log line
/// when `req` is null; BCM6838X_FAILED when the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_DelZteVlanTrunk(const PortVlanTrunkEntry* req);

/// Adds a pair to a port's translation list and commits; the rules follow with the next
/// BCM6838X_ApplyVlan or change of mode. Pairs that differ in any field stand beside each other. A
/// pair that is in the list already changes nothing and commits nothing; a list of 512 entries
/// drops the pair silently. Logs the request.
///
/// @param[in] req 10 bytes readable: the pair, whose VIDs and priorities are not checked
/// @return BCM6838X_OK; BCM6838X_INVALID with a log line when `req` is null; BCM6838X_FAILED when
/// the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_AddVlanTranslation(const PortVlanTransEntry* req);

/// Takes a pair out of a port's translation list, where it stands first, and does not commit, so
/// that the next removal of rules still finds it. Logs the request.
///
/// @param[in] req 10 bytes readable: the pair, all of whose fields count
/// @return BCM6838X_OK, also when the pair is not in the list; BCM6838X_INVALID with a log line
/// when `req` is null; BCM6838X_FAILED when the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_DelVlanTranslation(const PortVlanTransEntry* req);

/// Adds an entry for each customer VID of a range to a port's stacking list, but for those that are
/// in it and those for which it has no room; creates the port's rules without removing the earlier
/// ones first, so that in BDCOM stacking mode the rules of earlier entries are created a second
/// time, which is intended; commits. The range has cvidEnd - cvidStart + 1 VIDs, the difference
/// being taken as an unsigned word.
///
/// @param[in,out] req 16 bytes readable and writable; `cvidStart` is left at cvidEnd + 1
/// @return BCM6838X_OK; BCM6838X_INVALID, and nothing is changed, when `req` is null (with a log
/// line), when `port` is 0 or above the number of Ethernet ports, or when `svid` is not 1..4095;
/// BCM6838X_FAILED when the port is out of range of the tables
BCM6838X_EXPORT uint32_t BCM6838X_AddVlanStacking(PortVlanStackRange* req);

/// Removes a port's rules, takes the customer VIDs of the first half of a range out of its stacking
/// list, creates the rules anew and commits. Of d = cvidEnd - cvidStart, taken as an unsigned word,
/// d / 2 + 1 VIDs are taken out, and 2^31 + 1 when d is 0, each where it stands first; this is
/// intended. VIDs that are not in the list change nothing.
///
/// @param[in,out] req 16 bytes readable and writable; `svid` and `stackParam` must be those of the
///   entries; `cvidStart` is left behind the last VID that was looked for
/// @return BCM6838X_OK; BCM6838X_INVALID with a log line when `req` is null; BCM6838X_FAILED when
/// the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_DelVlanStacking(PortVlanStackRange* req);

/// Sets a port's VID, for which the TPID becomes 0x8100, and commits. In every mode but transparent
/// and ZTE trunk, whose rules do not use it, the rules are removed before and created after the
/// change. Logs the values.
///
/// @param[in] port UNI port, 1..32
/// @param[in] pvid VID; only the low 16 bits count; not checked
/// @return BCM6838X_OK; BCM6838X_INVALID when the port has that VID already (nothing is done);
/// BCM6838X_FAILED when the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_SetPortPvid(uint32_t port, uint32_t pvid);

/// Sets a port's default priority and commits. In every mode but transparent and ZTE trunk, whose
/// rules do not use it, the rules are removed before and created after the change. Logs the values.
///
/// @param[in] port UNI port, 1..32
/// @param[in] priority priority; only the low 8 bits count
/// @return BCM6838X_OK; BCM6838X_INVALID when the port has that priority already (nothing is done);
/// BCM6838X_FAILED when the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_SetPortPriority(uint32_t port, uint32_t priority);

/// Sets a port's VLAN mode by its code, and names the port to the driver: BRMGR_CMD_CTC_MODE_B for
/// transparent and ZTE stacking mode, else BRMGR_CMD_CTC_MODE_A.
///
/// @param[in] port UNI port, 1..32
/// @param[in] mode 0 transparent, 1 tag, 2 and 3 translation, 4 and 20 trunk, 19 ZTE trunk, 160 ZTE
/// stacking, 253 BDCOM stacking; any other code leaves the mode as it is. Further arguments are not
/// used.
/// @return the command's result (codes of BCM6838X_Ioctl), or BCM6838X_FAILED when the port is out
/// of range
BCM6838X_EXPORT uint32_t BCM6838X_SetPortCtcMode(uint32_t port, uint32_t mode, ...);

/// Makes a port a member of a VLAN, and of no other, in the table of VLAN membership. The table is
/// the library's own: nothing is sent. It has room for 4096 VLANs, in the order of their VIDs.
///
/// @param[in] port UNI port in the low 8 bits; the port's bit is bit (port - 1) modulo 32
/// @param[in] vid VID in the low 16 bits; not checked
/// @return BCM6838X_OK, or BCM6838X_FAILED when the table holds 4096 VLANs already (nothing is
/// changed)
BCM6838X_EXPORT uint32_t BCM6838X_SetVlanEntry(uint32_t port, uint32_t vid);

/// Reads the members of a VLAN from the table of VLAN membership.
///
/// @param[in] vid VID in the low 16 bits
/// @param[out] portMask bit p - 1 is set for each member p; left as it was when the table has no
///   such VLAN
/// @param[out] extra 0; left as it was when the table has no such VLAN
/// @return BCM6838X_OK, found or not, or BCM6838X_INVALID with a log line when a pointer is null
BCM6838X_EXPORT uint32_t BCM6838X_GetVlanPorts(uint32_t vid, uint32_t* portMask, uint32_t* extra);

/// Reads the first VLAN of the table of VLAN membership, and leaves the place alone at which
/// BCM6838X_GetNextVlanEntry goes on: a walk is complete only when the one before went to its end.
///
/// @param[out] vid VID
/// @param[out] portMask bit p - 1 is set for each member p
/// @param[out] attr 0
/// @return BCM6838X_OK; BCM6838X_END when the table is empty (the outputs are left as they were);
/// BCM6838X_INVALID with a log line when a pointer is null
BCM6838X_EXPORT uint32_t BCM6838X_GetFirstVlanEntry(uint16_t* vid, uint32_t* portMask,
                                                    uint32_t* attr);

/// Reads the next VLAN of the table of VLAN membership; behind the last one the walk starts over
/// behind the first.
///
/// @param[out] vid VID
/// @param[out] portMask bit p - 1 is set for each member p
/// @param[out] attr 0
/// @return BCM6838X_OK; BCM6838X_END behind the last VLAN (the outputs are left as they were);
/// BCM6838X_INVALID with a log line when a pointer is null
BCM6838X_EXPORT uint32_t BCM6838X_GetNextVlanEntry(uint16_t* vid, uint32_t* portMask,
                                                   uint32_t* attr);

/// Gives the unit's own IP traffic a VLAN tag upstream, with priority 7
/// (BRMGR_CMD_IPHOST_VLAN_ADD), and logs the tag and the command's result.
///
/// @param[in] vid VID, 1..4095; the low 16 bits go into the tag, unchecked
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_AddIphostVlan(uint32_t vid);

/// Takes the VLAN tag of the unit's own IP traffic away (BRMGR_CMD_IPHOST_VLAN_DEL), and logs the
/// tag and the command's result.
///
/// @param[in] vid VID, 1..4095; the low 16 bits go into the tag, unchecked
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_DelIphostVlan(uint32_t vid);

/// Does nothing.
///
/// @param[in] vid not used
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_AddVlan(uint32_t vid, ...);

/// Does nothing.
///
/// @param[in] vid not used
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_DelVlan(uint32_t vid, ...);

BCM6838X_END_DECLS

#endif
