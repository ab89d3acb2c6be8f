/// @file
/// Driver core and packet path: the command channel to the bridge-manager device, start-up and
/// operating modes; capture of trapped frames, the VLAN rules of the ports as they apply to a
/// frame, transmission, relays; the kernel event task and the EPON laser. Operations on ports,
/// VLANs, multicast and QoS are in the headers of their areas.
///
/// Frames begin with the destination MAC address. "Bytes that must be readable" are those that an
/// operation may look at; no operation keeps the address of a frame or a record. A frame whose
/// length is an argument is never read beyond it.
#ifndef HAL_BCM6838X_H
#define HAL_BCM6838X_H

#include <stdint.h>

#include "bcm6838x_api.h"
#include "brmgr_record.h"

BCM6838X_BEGIN_DECLS

/// Sends one command record to the bridge-manager driver: the one door to the device "BrmgrDev".
/// Builds a BrmgrRequest and issues a single ioctl; never retries. May be called from any thread.
///
/// @param[in] cmd command code, 0..182 (brmgr_cmd.h); codes without a name pass too
/// @param[in,out] buf the command record, `len` bytes readable and, with read-back, writable; null
///   where the command has none. Not kept. It may be partly written by the driver even when the
///   command fails.
/// @param[in] len length of the record in bytes, 0 where the command has none
/// @param[in] flag BRMGR_FLAG_READ_BACK when the driver is to write its result into the record,
///   else BRMGR_FLAG_INPUT
/// @return BCM6838X_OK; BCM6838X_NOT_OPEN when the device is not open, checked first and without a
///   log line; BCM6838X_INVALID when `cmd` is 183 or more, without a log line; BCM6838X_REFUSED
///   when the ioctl returned anything but 0, with one log line that names the code and the returned
///   value
BCM6838X_EXPORT uint32_t BCM6838X_Ioctl(uint32_t cmd, void* buf, uint32_t len, uint32_t flag);

/// Starts the library: log module, task "kernelEvent", ports down, operating mode, device, the
/// initial state of every area, default ingress classes and flows, feature switch 27. Called once,
/// before any other operation, by the process that owns the library; a second call is not guarded
/// and repeats all of it. There is no shutdown. Failures after the log module are printed or logged
/// and skipped.
///
/// @return BCM6838X_OK, or BCM6838X_FAILED when the log module cannot be created (then nothing else
///   is done, and "LOG_Create fail.\r" stands on standard output)
BCM6838X_EXPORT uint32_t BCM6838X_Init(void);

/// Opens "BrmgrDev", tells the driver the numbers of Fast- and Gigabit-Ethernet ports
/// (BRMGR_CMD_INIT) and reads the board identifier.
///
/// @return the result of BRMGR_CMD_INIT, or BCM6838X_FAILED, with a log line, when the device
///   cannot be opened
BCM6838X_EXPORT uint32_t BCM6838X_InitDrv(void);

/// Decides the operating mode: consumes the marker file "/var/config/switch_perf", whose presence
/// selects performance mode for this start only and prints a warning of five lines on standard
/// output.
///
/// @return BCM6838X_OK when performance mode was selected, BCM6838X_END otherwise
BCM6838X_EXPORT uint32_t BCM6838X_PerformanceInit(void);

/// Tells the operating mode.
///
/// @return 1 in performance mode, else 0
BCM6838X_EXPORT uint32_t BCM6838X_IsPerformance(void);

/// Creates the default ingress classes of normal mode, five upstream and three downstream, and the
/// flows that trap the unit's own traffic: its two MAC addresses in both directions, when the
/// platform knows them, and upstream the reserved addresses 01:80:C2:00:00:00 and
/// 01:80:C2:00:00:23. Results of the flows are not checked.
///
/// @return the result of the last class creation (codes of BCM6838X_Ioctl)
BCM6838X_EXPORT uint32_t BCM6838X_RdpaIcInit(void);

/// Creates the two default ingress classes of performance mode, one a direction, and no flow.
///
/// @return the result of the second class creation (codes of BCM6838X_Ioctl)
BCM6838X_EXPORT uint32_t BCM6838X_RdpaIcInit_Perf(void);

/// Hands the value of the platform's feature switch 27 to the driver (BRMGR_CMD_FEATURE).
///
/// @return the command's result (codes of BCM6838X_Ioctl)
BCM6838X_EXPORT uint32_t BCM6838X_SFInit(void);

/// Converts a UNI port number into the data path's port number.
///
/// @param[in] port UNI port number, from 1; only the low 8 bits count
/// @return the low 8 bits of `port`, plus 1: UNI port 1 is data-path port 2
BCM6838X_EXPORT uint32_t BCM6838X_StreamPortIndexUniToRdpa(uint32_t port);

/// Reads one event of the device. Blocks until the driver has one, so that it is called on the
/// caller's capture thread.
///
/// @param[out] event the event; cleared first, and partly filled when the read fails
/// @return BCM6838X_OK; BCM6838X_FAILED when read() did not give a whole record, also when the
/// device
///   is not open; BCM6838X_INVALID when `event` is null, without a log line
BCM6838X_EXPORT uint32_t BCM6838X_GetEvent(BrmgrEvent* event);

/// Reads one event and hands its frame to the protocol client that owns it, by the event's type:
/// multicast control frames, after the VLAN rule of their port, to IGMP_DispatchPacket or
/// MLD_DispatchPacket; BPDUs to the spanning-tree process; multicast control frames to send, after
/// the VLAN rule, to BCM6838X_RdpaSendIgmpPkt; DHCP and PPPoE frames to their relays. Other types
/// are ignored. Blocks in read(); called again and again on one thread of the caller's.
/// Configuration may change meanwhile, and a frame may then see half of a change.
///
/// @return BCM6838X_OK, without a read when the platform's feature switch 27 is not 1;
///   BCM6838X_FAILED when no event could be read and, for an event of type 1, when the frame is
///   dropped: by its port's rule, because it has three tags of type 0x8100, or, with one log line,
///   because its length exceeds the event's data field. Results of the clients and of transmits
///   are not passed on, and a frame of type 5 that is dropped, for such a length too, counts as
///   done.
BCM6838X_EXPORT uint32_t BCM6838X_CapturePacket(void);

/// Reads the outer VLAN tag of a frame.
///
/// @param[in] frame 18 bytes readable
/// @param[out] vid VID of the outer tag; not written when the frame counts as untagged
/// @param[out] pri priority of the outer tag, 0..7; not written when the frame counts as untagged
/// @return 0 untagged, and a single tag of type 0x88A8 counts as that; 1 for a tag of type 0x8100;
/// 2
///   for two tags, the outer of type 0x88A8 or 0x8100 and the inner of type 0x8100. Also 0, with a
///   log line, when an argument is null.
BCM6838X_EXPORT uint32_t BCM6838X_GetTag(const uint8_t* frame, uint16_t* vid, uint16_t* pri);

/// Removes the outer VLAN tag of type 0x8100.
///
/// @param[in,out] frame `size` bytes
/// @param[in,out] size length of the frame; 4 less afterwards
/// @return BCM6838X_OK; BCM6838X_FAILED, with nothing changed, when there is no such tag within
///   `size` bytes or, with a log line, when `size` exceeds 2048; BCM6838X_INVALID, with a log line,
///   when an argument is null
BCM6838X_EXPORT uint32_t BCM6838X_RemoveVlanTag(uint8_t* frame, uint32_t* size);

/// Rewrites VID and priority of the outer VLAN tag of type 0x8100; the drop-eligible bit becomes 0.
///
/// @param[in,out] frame 16 bytes
/// @param[in] vid new VID; the low 12 bits count
/// @param[in] pri new priority; the low 3 bits count
/// @return BCM6838X_OK; BCM6838X_FAILED, with nothing changed, when there is no such tag;
///   BCM6838X_INVALID, with a log line, when `frame` is null
BCM6838X_EXPORT uint32_t BCM6838X_TranslateVlanTag(uint8_t* frame, uint32_t vid, uint32_t pri);

/// Adds an outer VLAN tag of type 0x8100 whose drop-eligible bit is 0. The frame must be followed
/// by 4 bytes of room.
///
/// @param[in,out] frame `size` bytes readable, `size` + 4 bytes writable
/// @param[in,out] size length of the frame, 12..2044; 4 more afterwards. Any other length is
/// refused
///   with a log line, and nothing is changed.
/// @param[in] vid VID; the low 12 bits count
/// @param[in] pri priority; the low 3 bits count
/// @return BCM6838X_OK, also when the tag was refused or, with a log line, an argument is null
BCM6838X_EXPORT uint32_t BCM6838X_AddVlanTag(uint8_t* frame, uint32_t* size, uint32_t vid,
                                             uint32_t pri);

/// Applies a UNI port's VLAN rule to a frame, by the port's mode: upstream the rule of the source
/// port, or downstream, when there is none, that of the destination port. The rule may add, rewrite
/// or remove the outer tag. Reads the port's record of the configuration as last set.
///
/// @param[in,out] frame the frame, usually `data` of the descriptor: `size` bytes readable and
///   min(`size` + 4, 2048) bytes writable
/// @param[in,out] desc only its first word, `size`, is read and updated
/// @param[in] srcPort source UNI port, 0 for none; only the low 8 bits count
/// @param[in] desPort destination UNI port, 0 for none; only the low 8 bits count
/// @return 0 forward the frame; 1 drop it, by the rule, because the unit has no such port or, each
///   with one log line, because the port's mode is none that is known, because there is no record
///   for the port (neither port given, or beyond 32), because `size` exceeds 2048, or because a
///   frame that is to gain a tag has not 12..2044 bytes; BCM6838X_INVALID, with a log line, when an
///   argument is null
BCM6838X_EXPORT uint32_t BCM6838X_AccordVlan(uint8_t* frame, RdpaPkt* desc, uint32_t srcPort,
                                             uint32_t desPort);

/// Tells whether a frame is an MLD message: ICMPv6 type 130, 131, 132 or 143, behind up to two tags
/// of type 0x8100 and any IPv6 extension headers.
///
/// @param[in] frame the frame
/// @param[in] length its length in bytes, all of them readable; only the low 16 bits count
/// @return 1 for an MLD message, else 0; also 0, with a log line, when `frame` is null
BCM6838X_EXPORT uint32_t BCM6838X_IsMldPacket(const uint8_t* frame, uint32_t length);

/// Tells whether a frame is DHCP towards a server: UDP to port 67 in IPv4, whose header is taken as
/// 20 bytes long, or to port 547 in IPv6, behind any number of tags of type 0x8100.
///
/// @param[in] frame readable up to 44 bytes behind the type field that follows the tags; 2048 bytes
///   are enough for every frame
/// @return 1 for DHCP towards a server, else 0; also 0, with a log line, when `frame` is null
BCM6838X_EXPORT uint32_t BCM6838X_IsDHCPProtocol(const uint8_t* frame);

/// Tells whether a frame is PPPoE, discovery or session, behind any number of tags of type 0x8100.
///
/// @param[in] frame readable up to the end of the type field that follows the tags; 2048 bytes are
///   enough for every frame
/// @return 1 for PPPoE, else 0; also 0, with a log line, when `frame` is null
BCM6838X_EXPORT uint32_t BCM6838X_IsPPPoEProtocol(const uint8_t* frame);

/// Sends a protocol client's frame to a UNI port by the transmit command of its kind: frames to
/// 01:80:C2:00:00:00 with BCM6838X_SendBpduPkt, DHCP towards a server with BCM6838X_SendDhcpPkt,
/// PPPoE with BCM6838X_SendPPPoEPkt, any other frame with BCM6838X_RdpaSendIgmpPkt. Whether the
/// frame was sent is not told.
///
/// @param[in] frame the frame
/// @param[in] length its length in bytes, all of them readable; only the low 16 bits count
/// @param[in] vlan ignored
/// @param[in] srcPort ignored
/// @param[in] desPort destination UNI port; only the low 8 bits count. A frame of the last kind
/// goes
///   to port 0 when the unit has no such port.
/// @return BCM6838X_OK; also, with a log line, when `frame` is null
BCM6838X_EXPORT uint32_t BCM6838X_SendPacket(const uint8_t* frame, uint32_t length, uint32_t vlan,
                                             uint32_t srcPort, uint32_t desPort);

/// Sends a BPDU (BRMGR_CMD_SEND_BPDU).
///
/// @param[in] rec the frame and its port; `length` + 8 bytes readable
/// @return the command's result (codes of BCM6838X_Ioctl); BCM6838X_INVALID when `rec` is null,
///   without a log line, or, with one, when `length` exceeds 100
BCM6838X_EXPORT uint32_t BCM6838X_SendBpduPkt(const RelayPkt* rec);

/// Sends a DHCP frame (BRMGR_CMD_SEND_DHCP).
///
/// @param[in] rec the frame and its port; `length` + 8 bytes readable
/// @return the command's result (codes of BCM6838X_Ioctl); BCM6838X_INVALID when `rec` is null,
///   without a log line, or, with one, when `length` exceeds 1700
BCM6838X_EXPORT uint32_t BCM6838X_SendDhcpPkt(const RelayPkt* rec);

/// Sends a PPPoE frame (BRMGR_CMD_SEND_PPPOE).
///
/// @param[in] rec the frame and its port; `length` + 8 bytes readable
/// @return the command's result (codes of BCM6838X_Ioctl); BCM6838X_INVALID when `rec` is null,
///   without a log line, or, with one, when `length` exceeds 1700
BCM6838X_EXPORT uint32_t BCM6838X_SendPPPoEPkt(const RelayPkt* rec);

/// Sends any frame (BRMGR_CMD_SEND_PKT).
///
/// @param[in] desc the frame, its ports and its flow; `size` + 18 bytes readable
/// @return the command's result (codes of BCM6838X_Ioctl); BCM6838X_INVALID when `desc` is null,
///   without a log line, or, with one, when `size` exceeds 2046
BCM6838X_EXPORT uint32_t BCM6838X_RdpaSendIgmpPkt(const RdpaPkt* desc);

/// Relays a trapped DHCP frame, which begins at offset 22 of the event: applies the VLAN rule of
/// its port, then hands it to DHCPRELAY_HandlePacket while the relay is on, with a log line, or
/// puts it back on its way with BCM6838X_SendDhcpPkt while it is off.
///
/// @param[in] event an event of type 6
/// @return BCM6838X_OK when the frame was put back, whatever the transmit gave; the relay client's
///   result; BCM6838X_FAILED, with a log line, when `event` is null, its length exceeds 1700, the
///   frame is not DHCP towards a server, or the port's rule drops it
BCM6838X_EXPORT uint32_t BCM6838X_DhcpRelayHandle(const BrmgrEvent* event);

/// Relays a trapped PPPoE frame, which begins at offset 22 of the event: applies the VLAN rule of
/// its port, then hands it to PPPOERELAY_HandlePacket while the relay is on, with a log line, or
/// puts it back on its way with BCM6838X_SendPPPoEPkt while it is off.
///
/// @param[in] event an event of type 7
/// @return BCM6838X_OK when the frame was put back, whatever the transmit gave; the relay client's
///   result; BCM6838X_FAILED, with a log line, when `event` is null, its length exceeds 1700, the
///   frame is not PPPoE, or the port's rule drops it
BCM6838X_EXPORT uint32_t BCM6838X_PPPoERelayHandle(const BrmgrEvent* event);

/// Switches the DHCP relay and, on every Ethernet port, the trap of DHCP frames
/// (BRMGR_CMD_DHCP_TRAP, one command a port, with port indexes from 0).
///
/// @param[in] enable 0 off, any other value on; the driver receives it as it is
/// @return BCM6838X_OK, whatever the driver answers
BCM6838X_EXPORT uint32_t BCM6838X_SetDhcpTrapEnable(uint32_t enable);

/// Switches the PPPoE relay and, on every Ethernet port, the trap of PPPoE frames
/// (BRMGR_CMD_PPPOE_TRAP, one command a port, with port indexes from 0).
///
/// @param[in] enable 0 off, any other value on; the driver receives it as it is
/// @return BCM6838X_OK, whatever the driver answers
BCM6838X_EXPORT uint32_t BCM6838X_SetPPPoETrapEnable(uint32_t enable);

/// Opens the netlink socket of the kernel event monitor (protocol 25) and registers it with the
/// board driver. Says on standard output what it did. Called by the task "kernelEvent".
///
/// @return 0 when registered, 1 when the socket could not be opened or bound, otherwise the
///   non-zero result of the registration; then the socket is closed again
BCM6838X_EXPORT int32_t InitKernelMonitorFd(void);

/// Entry point of the task "kernelEvent", which BCM6838X_Init spawns. Sets the kernel event monitor
/// up, then serves the kernel's messages for ever: the reset button (restart of the unit, or reset
/// to factory defaults after 5 seconds; in factory mode only an announcement) and link changes
/// (BCM6838X_EventUniStateReport). Messages that do not come from the kernel, and errors, are told
/// on standard output. Malformed datagrams, and messages too short for their kind, are passed over.
/// Returns only when the socket could not be set up or its descriptor is too large for select().
BCM6838X_EXPORT void BCM6838X_kernelEvent(void);

/// Reports a link change of a UNI port: its line rate to the driver (BRMGR_CMD_PORT_STATE) unless
/// the link is down, then two notifications to the management process. Logs the change, and a
/// refused command.
///
/// @param[in] port UNI port number, 1..4; any other is reported to the driver as device port 0
/// @param[in] state 0 to 5 for 1000 full, 1000 half, 100 full, 100 half, 10 full and 10 half; 6
/// link
///   down; any other value a rate that is not known, reported as 0
/// @return BCM6838X_OK, whatever the driver answers
BCM6838X_EXPORT uint32_t BCM6838X_EventUniStateReport(uint32_t port, uint32_t state);

/// Switches the EPON laser (BRMGR_CMD_LASER_ON, BRMGR_CMD_LASER_OFF).
///
/// @param[in] on 1 on, any other value off; only the low 8 bits count
/// @return BCM6838X_OK, whatever the driver answers
BCM6838X_EXPORT uint32_t BCM6838X_SetEponLaserState(uint32_t on);

BCM6838X_END_DECLS

#endif
