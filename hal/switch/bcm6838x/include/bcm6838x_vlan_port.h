/// @file
/// The VLAN configuration of the UNI ports: start-up of the VLAN area, modes, lists, port VID,
/// priority, CTC mode, the table of VLAN membership and the VLAN of the unit's own IP traffic. What
/// holds for all operations is said in bcm6838x_api.h.
///
/// The library keeps two copies of the configuration of ports 1..32: the current one, which these
/// operations change, and the applied one, by which rules are removed from the chip. To commit is
/// to copy the current configuration of all ports over the applied one.
///
/// Unless an operation says otherwise: it takes the UNI port in the low 8 bits of `port`, or in the
/// `port` of its request; a port outside 1..32 is refused with the port line and BCM6838X_FAILED,
/// and nothing else is done; the results of device commands and of the VLAN mode's own operations
/// are not looked at. "The builders" are the operations of bcm6838x_vlan_mode.h for a port's mode;
/// they send BRMGR_CMD_FLOW_ADD, BRMGR_CMD_FLOW_DEL, BRMGR_CMD_VLAN_ACTION_ADD and
/// BRMGR_CMD_VLAN_ACTION_DEL and log their own lines.
#ifndef BCM6838X_VLAN_PORT_H
#define BCM6838X_VLAN_PORT_H

#include <stdint.h>

#include "bcm6838x_api.h"
#include "brmgr_record.h"

BCM6838X_BEGIN_DECLS

// clang-format off
/// What a port does with VLAN tags, which are also the mode codes of BCM6838X_SetPortCtcMode:
/// X(code, NAME, name in words). The second translation mode is handled like the first and hybrid
/// like trunk; no operation stores either. NONE is that of a port after start-up.
#define BCM6838X_VLAN_MODE_LIST(X)                \
  X(0,   TRANSPARENT,    "transparent")           \
  X(1,   TAG,            "tag")                   \
  X(2,   TRANSLATION,    "translation")           \
  X(3,   TRANSLATION_2,  "translation")           \
  X(4,   TRUNK,          "trunk")                 \
  X(19,  ZTE_TRUNK,      "ZTE trunk")             \
  X(20,  HYBRID,         "hybrid")                \
  X(160, ZTE_STACKING,   "ZTE stacking")          \
  X(253, BDCOM_STACKING, "BDCOM stacking")        \
  X(255, NONE,           "none")
// clang-format on

/// BCM6838X_VLAN_MODE_TAG and its siblings.
enum {
/// @cond
#define BCM6838X_DECLARE_VLAN_MODE(code, name, text) BCM6838X_VLAN_MODE_##name = (code),
  BCM6838X_VLAN_MODE_LIST(BCM6838X_DECLARE_VLAN_MODE)
#undef BCM6838X_DECLARE_VLAN_MODE
  /// @endcond
};

/// A range of customer VLANs to put into a port's stacking list or to take out of it. Customer VIDs
/// are words here and in the list; the rules of BDCOM stacking mode use their low 12 bits as the
/// VID.
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
/// removes the outer tag and whose earlier index stays in use when the command fails; clears the
/// configuration of every Ethernet port (at most 32) and gives it no mode (255), while that of the
/// other ports stays as it is, transparent from the start; commits; clears the tables of VLAN
/// objects, actions and flows. No rule is created, and what those tables held is forgotten, not
/// removed from the chip. Logs nothing.
///
/// @par Sends
/// BRMGR_CMD_VLAN_ACTION_ADD.
///
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_InitVlan(void);

/// Switches a port to transparent mode: removes the rules of the applied configuration
/// (BCM6838X_ClearVlanRule), stores the mode, creates the rules of the current configuration
/// (BCM6838X_RebuildVlanRule) and commits. The rules of transparent mode are those of
/// BCM6838X_AddUsTransparent, in performance mode those of BCM6838X_AddUsTransparent_Perf. A port
/// that is in the mode already is left alone: only the line is logged.
///
/// @par Sends
/// What the builders of the old and of the new mode send; BRMGR_CMD_VLAN_REBUILD.
/// @par Logs
/// "###### %s(%d) port=%u" on entry; the port line.
///
/// @param[in] port UNI port, 1..32
/// @return BCM6838X_OK, or BCM6838X_FAILED when the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_SetVlanTransparent(uint32_t port);

/// Switches a port to tag mode, as BCM6838X_SetVlanTransparent does to transparent mode.
///
/// @par Sends
/// What the builders of the old and of the new mode send; BRMGR_CMD_VLAN_REBUILD.
/// @par Logs
/// "###### %s(%d) port=%u" on entry; the port line.
///
/// @param[in] port UNI port, 1..32
/// @return BCM6838X_OK, or BCM6838X_FAILED when the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_SetVlanTag(uint32_t port);

/// Switches a port to translation mode, as BCM6838X_SetVlanTransparent does to transparent
/// mode.
///
/// @par Sends
/// What the builders of the old and of the new mode send; BRMGR_CMD_VLAN_REBUILD.
/// @par Logs
/// "###### %s(%d) port=%u" on entry; the port line.
///
/// @param[in] port UNI port, 1..32
/// @return BCM6838X_OK, or BCM6838X_FAILED when the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_SetVlanTranslation(uint32_t port);

/// Switches a port to trunk mode, as BCM6838X_SetVlanTransparent does to transparent mode. Its
/// rules are those of hybrid mode.
///
/// @par Sends
/// What the builders of the old and of the new mode send; BRMGR_CMD_VLAN_REBUILD.
/// @par Logs
/// "###### %s(%d), port=%u" on entry, whose comma is its own; the port line.
///
/// @param[in] port UNI port, 1..32
/// @return BCM6838X_OK, or BCM6838X_FAILED when the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_SetVlanTrunk(uint32_t port);

/// Switches a port to ZTE trunk mode, as BCM6838X_SetVlanTransparent does to transparent mode.
///
/// @par Sends
/// What the builders of the old and of the new mode send; BRMGR_CMD_VLAN_REBUILD.
/// @par Logs
/// "###### %s(%d) port=%u" on entry; the port line.
///
/// @param[in] port UNI port, 1..32
/// @return BCM6838X_OK, or BCM6838X_FAILED when the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_SetZteVlanTrunk(uint32_t port);

/// Switches a port to ZTE stacking mode, as BCM6838X_SetVlanTransparent does to transparent
/// mode.
///
/// @par Sends
/// What the builders of the old and of the new mode send; BRMGR_CMD_VLAN_REBUILD.
/// @par Logs
/// "###### %s(%d) port=%u" on entry; the port line.
///
/// @param[in] port UNI port, 1..32
/// @return BCM6838X_OK, or BCM6838X_FAILED when the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_SetZteStacking(uint32_t port);

/// Switches a port to BDCOM stacking mode, as BCM6838X_SetVlanTransparent does to transparent
/// mode.
///
/// @par Sends
/// What the builders of the old and of the new mode send; BRMGR_CMD_VLAN_REBUILD.
/// @par Logs
/// "###### %s(%d) port=%u" on entry; the port line.
///
/// @param[in] port UNI port, 1..32
/// @return BCM6838X_OK, or BCM6838X_FAILED when the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_SetBdcomStacking(uint32_t port);

/// Makes the current configuration of a port effective, whether it has changed or not: takes the
/// port administratively down (BCM6838X_SetPortAdminState), removes its rules, creates them anew,
/// takes the port up, whatever its state was, and commits.
///
/// @par Sends
/// BRMGR_CMD_PORT_ADMIN before and after, for ports 1..5; what the builders of the applied and of
/// the current mode send; BRMGR_CMD_VLAN_REBUILD.
/// @par Logs
/// "###### %s(%d) port=%u" on entry; the port line.
///
/// @param[in] port UNI port, 1..32; ports above 5 have no administrative state
/// @return BCM6838X_OK, or BCM6838X_FAILED when the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_ApplyVlan(uint32_t port);

/// Removes the rules of a port's applied configuration from the chip, by the builder that deletes
/// those of its mode, from the applied PVID, priority and list; a mode that is none has no rules.
/// Neither copy of the configuration changes.
///
/// @par Sends
/// What the builder of the applied mode sends.
/// @par Logs
/// The port line.
///
/// @param[in] port UNI port, 1..32
/// @return BCM6838X_OK, or BCM6838X_FAILED when the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_ClearVlanRule(uint32_t port);

/// Creates the rules of a port's current configuration in the chip, by the builder that adds those
/// of its mode, and hands the configuration of all ports to the driver, in every mode, also when
/// the port has none. Does not commit.
///
/// @par Sends
/// What the builder of the current mode sends; BRMGR_CMD_VLAN_REBUILD.
/// @par Logs
/// The port line.
///
/// @param[in] port UNI port, 1..32
/// @return BCM6838X_OK, or BCM6838X_FAILED when the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_RebuildVlanRule(uint32_t port);

/// Adds a VLAN to the first free entry of a port's trunk list and commits; the rules follow with
/// the next BCM6838X_ApplyVlan or change of mode. A VLAN that is in the list already changes
/// nothing and commits nothing. A list of 512 entries drops the VLAN silently, and commits all the
/// same. Sends nothing.
///
/// @par Logs
/// "###### %s(%d), port=%u, vid=%d" on entry; the port line; the null line.
///
/// @param[in] req 4 bytes readable: `port` and `vid`, 1..4095, which is not checked: 0 takes an
///   entry that the rules skip, any other value is built as it is
/// @return BCM6838X_OK; BCM6838X_INVALID when `req` is null; BCM6838X_FAILED when the port is out
///   of range
BCM6838X_EXPORT uint32_t BCM6838X_AddVlanTrunk(const PortVlanTrunkEntry* req);

/// Takes a VLAN out of a port's trunk list, where it stands first, and does not commit, so that the
/// next removal of rules still finds it. Any operation that commits, on whichever port, takes it
/// out of the applied configuration too; rules of it that were not removed before then stay in the
/// chip. Sends nothing.
///
/// @par Logs
/// "###### %s(%d), port=%u, vid=%u" on entry; the port line; the null line.
///
/// @param[in] req 4 bytes readable: `port` and `vid`
/// @return BCM6838X_OK, also when the VLAN is not in the list; BCM6838X_INVALID when `req` is null;
///   BCM6838X_FAILED when the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_DelVlanTrunk(const PortVlanTrunkEntry* req);

/// Does what BCM6838X_AddVlanTrunk does, on the same list. Sends nothing.
///
/// @par Logs
/// "###### %s(%d) port=%d, vid=%d" on entry; the port line; the null line.
///
/// @param[in] req 4 bytes readable: `port` and `vid`, 1..4095, which is not checked: 0 takes an
///   entry that the rules skip, any other value is built as it is
/// @return BCM6838X_OK; BCM6838X_INVALID when `req` is null; BCM6838X_FAILED when the port is out
///   of range
BCM6838X_EXPORT uint32_t BCM6838X_AddZteVlanTrunk(const PortVlanTrunkEntry* req);

/// Does what BCM6838X_DelVlanTrunk does, on the same list. Sends nothing.
///
/// @par Logs
/// "###### %s(%d) port=%d, vid=%d" on entry; the port line; the null line.
///
/// @param[in] req 4 bytes readable: `port` and `vid`
/// @return BCM6838X_OK, also when the VLAN is not in the list; BCM6838X_INVALID when `req` is null;
///   BCM6838X_FAILED when the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_DelZteVlanTrunk(const PortVlanTrunkEntry* req);

/// Adds a pair to the first free entry of a port's translation list and commits; the rules follow
/// with the next BCM6838X_ApplyVlan or change of mode. Pairs that differ in any field stand beside
/// each other. A pair that is in the list already changes nothing and commits nothing. A list of
/// 512 entries drops the pair silently, and commits all the same. Sends nothing.
///
/// @par Logs
/// "###### %s(%d) port=%d, vid(%d->%d)" on entry, with the local VID and that of the network; the
/// port line; the null line.
///
/// @param[in] req 10 bytes readable: the pair; VIDs 1..4095 and priorities 0..7, which are not
///   checked: with a VID of 0 it takes an entry that the rules skip, any other value is built as it
///   is
/// @return BCM6838X_OK; BCM6838X_INVALID when `req` is null; BCM6838X_FAILED when the port is out
///   of range
BCM6838X_EXPORT uint32_t BCM6838X_AddVlanTranslation(const PortVlanTransEntry* req);

/// Takes a pair out of a port's translation list, where it stands first, and does not commit, with
/// the consequences of BCM6838X_DelVlanTrunk. Sends nothing.
///
/// @par Logs
/// "###### %s(%d) port=%d, vid(%d->%d)" on entry, with the local VID and that of the network; the
/// port line; the null line.
///
/// @param[in] req 10 bytes readable: the pair, all of whose fields count
/// @return BCM6838X_OK, also when the pair is not in the list; BCM6838X_INVALID when `req` is null;
///   BCM6838X_FAILED when the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_DelVlanTranslation(const PortVlanTransEntry* req);

/// Adds an entry for each customer VID of a range to a port's stacking list, but for those that are
/// in it and those for which it has no room (512 entries), and sets `stackingEnable` to 1 when it
/// has stored one; creates the port's rules (BCM6838X_RebuildVlanRule) without removing the earlier
/// ones first, so that in BDCOM stacking mode the rules of earlier entries are created a second
/// time; commits. The range has cvidEnd - cvidStart + 1 VIDs, the difference
/// being taken as an unsigned word: an end below the start fills the list.
///
/// @par Sends
/// What the builder of the port's mode sends; BRMGR_CMD_VLAN_REBUILD.
/// @par Logs
/// Nothing but the port line, for a port above 32 of a unit that has so many.
///
/// @param[in,out] req 16 bytes readable and writable: `port`, 1 to the number of Ethernet ports;
///   `svid`, 1..4095; any `stackParam`, of which only 2 is built; `cvidStart`, all bits of which
///   count, is left at cvidEnd + 1
/// @return BCM6838X_OK; BCM6838X_INVALID, with nothing changed, when `req` is null or its `port` or
///   `svid` is out of range; BCM6838X_FAILED when the tables have no such port
BCM6838X_EXPORT uint32_t BCM6838X_AddVlanStacking(PortVlanStackRange* req);

/// Removes a port's rules (BCM6838X_ClearVlanRule), takes the customer VIDs of the first half of a
/// range out of its stacking list, creates the rules anew (BCM6838X_RebuildVlanRule) and commits.
/// Of d = cvidEnd - cvidStart, taken as an unsigned word, d / 2 + 1 VIDs are taken out, and 2^31 +
/// 1 when d is 0, each where it stands first. VIDs that are not in the list
/// change nothing. When it has no entry left, `stackingEnable` becomes 0.
///
/// @par Sends
/// What the builders of the applied and of the current mode send; BRMGR_CMD_VLAN_REBUILD.
/// @par Logs
/// The port line; the null line.
///
/// @param[in,out] req 16 bytes readable and writable; `svid` and `stackParam` must be those of the
///   entries and are not checked; `cvidStart` is left behind the last VID that was looked for
/// @return BCM6838X_OK; BCM6838X_INVALID when `req` is null; BCM6838X_FAILED when the port is out
///   of range
BCM6838X_EXPORT uint32_t BCM6838X_DelVlanStacking(PortVlanStackRange* req);

/// Sets a port's VID, for which the TPID becomes 0x8100 and the tag attribute 0, and commits. In
/// every mode but transparent and ZTE trunk, whose rules do not use it, also in none, the rules are
/// removed before and created after the change (BCM6838X_ClearVlanRule, BCM6838X_RebuildVlanRule).
///
/// @par Sends
/// Unless the mode is transparent or ZTE trunk, what its builders send and BRMGR_CMD_VLAN_REBUILD.
/// @par Logs
/// "###### %s(%d) port=%u, pvid=%u" on entry; the port line.
///
/// @param[in] port UNI port, 1..32
/// @param[in] pvid VID, 1..4095; only the low 16 bits count. Not checked: any other value is stored
///   and built as it is, so that the WAN object refuses it with its line, while the flows and the
///   action carry it and 4096 stands for any VID downstream; frames that the library tags itself
///   get its low 12 bits. 0 is what a port has before.
/// @return BCM6838X_OK; BCM6838X_INVALID when the port has that VID already (nothing is done);
///   BCM6838X_FAILED when the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_SetPortPvid(uint32_t port, uint32_t pvid);

/// Sets a port's default priority and commits. In every mode but transparent and ZTE trunk, whose
/// rules do not use it, also in none, the rules are removed before and created after the change
/// (BCM6838X_ClearVlanRule, BCM6838X_RebuildVlanRule).
///
/// @par Sends
/// Unless the mode is transparent or ZTE trunk, what its builders send and BRMGR_CMD_VLAN_REBUILD.
/// @par Logs
/// "###### %s(%d) port=%u, pri=%u" on entry, with the low 8 bits; the port line.
///
/// @param[in] port UNI port, 1..32
/// @param[in] priority priority, 0..7; only the low 8 bits count. Not checked: 8..255 are stored,
///   and go as they are into the action's tag and, as the queue, into the flow; frames that the
///   library tags itself get the low 3 bits. 0 is what a port has before.
/// @return BCM6838X_OK; BCM6838X_INVALID when the port has that priority already (nothing is done);
///   BCM6838X_FAILED when the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_SetPortPriority(uint32_t port, uint32_t priority);

/// Sets a port's VLAN mode by its code, with the mode setter of that mode, and names the port to
/// the driver, also when the port is in the mode already. The codes 3 and 20 are stored as 2 and 4.
/// A code that names no mode changes no configuration and refuses no port.
///
/// @par Sends
/// What the mode setter sends; then BRMGR_CMD_CTC_MODE_B for transparent and ZTE
/// stacking mode, BRMGR_CMD_CTC_MODE_A for any other code, with the low 8 bits of the port.
/// @par Logs
/// The port line, for a code that names a mode.
///
/// @param[in] port UNI port, 1..32
/// @param[in] mode a mode of BCM6838X_VLAN_MODE_LIST; NONE counts as a code that names no mode.
///   Further arguments are not used.
/// @return the result of the command that names the port (codes of BCM6838X_Ioctl), or
///   BCM6838X_FAILED, without a command, when the code names a mode and the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_SetPortCtcMode(uint32_t port, uint32_t mode, ...);

/// Makes a port a member of a VLAN, and of no other, in the table of VLAN membership. The table is
/// the library's own. It has room for 4096 VLANs, in the order of their VIDs; a VLAN that loses its
/// last member leaves it. Sends and logs nothing.
///
/// @param[in] port UNI port in the low 8 bits; the port's bit is bit (port - 1) modulo 32
/// @param[in] vid VID in the low 16 bits; not checked
/// @return BCM6838X_OK, or BCM6838X_FAILED when the table holds 4096 VLANs already (nothing is
///   changed, not even for a port that only moves between them)
BCM6838X_EXPORT uint32_t BCM6838X_SetVlanEntry(uint32_t port, uint32_t vid);

/// Reads the members of a VLAN from the table of VLAN membership. Sends and logs nothing.
///
/// @param[in] vid VID in the low 16 bits
/// @param[out] portMask bit p - 1 is set for each member p; left as it was when the table has no
///   such VLAN
/// @param[out] extra 0; left as it was when the table has no such VLAN
/// @return BCM6838X_OK, found or not, or BCM6838X_INVALID when a pointer is null
BCM6838X_EXPORT uint32_t BCM6838X_GetVlanPorts(uint32_t vid, uint32_t* portMask, uint32_t* extra);

/// Reads the first VLAN of the table of VLAN membership, and leaves the place alone at which
/// BCM6838X_GetNextVlanEntry goes on: a walk is complete only when the one before went to its end.
/// Sends and logs nothing.
///
/// @param[out] vid VID
/// @param[out] portMask bit p - 1 is set for each member p
/// @param[out] attr 0
/// @return BCM6838X_OK; BCM6838X_END when the table is empty (the outputs are left as they were);
///   BCM6838X_INVALID when a pointer is null
BCM6838X_EXPORT uint32_t BCM6838X_GetFirstVlanEntry(uint16_t* vid, uint32_t* portMask,
                                                    uint32_t* attr);

/// Reads the next VLAN of the table of VLAN membership; behind the last one the walk starts over
/// behind the first. Sends and logs nothing.
///
/// @param[out] vid VID
/// @param[out] portMask bit p - 1 is set for each member p
/// @param[out] attr 0
/// @return BCM6838X_OK; BCM6838X_END behind the last VLAN (the outputs are left as they were);
///   BCM6838X_INVALID when a pointer is null
BCM6838X_EXPORT uint32_t BCM6838X_GetNextVlanEntry(uint16_t* vid, uint32_t* portMask,
                                                   uint32_t* attr);

/// Gives the unit's own IP traffic a VLAN tag upstream, with priority 7.
///
/// @par Sends
/// BRMGR_CMD_IPHOST_VLAN_ADD.
/// @par Logs
/// "Upstream ip host packets Tci[%04x],ret = %lu ", with the tag control information that was sent
/// and the command's result.
///
/// @param[in] vid VID, 1..4095; not checked: the low 16 bits are combined with 0xE000 by OR
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_AddIphostVlan(uint32_t vid);

/// Takes the VLAN tag of the unit's own IP traffic away.
///
/// @par Sends
/// BRMGR_CMD_IPHOST_VLAN_DEL.
/// @par Logs
/// "Upstream ip host packets remove Tci[%04x],ret = %lu ", with the tag control information that
/// was sent and the command's result.
///
/// @param[in] vid VID, 1..4095; not checked: the low 16 bits are combined with 0xE000 by OR
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_DelIphostVlan(uint32_t vid);

/// Does nothing, sends and logs nothing.
///
/// @param[in] vid not used
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_AddVlan(uint32_t vid, ...);

/// Does nothing, sends and logs nothing.
///
/// @param[in] vid not used
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_DelVlan(uint32_t vid, ...);

BCM6838X_END_DECLS

#endif
