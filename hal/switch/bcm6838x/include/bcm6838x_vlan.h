/// @file
/// VLAN rule tables: the pool of VLAN actions, the WAN and LAN VLAN objects of the data path, the
/// shared downstream flows and the port actions on them. With it come the VLAN configuration of the
/// ports, bcm6838x_vlan_port.h, and the builders of their modes, bcm6838x_vlan_mode.h.
///
/// The management layer calls these operations one at a time; nothing is locked.
#ifndef BCM6838X_VLAN_H
#define BCM6838X_VLAN_H

#include <stdint.h>

#include "bcm6838x_api.h"
#include "bcm6838x_vlan_mode.h"
#include "bcm6838x_vlan_port.h"
#include "brmgr_record.h"

BCM6838X_BEGIN_DECLS

/// Takes references on a VLAN action; the first user of a content creates it in the device
/// (BRMGR_CMD_VLAN_ACTION_ADD). The content is `cmd`, both tags and `dir`. Logs what it does.
///
/// @param[in] rule the action; `vlanActionIndex` is not used
/// @param[in] count number of references; only the low 16 bits count
/// @return the action's index; -1 when both TPIDs are zero, when 256 actions are in the pool, or
/// when the driver refuses
BCM6838X_EXPORT int32_t BCM6838X_AddVlanAction(VlanActionRule rule, uint32_t count);

/// Looks a VLAN action up by its content and changes nothing.
///
/// @param[in] rule the action; `vlanActionIndex` is not used
/// @return the action's index, or -1 when it is not in the pool or both TPIDs are zero
BCM6838X_EXPORT int32_t BCM6838X_GetVlanAction(VlanActionRule rule);

/// Gives one reference on a VLAN action back; the last one removes it from the device
/// (BRMGR_CMD_VLAN_ACTION_DEL). When the driver refuses, the action stays pooled with no
/// references. A reference too many wraps the count, and the action then stays.
///
/// @param[in] rule only `dir` and `vlanActionIndex` are used
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_DelVlanAction(VlanActionRule rule);

/// Adds a LAN VID of a port to the WAN VLAN object of a VID, which is created when it does not
/// exist. Up to 256 objects and 512 LAN VIDs a port; what does not fit is dropped silently.
///
/// @param[in] port UNI port, 1..32; this and the VIDs are taken as their low 16 bits
/// @param[in] wanVid WAN VID, 1..4095
/// @param[in] lanVid LAN VID, 1..4096; 4096 stands for untagged
/// @return BCM6838X_OK, or BCM6838X_FAILED with a log line when an argument is out of range
BCM6838X_EXPORT uint32_t BCM6838X_AddWanVlan(uint32_t port, uint32_t wanVid, uint32_t lanVid);

/// Removes a LAN VID of a port from the WAN VLAN object of a VID; the object is destroyed with its
/// last LAN VID.
///
/// @param[in] port UNI port, 1..32; this and the VIDs are taken as their low 16 bits
/// @param[in] wanVid WAN VID, 1..4095
/// @param[in] lanVid LAN VID, 1..4096
/// @return the shell's result of destroying the object when it was destroyed; BCM6838X_FAILED with
/// a log line when an argument is out of range; else BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_DelWanVlan(uint32_t port, uint32_t wanVid, uint32_t lanVid);

/// Takes a reference on the LAN VLAN object of a port and VID, which is created when it does not
/// exist. Up to 256 objects; one more is dropped silently.
///
/// @param[in] port UNI port, 1..4; this and the VID are taken as their low 16 bits; not checked
/// @param[in] vid VID, 1..4095
/// @return BCM6838X_OK, or BCM6838X_FAILED with a log line when the VID is out of range
BCM6838X_EXPORT uint32_t BCM6838X_AddLanVlan(uint32_t port, uint32_t vid);

/// Gives a reference on the LAN VLAN object of a port and VID back; the last one destroys the
/// object.
///
/// @param[in] port UNI port, 1..4; this and the VID are taken as their low 16 bits; not checked
/// @param[in] vid VID, 1..4095
/// @return BCM6838X_OK, or BCM6838X_FAILED with a log line when the VID is out of range
BCM6838X_EXPORT uint32_t BCM6838X_DelLanVlan(uint32_t port, uint32_t vid);

/// Takes references on the shared downstream flow of a VID and tag count; the first user creates it
/// (BRMGR_CMD_FLOW_ADD). When 256 flows are shared already, the flow is created all the same but
/// not recorded, which is intended.
///
/// @param[in] vid VID in the low 16 bits; 4096 stands for any VID
/// @param[in] vlanNum number of VLAN tags, 0..2, in the low 8 bits
/// @param[in] count number of references; only the low 16 bits count
/// @return the flow's index, or -1 when the driver refuses or the flow is not recorded
BCM6838X_EXPORT int32_t BCM6838X_AddDsIngressClass(uint32_t vid, uint32_t vlanNum, uint32_t count);

/// As BCM6838X_AddDsIngressClass, for performance mode: the flow carries two further result words.
///
/// @param[in] vid VID in the low 16 bits; 4096 stands for any VID
/// @param[in] vlanNum number of VLAN tags, 0..2, in the low 8 bits
/// @param[in] count number of references; only the low 16 bits count
/// @return the flow's index, or -1 when the driver refuses or the flow is not recorded
BCM6838X_EXPORT int32_t BCM6838X_AddDsIngressClass_Perf(uint32_t vid, uint32_t vlanNum,
                                                        uint32_t count);

/// Gives one reference on a shared downstream flow back; the last one removes it from the device
/// (BRMGR_CMD_FLOW_DEL) and from the table, even when the driver refuses.
///
/// @param[in] vid VID in the low 16 bits; 4096 stands for any VID
/// @param[in] vlanNum number of VLAN tags, 0..2, in the low 8 bits
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_DelDsIngressClass(uint32_t vid, uint32_t vlanNum);

/// Looks a shared downstream flow up.
///
/// @param[in] vid VID in the low 16 bits; 4096 stands for any VID
/// @param[in] vlanNum number of VLAN tags, 0..2, in the low 8 bits
/// @return the flow's index, or -1
BCM6838X_EXPORT int32_t BCM6838X_GetDsIngressClass(uint32_t vid, uint32_t vlanNum);

/// Attaches a downstream VLAN action to one UNI port of a downstream flow, by a shell line.
///
/// @param[in] port UNI port, 1..4
/// @param[in] flowIndex the flow
/// @param[in] icIndex the flow's class
/// @param[in] vlanActionIndex the action
/// @return BCM6838X_OK; the shell's result is not looked at
BCM6838X_EXPORT uint32_t BCM6838X_AddPortAction(uint32_t port, uint32_t flowIndex, uint32_t icIndex,
                                                uint32_t vlanActionIndex);

/// Detaches the VLAN action of one UNI port from a downstream flow, by a shell line.
///
/// @param[in] port UNI port, 1..4
/// @param[in] flowIndex the flow
/// @param[in] icIndex the flow's class
/// @return BCM6838X_OK; the shell's result is not looked at
BCM6838X_EXPORT uint32_t BCM6838X_DelPortAction(uint32_t port, uint32_t flowIndex,
                                                uint32_t icIndex);

BCM6838X_END_DECLS

#endif
