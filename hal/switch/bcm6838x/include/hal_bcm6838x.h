/// @file
/// Driver core and packet path: the command channel to the bridge-manager device, start-up and
/// operating modes; capture of trapped frames, the VLAN rules of the ports as they apply to a
/// frame, transmission, relays; the kernel event task and the EPON laser. Operations on ports,
/// VLANs, multicast and QoS are in the headers of their areas; what holds for all operations is
/// said in bcm6838x_api.h.
///
/// Frames begin with the destination MAC address. "Bytes that must be readable" are those that an
/// operation may look at. A frame whose length is an argument is never read beyond it.
///
/// BCM6838X_Ioctl may be called from any thread. BCM6838X_GetEvent and BCM6838X_CapturePacket run
/// on a thread of the caller's; what they call (the frame helpers, the VLAN rules, the relays, the
/// transmit operations) may run there beside the management layer, whose configuration they read
/// without a lock. BCM6838X_kernelEvent is the library's own task, and calls
/// BCM6838X_EventUniStateReport there.
#ifndef HAL_BCM6838X_H
#define HAL_BCM6838X_H

#include <stdint.h>

#include "bcm6838x_api.h"
#include "brmgr_record.h"

BCM6838X_BEGIN_DECLS

/// Sends one command record to the bridge-manager driver: the one door to the device "BrmgrDev".
/// Builds a BrmgrRequest and issues a single ioctl; never retries. May be called from any thread.
///
/// @par Sends
/// `cmd`.
/// @par Logs
/// "%s :%d, cmd:%d err:%lu" when the ioctl returned anything but 0: the code, and the returned
/// value as an unsigned word, -1 as 4294967295.
///
/// @param[in] cmd command code, 0..182 (brmgr_cmd.h); codes without a name pass too
/// @param[in,out] buf the command record, `len` bytes readable and, with read-back, writable; null
///   where the command has none. It may be partly written by the driver even when the command
///   fails.
/// @param[in] len length of the record in bytes, 0 where the command has none
/// @param[in] flag BRMGR_FLAG_READ_BACK when the driver is to write its result into the record,
///   else BRMGR_FLAG_INPUT
/// @return BCM6838X_OK; BCM6838X_NOT_OPEN when the device is not open, checked first;
///   BCM6838X_INVALID when `cmd` is 183 or more; BCM6838X_REFUSED when the ioctl returned anything
///   but 0
BCM6838X_EXPORT uint32_t BCM6838X_Ioctl(uint32_t cmd, void* buf, uint32_t len, uint32_t flag);

/// Starts the library, in this order: log module, task "kernelEvent" (BCM6838X_kernelEvent), every
/// Ethernet port administratively down, BCM6838X_PerformanceInit, BCM6838X_InitDrv,
/// BCM6838X_InitPort, BCM6838X_InitVlan, BCM6838X_InitIgmp, BCM6838X_RdpaIcInit or in performance
/// mode BCM6838X_RdpaIcInit_Perf, BCM6838X_SFInit, BCM6838X_InitQoS. Called once, before any other
/// operation, by the process that owns the library; a second call is not guarded and repeats all of
/// it. There is no shutdown. The ports are put down before the device is open, so that only their
/// PHYs are switched.
///
/// A log module that is not created is told on standard output as "LOG_Create fail.\r", a task that
/// is not spawned as "\n Creat task kernelEvent Error!!! \r", which does not stop the start-up.
/// Other failures are logged by the operation concerned and skipped.
///
/// @par Sends
/// BRMGR_CMD_INIT, BRMGR_CMD_VLAN_ACTION_ADD, BRMGR_CMD_IC_CREATE, BRMGR_CMD_FLOW_ADD and
/// BRMGR_CMD_FEATURE, by the operations named.
/// @par Logs
/// Nothing itself.
///
/// @return BCM6838X_OK, or BCM6838X_FAILED when the log module cannot be created; then nothing else
///   is done
BCM6838X_EXPORT uint32_t BCM6838X_Init(void);

/// Opens "BrmgrDev", tells the driver the numbers of Fast- and Gigabit-Ethernet ports and, whatever
/// it answers, reads the board identifier. A descriptor that was open before is not closed.
///
/// @par Sends
/// BRMGR_CMD_INIT.
/// @par Logs
/// "%s :%d, Open brmgr device is error" when the device cannot be opened; nothing else is done
/// then.
///
/// @return the command's result (codes of BCM6838X_Ioctl), or BCM6838X_FAILED when the device
///   cannot be opened
BCM6838X_EXPORT uint32_t BCM6838X_InitDrv(void);

/// Decides the operating mode: consumes the marker file "/var/config/switch_perf", whose presence
/// selects performance mode for this start only and prints a warning of five lines on standard
/// output. Sends and logs nothing.
///
/// @return BCM6838X_OK when performance mode was selected, BCM6838X_END otherwise
BCM6838X_EXPORT uint32_t BCM6838X_PerformanceInit(void);

/// Tells the operating mode. Sends and logs nothing.
///
/// @return 1 in performance mode, else 0
BCM6838X_EXPORT uint32_t BCM6838X_IsPerformance(void);

/// Creates the default ingress classes of normal mode, five upstream and three downstream, and the
/// flows that trap the unit's own traffic: its two MAC addresses in both directions, when the
/// platform knows them, and upstream the reserved addresses 01:80:C2:00:00:00 and
/// 01:80:C2:00:00:23. A refused command does not stop the next. Logs nothing.
///
/// @par Sends
/// BRMGR_CMD_IC_CREATE eight times; BRMGR_CMD_FLOW_ADD six times, twice without the unit's MAC
/// addresses.
///
/// @return the result of the last class creation (codes of BCM6838X_Ioctl)
BCM6838X_EXPORT uint32_t BCM6838X_RdpaIcInit(void);

/// Creates the two default ingress classes of performance mode, one a direction, and no flow. A
/// refused command does not stop the next. Logs nothing.
///
/// @par Sends
/// BRMGR_CMD_IC_CREATE twice.
///
/// @return the result of the second class creation (codes of BCM6838X_Ioctl)
BCM6838X_EXPORT uint32_t BCM6838X_RdpaIcInit_Perf(void);

/// Hands the value of the platform's feature switch 27 to the driver. Logs nothing.
///
/// @par Sends
/// BRMGR_CMD_FEATURE.
///
/// @return the command's result (codes of BCM6838X_Ioctl)
BCM6838X_EXPORT uint32_t BCM6838X_SFInit(void);

/// Converts a UNI port number into the data path's port number. Sends and logs nothing.
///
/// @param[in] port UNI port number, from 1; only the low 8 bits count
/// @return the low 8 bits of `port`, plus 1: UNI port 1 is data-path port 2
BCM6838X_EXPORT uint32_t BCM6838X_StreamPortIndexUniToRdpa(uint32_t port);

/// Reads one event of the device, 2068 bytes by one read(). Blocks until the driver has one, so
/// that it is called on the caller's capture thread. Sends and logs nothing.
///
/// @param[out] event the event; cleared first, and partly filled when the read fails
/// @return BCM6838X_OK; BCM6838X_FAILED when read() did not give a whole record, also when the
///   device is not open; BCM6838X_INVALID when `event` is null
BCM6838X_EXPORT uint32_t BCM6838X_GetEvent(BrmgrEvent* event);

/// Reads one event (BCM6838X_GetEvent) and hands its frame to the protocol client that owns it, by
/// the event's type:
/// - 1, a multicast control frame: unless its port is 0, under the VLAN rule of the port
///   (BCM6838X_AccordVlan); then to IGMP_DispatchPacket when it is IGMP, and to MLD_DispatchPacket
///   when it is MLD. The VID that they get is that of the last tag of type 0x8100, 0 without one; a
///   tag of type 0x9200 and behind it one of type 0x9100 may stand before and are skipped.
/// - 3, a BPDU: at most 100 bytes, from offset 22 of the event, as a message to the spanning-tree
///   process (module 0xA3C0, code 0x1500).
/// - 5, a multicast control frame to send: under the VLAN rule of its port or, when that is 0, once
///   under that of each Ethernet port downstream; with BCM6838X_RdpaSendIgmpPkt.
/// - 6 and 7, DHCP and PPPoE: BCM6838X_DhcpRelayHandle and BCM6838X_PPPoERelayHandle.
///
/// Other types are ignored. Blocks in read(); called again and again on one thread of the caller's.
/// Configuration may change meanwhile, and a frame may then see half of a change. With the
/// platform's feature switch 27 at anything but 1 nothing is read and nothing done.
///
/// @par Sends
/// BRMGR_CMD_SEND_PKT for type 5, BRMGR_CMD_SEND_DHCP and BRMGR_CMD_SEND_PPPOE for types 6 and 7
/// while their relay is off.
/// @par Logs
/// "%s(%d), event with a frame of %u bytes", level 4, for types 1 and 5 when the length exceeds the
/// event's data field of 2048 bytes; the frame is dropped.
///
/// @return BCM6838X_OK; BCM6838X_FAILED when no event could be read and, for type 1, when the frame
///   is dropped: by its port's rule, for its length, or because it has three tags of type 0x8100.
///   Results of the clients and of transmits are not passed on, and a frame of type 5 that is
///   dropped counts as done.
BCM6838X_EXPORT uint32_t BCM6838X_CapturePacket(void);

/// Reads the outer VLAN tag of a frame. Sends nothing.
///
/// @par Logs
/// The null line.
///
/// @param[in] frame 18 bytes readable
/// @param[out] vid VID of the outer tag; not written when the frame counts as untagged
/// @param[out] pri priority of the outer tag, 0..7; not written when the frame counts as untagged
/// @return 0 untagged, and a single tag of type 0x88A8 counts as that; 1 for a tag of type 0x8100;
///   2 for two tags, the outer of type 0x88A8 or 0x8100 and the inner of type 0x8100. Also 0 when
///   an argument is null.
BCM6838X_EXPORT uint32_t BCM6838X_GetTag(const uint8_t* frame, uint16_t* vid, uint16_t* pri);

/// Removes the outer VLAN tag of type 0x8100. Sends nothing.
///
/// @par Logs
/// The null line; "%s(%d), frame of %u bytes is too long", level 4, when `size` exceeds 2048.
///
/// @param[in,out] frame `size` bytes
/// @param[in,out] size length of the frame; 4 less afterwards
/// @return BCM6838X_OK; BCM6838X_FAILED, with nothing changed, when there is no such tag within
///   `size` bytes or `size` exceeds 2048; BCM6838X_INVALID when an argument is null
BCM6838X_EXPORT uint32_t BCM6838X_RemoveVlanTag(uint8_t* frame, uint32_t* size);

/// Rewrites VID and priority of the outer VLAN tag of type 0x8100; the drop-eligible bit becomes 0.
/// Sends nothing.
///
/// @par Logs
/// The null line.
///
/// @param[in,out] frame 16 bytes
/// @param[in] vid new VID; the low 12 bits count
/// @param[in] pri new priority; the low 3 bits count
/// @return BCM6838X_OK; BCM6838X_FAILED, with nothing changed, when there is no such tag;
///   BCM6838X_INVALID when `frame` is null
BCM6838X_EXPORT uint32_t BCM6838X_TranslateVlanTag(uint8_t* frame, uint32_t vid, uint32_t pri);

/// Adds an outer VLAN tag of type 0x8100 whose drop-eligible bit is 0. The frame must be followed
/// by 4 bytes of room. Sends nothing.
///
/// @par Logs
/// The null line; "%s(%d), frame of %u bytes cannot gain a tag", level 4, when `size` is out of
/// range.
///
/// @param[in,out] frame `size` bytes readable, `size` + 4 bytes writable
/// @param[in,out] size length of the frame, 12..2044; 4 more afterwards. With any other length
///   nothing is changed.
/// @param[in] vid VID; the low 12 bits count
/// @param[in] pri priority; the low 3 bits count
/// @return BCM6838X_OK, also when the tag was refused or an argument is null
BCM6838X_EXPORT uint32_t BCM6838X_AddVlanTag(uint8_t* frame, uint32_t* size, uint32_t vid,
                                             uint32_t pri);

/// Applies a UNI port's VLAN rule to a frame, by the port's mode: upstream the rule of the source
/// port, or downstream, when there is none, that of the destination port. The rule may add, rewrite
/// or remove the outer tag. Reads the port's record of the configuration as last set. The lists of
/// the record are searched by the VID, not by the port, and free entries, whose VID is 0, are
/// searched too: an untagged frame meets them. Sends nothing.
///
/// @par Logs
/// - "CTC mode : PORTCFG_CTCMODE_NONE" when the port's mode is none that is known;
/// - "%s(%d), port %u is out of range", level 4, when there is no record for the port: neither port
///   given, or beyond 32;
/// - "%s(%d), frame of %u bytes is too long", level 4, when `size` exceeds 2048;
/// - the line of BCM6838X_AddVlanTag for a frame that is to gain a tag and has not 12..2044 bytes;
/// - the null line.
///
/// @param[in,out] frame the frame, usually `data` of the descriptor: `size` bytes readable and
///   min(`size` + 4, 2048) bytes writable
/// @param[in,out] desc only its first word, `size`, is read and updated
/// @param[in] srcPort source UNI port, 0 for none; only the low 8 bits count
/// @param[in] desPort destination UNI port, 0 for none; only the low 8 bits count
/// @return 0 forward the frame; 1 drop it: by the rule, because the unit has no such port, or for
///   one of the reasons that are logged; BCM6838X_INVALID when an argument is null
BCM6838X_EXPORT uint32_t BCM6838X_AccordVlan(uint8_t* frame, RdpaPkt* desc, uint32_t srcPort,
                                             uint32_t desPort);

/// Tells whether a frame is an MLD message: ICMPv6 of type 130, 131, 132 or 143. Before the IPv6
/// header may stand the chip's own tag (10 bytes that begin with type 0x8874; any other type 0x88xx
/// in its place makes the answer 0), then up to two tags of type 0x8100. Behind the IPv6 header the
/// extension headers of types 0 (hop-by-hop options), 41 (IPv6), 43 (routing), 44 (fragment), 50
/// (encapsulating security payload) and 51 (authentication) are passed over, any number of them,
/// the length of each taken as its second byte plus 1, times 8. The ICMPv6 message, and each
/// extension header that is passed over, must begin at least 24 bytes before the end of the frame.
/// Sends nothing.
///
/// @par Logs
/// The null line.
///
/// @param[in] frame the frame
/// @param[in] length its length in bytes, all of them readable; only the low 16 bits count
/// @return 1 for an MLD message, else 0; also 0 when `frame` is null
BCM6838X_EXPORT uint32_t BCM6838X_IsMldPacket(const uint8_t* frame, uint32_t length);

/// Tells whether a frame is DHCP towards a server: UDP to port 67 in IPv4, whose header is taken as
/// 20 bytes long, or to port 547 in IPv6 without extension headers, behind any number of tags of
/// type 0x8100. Sends nothing.
///
/// @par Logs
/// The null line.
///
/// @param[in] frame readable up to 44 bytes behind the type field that follows the tags; 2048 bytes
///   are enough for every frame
/// @return 1 for DHCP towards a server, else 0; also 0 when `frame` is null
BCM6838X_EXPORT uint32_t BCM6838X_IsDHCPProtocol(const uint8_t* frame);

/// Tells whether a frame is PPPoE, discovery (type 0x8863) or session (type 0x8864), behind any
/// number of tags of type 0x8100. Sends nothing.
///
/// @par Logs
/// The null line.
///
/// @param[in] frame readable up to the end of the type field that follows the tags; 2048 bytes are
///   enough for every frame
/// @return 1 for PPPoE, else 0; also 0 when `frame` is null
BCM6838X_EXPORT uint32_t BCM6838X_IsPPPoEProtocol(const uint8_t* frame);

/// Sends a protocol client's frame to a UNI port by the transmit operation of its kind, which is
/// the first of these that fits; it refuses a longer frame with its own line. Whether the frame was
/// sent is not told.
/// - a frame to 01:80:C2:00:00:00: BCM6838X_SendBpduPkt, up to 100 bytes;
/// - DHCP towards a server: BCM6838X_SendDhcpPkt, up to 1700 bytes;
/// - PPPoE: BCM6838X_SendPPPoEPkt, up to 1700 bytes;
/// - any other: BCM6838X_RdpaSendIgmpPkt, up to 2046 bytes, with source port 0 and flow identifier
///   1.
///
/// @par Sends
/// BRMGR_CMD_SEND_BPDU, BRMGR_CMD_SEND_DHCP, BRMGR_CMD_SEND_PPPOE or BRMGR_CMD_SEND_PKT.
/// @par Logs
/// The null line.
///
/// @param[in] frame the frame
/// @param[in] length its length in bytes, all of them readable; only the low 16 bits count
/// @param[in] vlan ignored
/// @param[in] srcPort ignored
/// @param[in] desPort destination UNI port; only the low 8 bits count. A frame of the last kind
///   goes to port 0 when the unit has no such port.
/// @return BCM6838X_OK; also when `frame` is null
BCM6838X_EXPORT uint32_t BCM6838X_SendPacket(const uint8_t* frame, uint32_t length, uint32_t vlan,
                                             uint32_t srcPort, uint32_t desPort);

/// Sends a BPDU.
///
/// @par Sends
/// BRMGR_CMD_SEND_BPDU, `length` + 8 bytes.
/// @par Logs
/// "BCM6838X_SendBpduPkt( desPort=%u,  length=%u) params error." when `length` exceeds 100.
///
/// @param[in] rec the frame and its port; `length` + 8 bytes readable
/// @return the command's result (codes of BCM6838X_Ioctl); BCM6838X_INVALID when `length` exceeds
///   100 or `rec` is null, then without a line
BCM6838X_EXPORT uint32_t BCM6838X_SendBpduPkt(const RelayPkt* rec);

/// Sends a DHCP frame.
///
/// @par Sends
/// BRMGR_CMD_SEND_DHCP, `length` + 8 bytes.
/// @par Logs
/// "BCM6838X_SendDhcpPkt( desPort=%u,  length=%u) params error." when `length` exceeds 1700.
///
/// @param[in] rec the frame and its port; `length` + 8 bytes readable
/// @return the command's result (codes of BCM6838X_Ioctl); BCM6838X_INVALID when `length` exceeds
///   1700 or `rec` is null, then without a line
BCM6838X_EXPORT uint32_t BCM6838X_SendDhcpPkt(const RelayPkt* rec);

/// Sends a PPPoE frame.
///
/// @par Sends
/// BRMGR_CMD_SEND_PPPOE, `length` + 8 bytes.
/// @par Logs
/// "BCM6838X_SendPPPoEPkt( desPort=%u,  length=%u) params error." when `length` exceeds 1700.
///
/// @param[in] rec the frame and its port; `length` + 8 bytes readable
/// @return the command's result (codes of BCM6838X_Ioctl); BCM6838X_INVALID when `length` exceeds
///   1700 or `rec` is null, then without a line
BCM6838X_EXPORT uint32_t BCM6838X_SendPPPoEPkt(const RelayPkt* rec);

/// Sends any frame.
///
/// @par Sends
/// BRMGR_CMD_SEND_PKT, `size` + 18 bytes: two more than the header and the frame.
/// @par Logs
/// "BCM6838X_RdpaSendIgmpPkt(size=%lu>%lu, desPort=%lu, srcPort=%lu, gemFlowId=%lu) params error."
/// when `size` exceeds 2046, which is the second number.
///
/// @param[in] desc the frame, its ports and its flow; `size` + 18 bytes readable
/// @return the command's result (codes of BCM6838X_Ioctl); BCM6838X_INVALID when `size` exceeds
///   2046 or `desc` is null, then without a line
BCM6838X_EXPORT uint32_t BCM6838X_RdpaSendIgmpPkt(const RdpaPkt* desc);

/// Relays a trapped DHCP frame, which begins at offset 22 of the event: applies the VLAN rule of
/// its port, whose low 8 bits count, then hands it to DHCPRELAY_HandlePacket while the relay is on,
/// or puts it back on its way with BCM6838X_SendDhcpPkt while it is off.
///
/// @par Sends
/// BRMGR_CMD_SEND_DHCP while the relay is off.
/// @par Logs
/// - "Invalid parameter!", level 4, when `event` is null;
/// - "Packet is too long!" when its length exceeds 1700;
/// - "Packet is not dhcp pkts!" when the frame is not DHCP towards a server;
/// - "Deal with vlan failed!" when the port's rule drops the frame;
/// - "[%s:%d] receive dhcp pkts from port %u VLAN %u" when it goes to the relay client, with the
///   VID of an outer tag of type 0x8100, 0 without one.
///
/// @param[in] event an event of type 6
/// @return BCM6838X_OK when the frame was put back, whatever the transmit gave; the relay client's
///   result; BCM6838X_FAILED in the first four cases that are logged
BCM6838X_EXPORT uint32_t BCM6838X_DhcpRelayHandle(const BrmgrEvent* event);

/// Relays a trapped PPPoE frame, which begins at offset 22 of the event: applies the VLAN rule of
/// its port, whose low 8 bits count, then hands it to PPPOERELAY_HandlePacket while the relay is
/// on, or puts it back on its way with BCM6838X_SendPPPoEPkt while it is off.
///
/// @par Sends
/// BRMGR_CMD_SEND_PPPOE while the relay is off.
/// @par Logs
/// - "Invalid parameter!", level 4, when `event` is null;
/// - "Packet is too long!" when its length exceeds 1700;
/// - "Packet is not dhcp pkts!", which names DHCP here too, when the frame is not PPPoE;
/// - "Deal with vlan failed!" when the port's rule drops the frame;
/// - "[%s:%d] receive ppoe pkts from port %u VLAN %u" when it goes to the relay client, with the
///   VID of an outer tag of type 0x8100, 0 without one.
///
/// @param[in] event an event of type 7
/// @return BCM6838X_OK when the frame was put back, whatever the transmit gave; the relay client's
///   result; BCM6838X_FAILED in the first four cases that are logged
BCM6838X_EXPORT uint32_t BCM6838X_PPPoERelayHandle(const BrmgrEvent* event);

/// Switches the DHCP relay and, on every Ethernet port, the trap of DHCP frames. Logs nothing.
///
/// @par Sends
/// BRMGR_CMD_DHCP_TRAP, one a port, with port indexes from 0.
///
/// @param[in] enable 0 off, any other value on; the driver receives it as it is
/// @return BCM6838X_OK, whatever the driver answers
BCM6838X_EXPORT uint32_t BCM6838X_SetDhcpTrapEnable(uint32_t enable);

/// Switches the PPPoE relay and, on every Ethernet port, the trap of PPPoE frames. Logs nothing.
///
/// @par Sends
/// BRMGR_CMD_PPPOE_TRAP, one a port, with port indexes from 0.
///
/// @param[in] enable 0 off, any other value on; the driver receives it as it is
/// @return BCM6838X_OK, whatever the driver answers
BCM6838X_EXPORT uint32_t BCM6838X_SetPPPoETrapEnable(uint32_t enable);

/// Opens the netlink socket of the kernel event monitor (protocol 25), binds it to the process and
/// registers it with the board driver. Called by the task "kernelEvent". Sends and logs nothing;
/// says on standard output what it did:
/// - "Could not open netlink socket for kernel monitor", or "kernelMonitorFd = %d";
/// - "Could not bind netlink socket for kernel monitor";
/// - "registered fd %d with kernel monitor", or
/// - "failed to register fd %d with kernel monitor, ret = %d".
///
/// @return 0 when registered, 1 when the socket could not be opened or bound, otherwise the
///   non-zero result of the registration; then the socket is closed again
BCM6838X_EXPORT int32_t InitKernelMonitorFd(void);

/// Entry point of the task "kernelEvent", which BCM6838X_Init spawns. Sets the kernel event monitor
/// up (InitKernelMonitorFd), then serves the kernel's messages for ever: the reset button, which
/// restarts the unit, resets it to factory defaults when it was held for 5 seconds, and in factory
/// mode is only announced by two lines of the script "/usr/local/bin/msgall.sh"; and link changes
/// (BCM6838X_EventUniStateReport). Malformed datagrams, and messages too short for their kind, are
/// passed over. Returns only when the socket could not be set up or its descriptor is too large for
/// select(), which is told on standard output as
/// "Descriptor of the kernel monitor is too large for select". There
/// "read_netlink: Message is an error " and "netlink message source(%d)is not kernel " tell of
/// messages that are not served.
///
/// @par Sends
/// BRMGR_CMD_PORT_STATE, by BCM6838X_EventUniStateReport.
/// @par Logs
/// Nothing itself.
BCM6838X_EXPORT void BCM6838X_kernelEvent(void);

/// Reports a link change of a UNI port: its line rate to the driver unless the link is down, then
/// two notifications to the management process (module 0xA280, code 0x0D02, 36 bytes; with the
/// codes 0x0301 and 0x0302 inside).
///
/// @par Sends
/// BRMGR_CMD_PORT_STATE unless `state` is 6.
/// @par Logs
/// "UNI port[%lu] MODE change to [%lu]" at once;
/// "UNI port[%lu] MODE change to [%lu], flow control error, ret=%d" when the command comes to
/// anything but BCM6838X_OK.
///
/// @param[in] port UNI port number, 1..4; any other is reported to the driver as device port 0
/// @param[in] state 0 to 5 for 1000 full, 1000 half, 100 full, 100 half, 10 full and 10 half; 6
///   link down; any other value a rate that is not known, reported as 0
/// @return BCM6838X_OK, whatever the driver answers
BCM6838X_EXPORT uint32_t BCM6838X_EventUniStateReport(uint32_t port, uint32_t state);

/// Switches the EPON laser. Logs nothing.
///
/// @par Sends
/// BRMGR_CMD_LASER_ON or BRMGR_CMD_LASER_OFF, neither of which has a record.
///
/// @param[in] on 1 on, any other value off; only the low 8 bits count
/// @return BCM6838X_OK, whatever the driver answers
BCM6838X_EXPORT uint32_t BCM6838X_SetEponLaserState(uint32_t on);

BCM6838X_END_DECLS

#endif
