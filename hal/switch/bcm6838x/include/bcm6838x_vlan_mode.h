/// @file
/// The builders of the port VLAN modes: each pair adds and deletes the rules of one mode at one UNI
/// port. The configuration of a port calls them (BCM6838X_RebuildVlanRule, BCM6838X_ClearVlanRule).
/// A mode is to be deleted, with the arguments of its add, before another is added. What holds for
/// all operations is said in bcm6838x_api.h, and here, once:
///
/// - **Upstream flows.** Adding one sends BRMGR_CMD_FLOW_ADD; it takes the first free of the port's
///   256 slots, and when there is none it stays in the device, unrecorded, and no delete removes
///   it. It names the port's policer if the port has one (BCM6838X_SetQosUsPolicer). When the
///   command fails, **the add line** is logged, "%s,%d, add us icIndex=%ld flowIndex=%ld error",
///   the flow's reference on its VLAN action is given back, and the building goes on; nothing else
///   is rolled back. Deleting one sends BRMGR_CMD_FLOW_DEL; when the command fails, **the delete
///   line** is logged, "%s,%d, del us icIndex=%ld flowIndex=%ld error", and the deleting goes on.
/// - **The rest** is done by the operations of bcm6838x_vlan.h, which send their own commands, run
///   their own shell lines and log their own lines: VLAN actions (BCM6838X_AddVlanAction,
///   BRMGR_CMD_VLAN_ACTION_ADD; BCM6838X_DelVlanAction, BRMGR_CMD_VLAN_ACTION_DEL), shared
///   downstream flows (BCM6838X_AddDsIngressClass, BRMGR_CMD_FLOW_ADD; BCM6838X_DelDsIngressClass,
///   BRMGR_CMD_FLOW_DEL), WAN and LAN VLAN objects, port actions.
/// - **The result** is that of the last command by which an upstream flow was added or deleted
///   (codes of BCM6838X_Ioctl), BCM6838X_OK when none was sent; the commands of the downstream
///   flows and of the actions do not count.
/// - **The entry line** is "++++++%s,%d".
/// - **A delete** works from the port's slots and the given VIDs alone and frees all slots of the
///   port, whatever the driver answered.
/// - **Ranges.** The port is the low 16 bits of `port`. Outside 1..32 it is refused with the port
///   line and BCM6838X_FAILED; a null list with the null line and BCM6838X_INVALID. Nothing is
///   changed then. VIDs and priorities are not checked: VLAN objects refuse a VID out of range with
///   their line, and flows and actions are built with the value as it is.
#ifndef BCM6838X_VLAN_MODE_H
#define BCM6838X_VLAN_MODE_H

#include <stdint.h>

#include "bcm6838x_api.h"
#include "brmgr_record.h"

BCM6838X_BEGIN_DECLS

/// Transparent mode: frames pass unchanged. Upstream one flow of untagged frames and eight, one for
/// each priority, of single- and of double-tagged ones, which go to the queue of their priority;
/// downstream references on the flows of any VID: one of untagged, eight each of single- and
/// double-tagged frames. The references for tagged frames are taken only when the flow of priority
/// 7 succeeds. The port's data path is made transparent, and in multicast VLAN
/// mode 1 the port's multicast VLANs are taken out of the VLAN objects.
///
/// @par Sends
/// BRMGR_CMD_FLOW_ADD.
/// @par Runs
/// "bs /b/c port/index=lan%d transparent=yes"
/// @par Logs
/// The entry line; the port line; the add line.
///
/// @param[in] port UNI port, 1..32
/// @return the result of the last upstream flow's command; BCM6838X_FAILED for a port out of range
BCM6838X_EXPORT int32_t BCM6838X_AddUsTransparent(uint32_t port);

/// Transparent mode with the classes of performance mode: one upstream flow, which meets every
/// frame of the port, and one reference on the downstream flow of performance mode
/// (BCM6838X_AddDsIngressClass_Perf). Else as BCM6838X_AddUsTransparent.
///
/// @par Sends
/// BRMGR_CMD_FLOW_ADD.
/// @par Runs
/// "bs /b/c port/index=lan%d transparent=yes"
/// @par Logs
/// The entry line; the port line; the add line.
///
/// @param[in] port UNI port, 1..32
/// @return the result of the upstream flow's command; BCM6838X_FAILED for a port out of range
BCM6838X_EXPORT int32_t BCM6838X_AddUsTransparent_Perf(uint32_t port);

/// Ends transparent mode, of both kinds: the port's data path is no longer transparent, in
/// multicast VLAN mode 1 the port's multicast VLANs are put back, and every recorded flow is
/// deleted. A flow whose delete succeeds gives one reference on the downstream flow of any VID and
/// of its tag count back.
///
/// @par Sends
/// BRMGR_CMD_FLOW_DEL.
/// @par Runs
/// "bs /b/c port/index=lan%d transparent=no"
/// @par Logs
/// The entry line; the port line; the delete line.
///
/// @param[in] port UNI port, 1..32
/// @return the result of the last upstream flow's command; that of the shell line, 0 when it
///   succeeded, when no flow is recorded; BCM6838X_FAILED for a port out of range
BCM6838X_EXPORT int32_t BCM6838X_DelUsTransparent(uint32_t port);

/// Tag mode: an access port. Untagged upstream frames get the VLAN's tag; downstream a reference on
/// the flow of the VLAN's single-tagged frames. The WAN object of the VID gets the LAN VID 4096 of
/// the port.
///
/// @par Sends
/// BRMGR_CMD_VLAN_ACTION_ADD, BRMGR_CMD_FLOW_ADD; BRMGR_CMD_VLAN_ACTION_DEL when the flow is
/// refused.
/// @par Logs
/// The entry line; the port line; the add line.
///
/// @param[in] port UNI port, 1..32
/// @param[in] vid VID in the low 16 bits, 1..4095
/// @param[in] pbit priority of the tag, 0..7, in the low 8 bits; the low 16 bits are the queue
/// @return the result of the upstream flow's command; BCM6838X_FAILED for a port out of range
BCM6838X_EXPORT int32_t BCM6838X_AddUsTag(uint32_t port, uint32_t vid, uint32_t pbit);

/// Ends tag mode: deletes the port's first recorded flow with its action, and gives the reference
/// on the downstream flow and the WAN object's LAN VID back. Without a recorded flow nothing is
/// sent or given back.
///
/// @par Sends
/// BRMGR_CMD_FLOW_DEL, BRMGR_CMD_VLAN_ACTION_DEL.
/// @par Logs
/// The entry line; the port line; the delete line.
///
/// @param[in] port UNI port, 1..32
/// @param[in] vid VID in the low 16 bits
/// @param[in] pbit not used
/// @return the result of the upstream flow's command, BCM6838X_OK when none was sent;
///   BCM6838X_FAILED for a port out of range
BCM6838X_EXPORT int32_t BCM6838X_DelUsTag(uint32_t port, uint32_t vid, uint32_t pbit);

/// ZTE trunk mode: frames of the listed VLANs pass with their tag. Upstream eight flows a VLAN, one
/// for each priority, which is their queue; with each of them that succeeds the VLAN is added to
/// the WAN and LAN objects again. Downstream eight references on the flow of the VLAN, taken only
/// when the flow of priority 7 succeeds. A VID that stands in the list twice is built twice.
///
/// @par Sends
/// BRMGR_CMD_FLOW_ADD.
/// @par Logs
/// The entry line; the port line; the null line; the add line.
///
/// @param[in] port UNI port, 1..32
/// @param[in] list 512 entries must be readable; those with VID 0 are skipped, `port` is not looked
///   at
/// @return the result of the last upstream flow's command, BCM6838X_OK when none was sent;
///   BCM6838X_FAILED for a port out of range; BCM6838X_INVALID for a null list
BCM6838X_EXPORT int32_t BCM6838X_AddUsZTETrunk(uint32_t port, const PortVlanTrunkEntry* list);

/// Ends ZTE trunk mode: deletes every recorded flow of a listed VID, and with each of them,
/// whatever the driver answered, the VID of the WAN and LAN objects. A flow whose delete succeeds
/// gives one downstream reference back. Recorded flows of a VID that stands in the list twice are
/// deleted twice; those of a VID that does not stand there are not deleted, and forgotten.
///
/// @par Sends
/// BRMGR_CMD_FLOW_DEL.
/// @par Logs
/// The entry line; the port line; the null line; the delete line.
///
/// @param[in] port UNI port, 1..32
/// @param[in] list 512 entries must be readable; those with VID 0 are skipped, `port` is not looked
///   at
/// @return the result of the last upstream flow's command, BCM6838X_OK when none was sent;
///   BCM6838X_FAILED for a port out of range; BCM6838X_INVALID for a null list
BCM6838X_EXPORT int32_t BCM6838X_DelUsZTETrunk(uint32_t port, const PortVlanTrunkEntry* list);

/// Hybrid mode, also for trunk ports: the port is an access port of its PVID, as in tag mode, and
/// carries the listed VLANs as in ZTE trunk mode. A refused flow of the PVID does not stop the
/// others.
///
/// @par Sends
/// BRMGR_CMD_VLAN_ACTION_ADD, BRMGR_CMD_FLOW_ADD; BRMGR_CMD_VLAN_ACTION_DEL when the PVID's flow is
/// refused.
/// @par Logs
/// The entry line; the port line; the null line; the add line.
///
/// @param[in] port UNI port, 1..32
/// @param[in] pvid PVID in the low 16 bits, 1..4095
/// @param[in] priority priority of the PVID's tag and its queue, 0..7, in the low 8 bits
/// @param[in] list 512 entries must be readable; those with VID 0 are skipped, `port` is not looked
///   at
/// @return the result of the last upstream flow's command; BCM6838X_FAILED for a port out of range;
///   BCM6838X_INVALID for a null list
BCM6838X_EXPORT int32_t BCM6838X_AddUsHybrid(uint32_t port, uint32_t pvid, uint32_t priority,
                                             const PortVlanTrunkEntry* list);

/// Ends hybrid mode: the listed VLANs as BCM6838X_DelUsZTETrunk, then the recorded flow of untagged
/// frames with its action, its downstream reference and the WAN object's LAN VID. Without a
/// recorded flow of untagged frames the last two are not given back.
///
/// @par Sends
/// BRMGR_CMD_FLOW_DEL, BRMGR_CMD_VLAN_ACTION_DEL.
/// @par Logs
/// The entry line; the port line; the null line; the delete line.
///
/// @param[in] port UNI port, 1..32
/// @param[in] pvid PVID in the low 16 bits
/// @param[in] priority not used
/// @param[in] list 512 entries must be readable; those with VID 0 are skipped, `port` is not looked
///   at
/// @return the result of the last upstream flow's command, BCM6838X_OK when none was sent;
///   BCM6838X_FAILED for a port out of range; BCM6838X_INVALID for a null list
BCM6838X_EXPORT int32_t BCM6838X_DelUsHybrid(uint32_t port, uint32_t pvid, uint32_t priority,
                                             const PortVlanTrunkEntry* list);

/// Translation mode: the port is an access port of its PVID, as in tag mode, and frames of the
/// listed local VIDs are carried under their network VIDs. Upstream eight flows an entry, one for
/// each priority, which is their queue; they share an action that replaces VID and priority, and
/// with each of them that succeeds the pair is added to the WAN and LAN objects again. Downstream,
/// only when the flow of priority 7 succeeds, eight references on the flow of the network VID and
/// on an action, attached to the port, which also carries the network VID.
///
/// @par Sends
/// BRMGR_CMD_VLAN_ACTION_ADD, BRMGR_CMD_FLOW_ADD; BRMGR_CMD_VLAN_ACTION_DEL when flows are refused.
/// @par Logs
/// The entry line; the port line; the null line; the add line.
///
/// @param[in] port UNI port, 1..32
/// @param[in] pvid PVID in the low 16 bits, 1..4095
/// @param[in] priority priority of the PVID's tag and its queue, 0..7, in the low 8 bits
/// @param[in] list 512 entries must be readable; those without a local or a network VID are
///   skipped, `port` is not looked at, and the low 8 bits of the priorities are used
/// @return the result of the last upstream flow's command; BCM6838X_FAILED for a port out of range;
///   BCM6838X_INVALID for a null list
BCM6838X_EXPORT int32_t BCM6838X_AddUsTranslation(uint32_t port, uint32_t pvid, uint32_t priority,
                                                  const PortVlanTransEntry* list);

/// Ends translation mode: deletes every recorded flow of a listed local VID, each with one
/// reference on both actions and on the downstream flow, the port action and the VIDs of the
/// objects, whatever the driver answered; then the flow of untagged frames as BCM6838X_DelUsHybrid.
/// Entries of the same local VID each act on all recorded flows of it.
///
/// @par Sends
/// BRMGR_CMD_FLOW_DEL, BRMGR_CMD_VLAN_ACTION_DEL.
/// @par Logs
/// The entry line; the port line; the null line; the delete line.
///
/// @param[in] port UNI port, 1..32
/// @param[in] pvid PVID in the low 16 bits
/// @param[in] priority not used
/// @param[in] list 512 entries must be readable; those without a local or a network VID are
///   skipped, `port` is not looked at
/// @return the result of the last upstream flow's command, BCM6838X_OK when none was sent;
///   BCM6838X_FAILED for a port out of range; BCM6838X_INVALID for a null list
BCM6838X_EXPORT int32_t BCM6838X_DelUsTranslation(uint32_t port, uint32_t pvid, uint32_t priority,
                                                  const PortVlanTransEntry* list);

/// ZTE stacking: every frame is carried inside the PVID's tag, which is removed downstream.
/// Upstream a flow of untagged frames and eight of single-tagged ones, one for each priority, which
/// is their queue, all of one action. Downstream a reference on the flow of the PVID and, only when
/// the flow of priority 7 succeeds, eight on its flow of double-tagged frames; both get a port
/// action that removes the outer tag. The port's data path is made transparent, and in multicast
/// VLAN mode 1 the port's multicast VLANs are taken out of the VLAN objects.
///
/// @par Sends
/// BRMGR_CMD_VLAN_ACTION_ADD, BRMGR_CMD_FLOW_ADD; BRMGR_CMD_VLAN_ACTION_DEL when flows are refused.
/// @par Runs
/// "bs /b/c port/index=lan%d transparent=yes"
/// @par Logs
/// The port line, and then nothing else; the entry line, behind the shell line and the multicast
/// VLANs; the add line.
///
/// @param[in] port UNI port, 1..32
/// @param[in] pvid PVID in the low 16 bits, 1..4095
/// @param[in] priority priority of the tag and queue of untagged frames, 0..7, in the low 8 bits
/// @return the result of the last upstream flow's command; BCM6838X_FAILED for a port out of range
BCM6838X_EXPORT int32_t BCM6838X_AddUsZTEStacking(uint32_t port, uint32_t pvid, uint32_t priority);

/// Ends ZTE stacking: the port's data path is no longer transparent, in multicast VLAN mode 1 the
/// port's multicast VLANs are put back, and the recorded flow of untagged frames and those of
/// single-tagged ones are deleted, each with one reference on its action and its downstream flow,
/// and the port action. The WAN object's LAN VID is given back in any case.
///
/// @par Sends
/// BRMGR_CMD_FLOW_DEL, BRMGR_CMD_VLAN_ACTION_DEL.
/// @par Runs
/// "bs /b/c port/index=lan%d transparent=no"
/// @par Logs
/// The port line, and then nothing else; the entry line, behind the shell line and the multicast
/// VLANs; the delete line.
///
/// @param[in] port UNI port, 1..32
/// @param[in] pvid PVID in the low 16 bits
/// @param[in] priority not used
/// @return the result of the last upstream flow's command; that of the shell line, 0 when it
///   succeeded, when no flow is recorded; BCM6838X_FAILED for a port out of range
BCM6838X_EXPORT int32_t BCM6838X_DelUsZTEStacking(uint32_t port, uint32_t pvid, uint32_t priority);

/// BDCOM stacking: the port is an access port of its PVID, as in tag mode, and the customer VLANs
/// of the list are carried inside the tag of their service VLAN. Upstream one flow an entry, of
/// priority 0 and queue 0; downstream a reference on the service VLAN's flow of
/// double-tagged frames, and a port action that removes the outer tag. The pair is added to the WAN
/// and LAN objects before the flow is tried. Of `cvid` only the low 12 bits are the VID, although
/// all of them count when it is held against 0: 0x1001 builds VID 1, and 0x1000 builds VID 0, which
/// the VLAN objects refuse.
///
/// @par Sends
/// BRMGR_CMD_VLAN_ACTION_ADD, BRMGR_CMD_FLOW_ADD; BRMGR_CMD_VLAN_ACTION_DEL when flows are refused.
/// @par Logs
/// The entry line; the port line; the null line; the add line.
///
/// @param[in] port UNI port, 1..32
/// @param[in] pvid PVID in the low 16 bits, 1..4095
/// @param[in] priority priority of the PVID's tag and its queue, 0..7, in the low 8 bits
/// @param[in] list 512 entries must be readable; those take part whose `stackParam` is 2, whose
///   `port` is the port, and whose `cvid` and `svid` are not 0
/// @return the result of the last upstream flow's command; BCM6838X_FAILED for a port out of range;
///   BCM6838X_INVALID for a null list
BCM6838X_EXPORT int32_t BCM6838X_AddUsBDCOMStacking(uint32_t port, uint32_t pvid, uint32_t priority,
                                                    const PortVlanStackEntry* list);

/// Ends BDCOM stacking: for each entry that takes part, deletes the flow of the first slot of its
/// customer VID with its action, and gives the downstream reference and the VIDs of the objects
/// back; then the flow of untagged frames as BCM6838X_DelUsHybrid. The port action is sought at the
/// flow of the customer VID, so that it stays where the service VID is another.
/// For customer VID 0 the first slot that compares no VID is meant: that of the untagged flow, or a
/// free one, whose indexes of 0 are deleted like any others.
///
/// @par Sends
/// BRMGR_CMD_FLOW_DEL, BRMGR_CMD_VLAN_ACTION_DEL.
/// @par Logs
/// The entry line; the port line; the null line; the delete line.
///
/// @param[in] port UNI port, 1..32
/// @param[in] pvid PVID in the low 16 bits
/// @param[in] priority not used
/// @param[in] list 512 entries must be readable; they take part as in the add, and the low 12 bits
///   of `cvid` are the VID
/// @return the result of the last upstream flow's command, BCM6838X_OK when none was sent;
///   BCM6838X_FAILED for a port out of range; BCM6838X_INVALID for a null list
BCM6838X_EXPORT int32_t BCM6838X_DelUsBDCOMStacking(uint32_t port, uint32_t pvid, uint32_t priority,
                                                    const PortVlanStackEntry* list);

BCM6838X_END_DECLS

#endif
