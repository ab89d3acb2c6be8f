/// @file
/// The builders of the port VLAN modes: each pair adds and deletes the rules of one mode at one UNI
/// port. The configuration of a port calls them; the management layer calls them one at a time, and
/// nothing is locked.
///
/// The rules are built with records of the driver (flows, pooled VLAN actions) and shell lines
/// (VLAN objects, port actions). Every upstream flow takes the first free of the port's 256 slots;
/// a flow that finds none stays in the device, unrecorded, and no delete removes it. A refused flow
/// is logged, its VLAN action is given back, and the building goes on; nothing else is rolled back.
/// A delete works from the slots and the given VIDs alone, logs what the driver refuses, and frees
/// all slots of the port. A mode is to be deleted, with the arguments of its add, before another is
/// added.
///
/// The port is the low 16 bits of `port`. Outside 1..32 it is refused, with a log line and
/// BCM6838X_FAILED; a null list with a log line and BCM6838X_INVALID. Nothing is changed then.
#ifndef BCM6838X_VLAN_MODE_H
#define BCM6838X_VLAN_MODE_H

#include <stdint.h>

#include "bcm6838x_api.h"
#include "brmgr_record.h"

BCM6838X_BEGIN_DECLS

/// Transparent mode: frames pass unchanged. Upstream one flow of untagged frames and eight, one for
/// each priority, of single- and of double-tagged ones, which go to the queue of their priority;
/// downstream references on the flows of any VID. The port's data path is made transparent, and the
/// multicast VLANs that the port keeps are taken out of the VLAN objects. The references for tagged
/// frames are taken only when the flow of priority 7 succeeds, which is intended.
///
/// @param[in] port UNI port, 1..32
/// @return the result of the last flow command, BCM6838X_OK when it succeeded (codes of
///   BCM6838X_Ioctl); BCM6838X_FAILED for a port out of range
BCM6838X_EXPORT int32_t BCM6838X_AddUsTransparent(uint32_t port);

/// Transparent mode with the classes of performance mode: one upstream flow that meets every frame
/// of the port, and one reference on the downstream flow of performance mode. Else as
/// BCM6838X_AddUsTransparent.
///
/// @param[in] port UNI port, 1..32
/// @return the result of the flow command (codes of BCM6838X_Ioctl); BCM6838X_FAILED for a port out
///   of range
BCM6838X_EXPORT int32_t BCM6838X_AddUsTransparent_Perf(uint32_t port);

/// Ends transparent mode, of both kinds: the port's data path is no longer transparent, the
/// multicast VLANs are put back, and every recorded flow is deleted. A flow that the driver deletes
/// gives one reference on the downstream flow of its tag count back.
///
/// @param[in] port UNI port, 1..32
/// @return the result of the last flow command (codes of BCM6838X_Ioctl); that of the shell line,
///   0 when it succeeded, when no flow is recorded; BCM6838X_FAILED for a port out of range
BCM6838X_EXPORT int32_t BCM6838X_DelUsTransparent(uint32_t port);

/// Tag mode: an access port. Untagged upstream frames get the VLAN's tag; downstream a reference on
/// the flow of the VLAN.
///
/// @param[in] port UNI port, 1..32
/// @param[in] vid VID in the low 16 bits, 1..4095; the WAN object refuses others with a log line
/// @param[in] pbit priority of the tag, 0..7, in the low 8 bits; the low 16 bits are the queue
/// @return the result of the flow command (codes of BCM6838X_Ioctl); BCM6838X_FAILED for a port out
///   of range
BCM6838X_EXPORT int32_t BCM6838X_AddUsTag(uint32_t port, uint32_t vid, uint32_t pbit);

/// Ends tag mode: deletes the port's first recorded flow with its action, and gives the reference
/// on the downstream flow and the WAN object's VID back. Without a recorded flow nothing is sent.
///
/// @param[in] port UNI port, 1..32
/// @param[in] vid VID in the low 16 bits
/// @param[in] pbit not used
/// @return the result of the flow command (codes of BCM6838X_Ioctl), BCM6838X_OK when none was
///   sent; BCM6838X_FAILED for a port out of range
BCM6838X_EXPORT int32_t BCM6838X_DelUsTag(uint32_t port, uint32_t vid, uint32_t pbit);

/// ZTE trunk mode: frames of the listed VLANs pass with their tag. Upstream eight flows a VLAN, one
/// for each priority, which is their queue; with each of them the VLAN is added to the WAN and LAN
/// objects again. Downstream eight references on the flow of the VLAN, taken only when the flow of
/// priority 7 succeeds, which is intended. A VID that stands in the list twice is built twice.
///
/// @param[in] port UNI port, 1..32
/// @param[in] list 512 entries must be readable; those with VID 0 are skipped, `port` is not looked
///   at; not kept
/// @return the result of the last flow command (codes of BCM6838X_Ioctl), BCM6838X_OK when none was
///   sent; BCM6838X_FAILED for a port out of range; BCM6838X_INVALID for a null list
BCM6838X_EXPORT int32_t BCM6838X_AddUsZTETrunk(uint32_t port, const PortVlanTrunkEntry* list);

/// Ends ZTE trunk mode: deletes every recorded flow of a listed VID, and with each of them the VID
/// of the WAN and LAN objects. A flow that the driver deletes gives one downstream reference back.
/// Recorded flows of a VID that stands in the list twice are deleted twice.
///
/// @param[in] port UNI port, 1..32
/// @param[in] list 512 entries must be readable; those with VID 0 are skipped; not kept
/// @return the result of the last flow command (codes of BCM6838X_Ioctl), BCM6838X_OK when none was
///   sent; BCM6838X_FAILED for a port out of range; BCM6838X_INVALID for a null list
BCM6838X_EXPORT int32_t BCM6838X_DelUsZTETrunk(uint32_t port, const PortVlanTrunkEntry* list);

/// Hybrid mode, also for trunk ports: the port is an access port of its PVID, as in tag mode, and
/// carries the listed VLANs as in ZTE trunk mode.
///
/// @param[in] port UNI port, 1..32
/// @param[in] pvid PVID in the low 16 bits, 1..4095; the WAN object refuses others with a log line
/// @param[in] priority priority of the PVID's tag and its queue, 0..7, in the low 8 bits
/// @param[in] list 512 entries must be readable; those with VID 0 are skipped, `port` is not looked
///   at; not kept
/// @return the result of the last flow command (codes of BCM6838X_Ioctl); BCM6838X_FAILED for a
///   port out of range; BCM6838X_INVALID for a null list
BCM6838X_EXPORT int32_t BCM6838X_AddUsHybrid(uint32_t port, uint32_t pvid, uint32_t priority,
                                             const PortVlanTrunkEntry* list);

/// Ends hybrid mode: the listed VLANs as BCM6838X_DelUsZTETrunk, then the recorded flow of untagged
/// frames with its action, its downstream reference and the WAN object's VID. Without a recorded
/// flow of untagged frames the last two are not given back.
///
/// @param[in] port UNI port, 1..32
/// @param[in] pvid PVID in the low 16 bits
/// @param[in] priority not used
/// @param[in] list 512 entries must be readable; those with VID 0 are skipped; not kept
/// @return the result of the last flow command (codes of BCM6838X_Ioctl), BCM6838X_OK when none was
///   sent; BCM6838X_FAILED for a port out of range; BCM6838X_INVALID for a null list
BCM6838X_EXPORT int32_t BCM6838X_DelUsHybrid(uint32_t port, uint32_t pvid, uint32_t priority,
                                             const PortVlanTrunkEntry* list);

/// Translation mode: the port is an access port of its PVID, and frames of the listed local VIDs
/// are carried under their network VIDs. Upstream eight flows an entry, one for each priority,
/// which share an action that replaces VID and priority; with each of them the pair is added to the
/// WAN and LAN objects again. Downstream, only when the flow of priority 7 succeeds, eight
/// references on the flow of the network VID and on an action, attached to the port, which also
/// carries the network VID.
///
/// @param[in] port UNI port, 1..32
/// @param[in] pvid PVID in the low 16 bits, 1..4095; the WAN object refuses others with a log line
/// @param[in] priority priority of the PVID's tag and its queue, 0..7, in the low 8 bits
/// @param[in] list 512 entries must be readable; those without a local or a network VID are
/// skipped,
///   `port` is not looked at, the low 8 bits of the priorities are used; not kept
/// @return the result of the last flow command (codes of BCM6838X_Ioctl); BCM6838X_FAILED for a
///   port out of range; BCM6838X_INVALID for a null list
BCM6838X_EXPORT int32_t BCM6838X_AddUsTranslation(uint32_t port, uint32_t pvid, uint32_t priority,
                                                  const PortVlanTransEntry* list);

/// Ends translation mode: deletes every recorded flow of a listed local VID, each with one
/// reference on both actions and on the downstream flow, the port action and the VIDs of the
/// objects; then the flow of untagged frames as BCM6838X_DelUsHybrid. Entries of the same local VID
/// each act on all recorded flows of it.
///
/// @param[in] port UNI port, 1..32
/// @param[in] pvid PVID in the low 16 bits
/// @param[in] priority not used
/// @param[in] list 512 entries must be readable; those without a local or a network VID are
/// skipped;
///   not kept
/// @return the result of the last flow command (codes of BCM6838X_Ioctl), BCM6838X_OK when none was
///   sent; BCM6838X_FAILED for a port out of range; BCM6838X_INVALID for a null list
BCM6838X_EXPORT int32_t BCM6838X_DelUsTranslation(uint32_t port, uint32_t pvid, uint32_t priority,
                                                  const PortVlanTransEntry* list);

/// ZTE stacking: every frame is carried inside the PVID's tag, which is removed downstream.
/// Upstream a flow of untagged frames and eight of tagged ones, one for each priority, which is
/// their queue, all of one action. Downstream a reference on the flow of the PVID and, only when
/// the flow of priority 7 succeeds, eight on its flow of double-tagged frames; both get a port
/// action. The port's data path is made transparent, and the multicast VLANs that the port keeps
/// are taken out of the VLAN objects.
///
/// @param[in] port UNI port, 1..32
/// @param[in] pvid PVID in the low 16 bits, 1..4095; the WAN object refuses others with a log line
/// @param[in] priority priority of the tag and queue of untagged frames, 0..7, in the low 8 bits
/// @return the result of the last flow command (codes of BCM6838X_Ioctl); BCM6838X_FAILED for a
///   port out of range
BCM6838X_EXPORT int32_t BCM6838X_AddUsZTEStacking(uint32_t port, uint32_t pvid, uint32_t priority);

/// Ends ZTE stacking: the port's data path is no longer transparent, the multicast VLANs are put
/// back, and the recorded flow of untagged frames and those of single-tagged ones are deleted, each
/// with one reference on its action and its downstream flow, and the port action.
///
/// @param[in] port UNI port, 1..32
/// @param[in] pvid PVID in the low 16 bits
/// @param[in] priority not used
/// @return the result of the last flow command (codes of BCM6838X_Ioctl); that of the shell line,
///   0 when it succeeded, when no flow is recorded; BCM6838X_FAILED for a port out of range
BCM6838X_EXPORT int32_t BCM6838X_DelUsZTEStacking(uint32_t port, uint32_t pvid, uint32_t priority);

/// BDCOM stacking: the port is an access port of its PVID, and the customer VLANs of the list are
/// carried inside the tag of their service VLAN. Upstream one flow an entry, of priority 0;
/// downstream a reference on the service VLAN's flow of double-tagged frames, and a port action
/// that removes the outer tag. The pair is added to the WAN and LAN objects before the flow is
/// tried.
///
/// @param[in] port UNI port, 1..32
/// @param[in] pvid PVID in the low 16 bits, 1..4095; the WAN object refuses others with a log line
/// @param[in] priority priority of the PVID's tag and its queue, 0..7, in the low 8 bits
/// @param[in] list 512 entries must be readable; those take part whose `stackParam` is 2, whose
///   `port` is the port, and whose `cvid` (all bits) and `svid` are not 0; not kept
/// @return the result of the last flow command (codes of BCM6838X_Ioctl); BCM6838X_FAILED for a
///   port out of range; BCM6838X_INVALID for a null list
BCM6838X_EXPORT int32_t BCM6838X_AddUsBDCOMStacking(uint32_t port, uint32_t pvid, uint32_t priority,
                                                    const PortVlanStackEntry* list);

/// Ends BDCOM stacking: for each entry that takes part, deletes the flow of the first slot of its
/// customer VID with its action, and gives the downstream reference and the VIDs of the objects
/// back; then the flow of untagged frames as BCM6838X_DelUsHybrid. The port action is sought at the
/// flow of the customer VID, so that it stays where the service VID is another. For customer VID 0
/// the first slot that compares no VID is meant: that of the untagged flow, or a free one.
///
/// @param[in] port UNI port, 1..32
/// @param[in] pvid PVID in the low 16 bits
/// @param[in] priority not used
/// @param[in] list 512 entries must be readable; they take part as in the add; not kept
/// @return the result of the last flow command (codes of BCM6838X_Ioctl), BCM6838X_OK when none was
///   sent; BCM6838X_FAILED for a port out of range; BCM6838X_INVALID for a null list
BCM6838X_EXPORT int32_t BCM6838X_DelUsBDCOMStacking(uint32_t port, uint32_t pvid, uint32_t priority,
                                                    const PortVlanStackEntry* list);

BCM6838X_END_DECLS

#endif
