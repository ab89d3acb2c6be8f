/// @file
/// VLAN rule tables: the pool of VLAN actions, the WAN and LAN VLAN objects of the data path, the
/// shared downstream flows and the port actions on them. With it come the VLAN configuration of the
/// ports, bcm6838x_vlan_port.h, and the builders of their modes, bcm6838x_vlan_mode.h. What holds
/// for all operations is said in bcm6838x_api.h.
///
/// Shell lines name a LAN port object by its number: the UNI port - 1, and 4 - port where the
/// platform's `g_PortRevert` is not 0.
#ifndef BCM6838X_VLAN_H
#define BCM6838X_VLAN_H

#include <stdint.h>

#include "bcm6838x_api.h"
#include "bcm6838x_vlan_mode.h"
#include "bcm6838x_vlan_port.h"
#include "brmgr_record.h"

BCM6838X_BEGIN_DECLS

/// Takes references on a VLAN action; the first user of a content creates it in the device. The
/// content is `cmd`, VID, priority and TPID of both tags, and `dir`. The pool holds 256 actions;
/// when it is full, content that is in it is still served, and for new content nothing is sent and
/// no line tells it.
///
/// @par Sends
/// BRMGR_CMD_VLAN_ACTION_ADD for content that is not in the pool.
/// @par Logs
/// - "%s,%d, add vlan action cmd %u vid[0]=%lu vid[1]=%lu  dir=%s" on entry, with "us" or "ds";
/// - "[%s %d] tpid is 0" when both TPIDs are zero;
/// - "%s,%d, add vlan action num %d" for content that is in the pool, with its references;
/// - "Create vlan action error" when the command fails.
///
/// @param[in] rule the action; `vlanActionIndex` is not used
/// @param[in] count number of references; only the low 16 bits count
/// @return the action's index; -1 when both TPIDs are zero, when the content is new and the pool is
///   full, or when the command fails
BCM6838X_EXPORT int32_t BCM6838X_AddVlanAction(VlanActionRule rule, uint32_t count);

/// Looks a VLAN action up by its content and changes nothing. Sends nothing.
///
/// @par Logs
/// "[%s %d] tpid is 0" when both TPIDs are zero.
///
/// @param[in] rule the action; `vlanActionIndex` is not used
/// @return the action's index, or -1 when it is not in the pool or both TPIDs are zero
BCM6838X_EXPORT int32_t BCM6838X_GetVlanAction(VlanActionRule rule);

/// Gives one reference on a VLAN action back; the last one removes it from the device. When the
/// command fails, the action stays in the pool with no references. A reference too many wraps the
/// count, and the action then stays. Free places of the pool are searched too: index 0 downstream
/// names the first of them, unless the action stands before it, and then only that place's count
/// changes. An index that is not in the pool changes nothing.
///
/// @par Sends
/// BRMGR_CMD_VLAN_ACTION_DEL with the last reference.
/// @par Logs
/// - "%s,%d, del vlan action cmd %u vid[0]=%lu vid[1]=%lu  dir=%s" on entry, with what `rule`
///   holds;
/// - "%s,%d, del vlan action num %d" with the references that are left;
/// - "[%s %d] delete %s vlanAction %d error" when the command fails.
///
/// @param[in] rule only `dir` and `vlanActionIndex` are used; the rest is logged
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_DelVlanAction(VlanActionRule rule);

/// Adds a LAN VID of a port to the WAN VLAN object of a VID. An object that does not exist is
/// created; at one that does the VID is switched off and on again, so that the chip picks up the
/// change. A LAN VID that the port has there changes nothing and runs nothing. There are up to 256
/// objects, and one more is dropped silently, without a shell line; each has 512 LAN VIDs a port,
/// and one more is not stored, but logged and the object's VID switched off and on all the same.
/// Sends nothing.
///
/// @par Runs
/// "bs /b/n vlan/name=wan0_%u port/index=wan0" and "bs /b/c vlan/name=wan0_%u vid_enable[%u]=yes"
/// for a new object; "bs /b/c vlan/name=wan0_%u vid_enable[%u]=no" and the latter for one that
/// exists.
/// @par Logs
/// - "%s,%d, add wan vlan  %u  wanVid=%lu lanVid=%lu" on entry, and again at an object that exists;
/// - "%s,%d, add wan vlan  %u  wanVid=%lu lanVid=%lu ret=%u" for a new object, with the second
///   shell line's result;
/// - "[%s %d] wanVid is 0 or 4095", else "[%s %d] lanVid is 0 or 4096", else the port line, when
///   that argument is out of range.
///
/// @param[in] port UNI port, 1..32; this and the VIDs are taken as their low 16 bits
/// @param[in] wanVid WAN VID, 1..4095
/// @param[in] lanVid LAN VID, 1..4096; 4096 stands for untagged
/// @return BCM6838X_OK, or BCM6838X_FAILED when an argument is out of range
BCM6838X_EXPORT uint32_t BCM6838X_AddWanVlan(uint32_t port, uint32_t wanVid, uint32_t lanVid);

/// Removes a LAN VID of a port from the WAN VLAN object of a VID; an object that is left without
/// LAN VIDs is destroyed. Without such an object nothing is done. Sends nothing.
///
/// @par Runs
/// "bs /b/c vlan/name=wan0_%u vid_enable[%u]=no" and "bs /b/d vlan/name=wan0_%u" when the object is
/// destroyed.
/// @par Logs
/// - "%s,%d, port=%u,del wanVid=%lu lanVid=%lu" on entry, and again when the object stays;
/// - "%s,%d, port=%u, del wanVid=%lu lanVid=%lu ret=%d" when it was destroyed, with the second
///   shell line's result;
/// - "[%s %d] wanVid is 0 or 4095", else "[%s %d] lanVid is 0 or 4096", else the port line, when
///   that argument is out of range.
///
/// @param[in] port UNI port, 1..32; this and the VIDs are taken as their low 16 bits
/// @param[in] wanVid WAN VID, 1..4095
/// @param[in] lanVid LAN VID, 1..4096
/// @return the second shell line's result when the object was destroyed; BCM6838X_FAILED when an
///   argument is out of range; else BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_DelWanVlan(uint32_t port, uint32_t wanVid, uint32_t lanVid);

/// Takes a reference on the LAN VLAN object of a port and VID. An object that does not exist is
/// created; at one that does the VID is switched off and on again. There are up to 256 objects; one
/// more is dropped silently, without a shell line. Sends nothing.
///
/// @par Runs
/// "bs /b/n vlan/name=lan%u_%u port/index=lan%d" and
/// "bs /b/c vlan/name=lan%u_%u vid_enable[%u]=yes" for a new object;
/// "bs /b/c vlan/name=lan%u_%u vid_enable[%u]=no" and the latter for one that exists.
/// @par Logs
/// "%s,%d, add lan vlan  %u  vid=%lu" on entry; "[%s %d] vid is 0 or 4095" when the VID is out of
/// range.
///
/// @param[in] port UNI port, not checked: where `g_PortRevert` is not 0 only 1..4 name a LAN port
///   object, otherwise any from 1 does. This and the VID are taken as their low 16 bits.
/// @param[in] vid VID, 1..4095
/// @return BCM6838X_OK, or BCM6838X_FAILED when the VID is out of range
BCM6838X_EXPORT uint32_t BCM6838X_AddLanVlan(uint32_t port, uint32_t vid);

/// Gives a reference on the LAN VLAN object of a port and VID back; the last one destroys the
/// object. Without such an object nothing is done. Sends nothing.
///
/// @par Runs
/// "bs /b/c vlan/name=lan%u_%u vid_enable[%u]=no" and "bs /b/d vlan/name=lan%u_%u" with the last
/// reference.
/// @par Logs
/// "%s,%d, del lan vlan  %u  vid=%lu" on entry; "[%s %d] vid is 0 or 4095" when the VID is out of
/// range.
///
/// @param[in] port UNI port, not checked: where `g_PortRevert` is not 0 only 1..4 name a LAN port
///   object, otherwise any from 1 does. This and the VID are taken as their low 16 bits.
/// @param[in] vid VID, 1..4095
/// @return BCM6838X_OK, or BCM6838X_FAILED when the VID is out of range
BCM6838X_EXPORT uint32_t BCM6838X_DelLanVlan(uint32_t port, uint32_t vid);

/// Takes references on the shared downstream flow of a VID and tag count; the first user creates
/// it, in class 1 or, for any VID, in class 0. When 256 flows are shared already, the flow is
/// created all the same but not recorded, and nothing deletes it.
///
/// @par Sends
/// BRMGR_CMD_FLOW_ADD for a flow that is not shared yet.
/// @par Logs
/// - "%s,%d, add ds ingress class vid %u  vlanNum %u" on entry;
/// - "%s,%d, add IC num %d" for a flow that is shared already, with its references;
/// - "%s,%d, add ds icIndex=%ld flowIndex=%ld error" when the command fails.
///
/// @param[in] vid VID, 1..4095, or 4096 for any VID, in the low 16 bits. 0 is not refused but
///   cannot be shared, because it marks a free entry of the table: with `vlanNum` 0 nothing is
///   sent, and the first free entry takes the references and gives its index 0; otherwise the flow
///   is created, and its entry is lost to the next flow.
/// @param[in] vlanNum number of VLAN tags, 0..2, in the low 8 bits; not checked
/// @param[in] count number of references; only the low 16 bits count
/// @return the flow's index, or -1 when the command fails or the flow is not recorded
BCM6838X_EXPORT int32_t BCM6838X_AddDsIngressClass(uint32_t vid, uint32_t vlanNum, uint32_t count);

/// As BCM6838X_AddDsIngressClass, commands, lines and VID 0 included, for performance mode: the
/// flow that it creates carries two further result words (1 at offset 104 and 2 at offset 108). A
/// flow that is shared already is shared as it is.
///
/// @par Sends
/// BRMGR_CMD_FLOW_ADD for a flow that is not shared yet.
/// @par Logs
/// The lines of BCM6838X_AddDsIngressClass, under its own name.
///
/// @param[in] vid VID, 1..4095, or 4096 for any VID, in the low 16 bits
/// @param[in] vlanNum number of VLAN tags, 0..2, in the low 8 bits; not checked
/// @param[in] count number of references; only the low 16 bits count
/// @return the flow's index, or -1 when the command fails or the flow is not recorded
BCM6838X_EXPORT int32_t BCM6838X_AddDsIngressClass_Perf(uint32_t vid, uint32_t vlanNum,
                                                        uint32_t count);

/// Gives one reference on a shared downstream flow back; the last one removes it from the device
/// and from the table, even when the command fails. A reference too many finds no flow and does
/// nothing; only at a flow that was added with a count of 0 it wraps the count, and the flow then
/// stays.
///
/// @par Sends
/// BRMGR_CMD_FLOW_DEL with the last reference.
/// @par Logs
/// - "%s,%d, del ds ingress class vid %u  vlanNum %u" on entry;
/// - "%s,%d, del IC num %d" with the references that are left;
/// - "%s,%d, delete ds icIndex=%ld flowIndex=%ld error" when the command fails.
///
/// @param[in] vid VID, 1..4095, or 4096 for any VID, in the low 16 bits. 0 is not refused: with
///   `vlanNum` 0 it takes a free entry of the table for the flow, of index 0.
/// @param[in] vlanNum number of VLAN tags, 0..2, in the low 8 bits
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_DelDsIngressClass(uint32_t vid, uint32_t vlanNum);

/// Looks a shared downstream flow up and changes nothing. Sends nothing.
///
/// @par Logs
/// "%s,%d, get ds ingress class vid %u  vlanNum %u" on entry.
///
/// @param[in] vid VID, 1..4095, or 4096 for any VID, in the low 16 bits; with 0 and `vlanNum` 0 a
///   free entry of the table is found, of index 0
/// @param[in] vlanNum number of VLAN tags, 0..2, in the low 8 bits
/// @return the flow's index, or -1
BCM6838X_EXPORT int32_t BCM6838X_GetDsIngressClass(uint32_t vid, uint32_t vlanNum);

/// Attaches a downstream VLAN action to one UNI port of a downstream flow. Nothing is checked and
/// nothing recorded. Sends nothing.
///
/// @par Runs
/// One line: "bs /b/c ingress_class/dir=ds,index=%ld" and, behind a blank,
/// "port_action[{flow=%ld,port=lan%u}]={{vlan_action={vlan_action/dir=ds,index=%ld},drop=no}}"
/// @par Logs
/// "%s,%d, add port action port %u icIndex=%ld flowIndex=%ld" on entry.
///
/// @param[in] port UNI port; the low 16 bits count, and where `g_PortRevert` is not 0 only 1..4
///   name a LAN port object
/// @param[in] flowIndex the flow; all bits count, here and below, and are shown signed
/// @param[in] icIndex the flow's class
/// @param[in] vlanActionIndex the action
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_AddPortAction(uint32_t port, uint32_t flowIndex, uint32_t icIndex,
                                                uint32_t vlanActionIndex);

/// Detaches the VLAN action of one UNI port from a downstream flow. Nothing is checked. Sends
/// nothing.
///
/// @par Runs
/// One line: "bs /b/c ingress_class/dir=ds,index=%ld" and, behind a blank,
/// "port_action[{flow=%ld,port=lan%u}]={{vlan_action=null,drop=no}}"
/// @par Logs
/// "%s,%d, del port action port %u icIndex=%ld flowIndex=%ld" on entry.
///
/// @param[in] port UNI port; the low 16 bits count, and where `g_PortRevert` is not 0 only 1..4
///   name a LAN port object
/// @param[in] flowIndex the flow; all bits count, here and below, and are shown signed
/// @param[in] icIndex the flow's class
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_DelPortAction(uint32_t port, uint32_t flowIndex,
                                                uint32_t icIndex);

BCM6838X_END_DECLS

#endif
