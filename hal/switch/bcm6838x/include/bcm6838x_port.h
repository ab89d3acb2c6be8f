/// @file
/// Port control: link and negotiation state, pause, PHY power, administrative state, negotiation
/// mode, loopback, isolation, learning, spanning tree, frame size and mirroring. Port statistics:
/// counters, and their clearing.
///
/// Every operation takes a UNI port number, counted from 1, in the low 8 bits of `port`. The Linux
/// interface of ports 1..5 is "eth0".."eth4"; an operation that reads the PHY fails for any other
/// port. The device commands of port control carry the port number plus 1; their results and those
/// of shell lines are not checked.
#ifndef BCM6838X_PORT_H
#define BCM6838X_PORT_H

#include <stddef.h>
#include <stdint.h>

#include "bcm6838x_api.h"
#include "brmgr_record.h"

BCM6838X_BEGIN_DECLS

struct ifreq;

/// Media types.
enum {
  BCM6838X_MEDIA_1000_FULL = 0,  ///< 1000 Mbit/s full duplex
  BCM6838X_MEDIA_1000_HALF = 1,  ///< 1000 Mbit/s half duplex
  BCM6838X_MEDIA_100_FULL = 2,   ///< 100 Mbit/s full duplex
  BCM6838X_MEDIA_100_HALF = 3,   ///< 100 Mbit/s half duplex
  BCM6838X_MEDIA_10_FULL = 4,    ///< 10 Mbit/s full duplex
  BCM6838X_MEDIA_10_HALF = 5,    ///< 10 Mbit/s half duplex
  BCM6838X_MEDIA_DOWN = 6        ///< link down
};

/// Asks the interface's driver for its PHY address (SIOCGMIIPHY).
///
/// @param[in] socket an open datagram socket
/// @param[in,out] ifr names the interface; its MII data are cleared of a PHY address, then filled
/// @return the PHY address, or -1 when the ioctl fails or, with a log line, when `ifr` is null
BCM6838X_EXPORT int32_t et_get_phyid(int32_t socket, struct ifreq* ifr);

/// Reads one MII register (SIOCGMIIREG). A failure is printed to standard error.
///
/// @param[in] socket an open datagram socket
/// @param[in,out] ifr names the interface; its MII data are overwritten
/// @param[in] phy PHY address; its top 8 bits are passed to the driver as flags
/// @param[in] reg register number, 0..31
/// @return the register's value, 0..0xFFFF; 0 on failure or, with a log line, when `ifr` is null
BCM6838X_EXPORT int32_t mdio_read(int32_t socket, struct ifreq* ifr, int32_t phy, int32_t reg);

/// Puts the mirroring record and the remembered administrative states into their initial state and
/// writes the PHY settings that every port gets at start (two shell lines a port). Called by
/// BCM6838X_Init.
///
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_InitPort(void);

/// Reads a port's media type from its PHY: the best common ability with auto-negotiation, the
/// forced mode without, link down when the second of two reads of the status register shows no
/// link.
///
/// @param[in] port UNI port, 1..5
/// @param[out] type BCM6838X_MEDIA_*; left as it was when the link is up but nothing was negotiated
/// @return BCM6838X_OK; BCM6838X_FAILED when there is no such interface, when its PHY does not
/// answer (control register 0xFFFF or status register 0), or, with a log line, when `type` is null
BCM6838X_EXPORT uint32_t BCM6838X_GetMediaType(uint32_t port, uint32_t* type);

/// Reads a port's link state from its PHY.
///
/// @param[in] port UNI port, 1..5
/// @param[out] state 1 link up, 0 link down or PHY not readable
/// @return BCM6838X_OK; also, with a log line, when `state` is null
BCM6838X_EXPORT uint32_t BCM6838X_GetPortLinkState(uint32_t port, uint32_t* state);

/// Reads a port's negotiation result from its PHY.
///
/// @param[in] port UNI port, 1..5
/// @param[out] result 0 10 half (and link down), 1 100 half, 2 1000 half, 3 10 full, 4 100 full, 5
/// 1000 full
/// @return BCM6838X_OK; BCM6838X_FAILED when the PHY is not readable or the link is up but nothing
/// was negotiated (`result` is then left as it was), or, with a log line, when `result` is null
BCM6838X_EXPORT uint32_t BCM6838X_GetPortNegResult(uint32_t port, uint32_t* result);

/// Sets whether a port advertises pause (IEEE 802.3 annex 28B) and restarts auto-negotiation;
/// nothing changes when auto-negotiation is off.
///
/// @param[in] port UNI port, 1..5
/// @param[in] mode pause mode: 1, 2 and 6 advertise pause, any other value does not
/// @return BCM6838X_OK, or BCM6838X_FAILED when the PHY is not readable
BCM6838X_EXPORT uint32_t BCM6838X_PauseAbilitySet(uint32_t port, uint32_t mode);

/// Reads whether a port advertises pause.
///
/// @param[in] port UNI port, 1..5
/// @param[out] mode 2 advertised, 0 not; left as it was when auto-negotiation is off
/// @return BCM6838X_OK; BCM6838X_FAILED when the PHY is not readable, or, with a log line, when
/// `mode` is null
BCM6838X_EXPORT uint32_t BCM6838X_PauseAbilityGet(uint32_t port, uint32_t* mode);

/// Switches flow control: sets pause mode 2 or 0.
///
/// @param[in] port UNI port, 1..5
/// @param[in] on 1 on, any other value off; only the low 8 bits count
/// @return the result of BCM6838X_PauseAbilitySet
BCM6838X_EXPORT uint32_t BCM6838X_SetPortFlowControl(uint32_t port, uint32_t on);

/// Powers a port's PHY down or up (IEEE 802.3 22.2.4.1.5) by a shell line.
///
/// @param[in] port UNI port, 1..5
/// @param[in] down 0 up, any other value down
/// @return 0; 1 when there is no such interface; -1 when its PHY does not answer
BCM6838X_EXPORT int32_t BCM6838X_PhyPowerDown(uint32_t port, uint32_t down);

/// Sets a port's administrative state (BRMGR_CMD_PORT_ADMIN), powers its PHY accordingly and
/// remembers the state.
///
/// @param[in] port UNI port, 1..5
/// @param[in] state 0 down, any other value up
/// @return 1 when the port is out of range (nothing is done), else the result of
/// BCM6838X_PhyPowerDown
BCM6838X_EXPORT int32_t BCM6838X_SetPortAdminState(uint32_t port, uint32_t state);

/// Sets a port's negotiation mode by a shell line, then applies the remembered administrative state
/// again, so that a port that is down stays down. The port is not range-checked for the shell line;
/// no administrative state is applied to ports above 31.
///
/// @param[in] port UNI port
/// @param[in] mode 0 10 half, 1 100 half, 3 10 full, 4 100 full; 2, 5 and 6 auto-negotiation
/// @return BCM6838X_OK, or BCM6838X_FAILED when `mode` is 7 or more (nothing is done)
BCM6838X_EXPORT uint32_t BCM6838X_SetPortNegMode(uint32_t port, uint32_t mode);

/// Switches a port's loopback (BRMGR_CMD_PORT_LOOPBACK).
///
/// @param[in] port UNI port, 1..5
/// @param[in] on 0 off, any other value on
/// @return BCM6838X_OK, or BCM6838X_FAILED when the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_SetPortLoopback(uint32_t port, uint32_t on);

/// Isolates a port from others (BRMGR_CMD_PORT_ISOLATE, one record a peer).
///
/// @param[in] port UNI port, 1..4
/// @param[in] mask 0 releases the port from all others; otherwise bit b isolates it from UNI port b
/// + 1, itself included, and ports whose bit is clear are not touched; bits above 3 are ignored
/// @return BCM6838X_OK, or BCM6838X_FAILED when the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_SetPortIsolateMask(uint32_t port, uint32_t mask);

/// Switches MAC learning of the whole switch (BRMGR_CMD_MAC_LEARN); logs the value.
///
/// @param[in] port not used
/// @param[in] enable passed on as it is
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_SetPortMacLearn(uint32_t port, uint32_t enable);

/// Sets the learning limit of the whole switch (BRMGR_CMD_MAC_LIMIT); logs the value.
///
/// @param[in] port not used
/// @param[in] limit number of addresses; only the low 16 bits count
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_SetPortLimitMacNum(uint32_t port, uint32_t limit);

/// Switches spanning tree on every port: for each port index, from 0, a message to the
/// spanning-tree process and a command (BRMGR_CMD_PORT_STP).
///
/// @param[in] enable passed on as it is
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_SetPortStpEnable(uint32_t enable);

/// Enforces a spanning-tree state by the port's administrative state, when feature switch 27 is 1.
///
/// @param[in] port UNI port, 1..5
/// @param[in] stpState 1 takes the port down, 4 takes it up, any other value does nothing
/// @return the result of BCM6838X_SetPortAdminState when it was called, else BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_SetPortStpState(uint32_t port, uint32_t stpState);

/// Sets a port's maximum frame size: jumbo frames are on from 1519 octets.
///
/// @param[in] port UNI port; passed on as a port index from 0, unchecked
/// @param[in] mtu size in octets; only the low 16 bits count
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_SetPortMtu(uint32_t port, uint32_t mtu);

/// Chooses the port that receives mirrored frames; takes effect with BCM6838X_SetPortMirrorEnable.
///
/// @param[in] port UNI port, 1..4
/// @return BCM6838X_OK, or BCM6838X_FAILED when the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_SetPortMirrorDestport(uint32_t port);

/// Chooses what is mirrored; takes effect with BCM6838X_SetPortMirrorEnable. The last port of the
/// array with a mode wins.
///
/// @param[in] modes one byte for each Ethernet port: 0 none, 1, 2 or 3 give direction 1, 0 or 2;
/// other values choose no direction
/// @return BCM6838X_OK, or BCM6838X_FAILED with a log line when `modes` is null
BCM6838X_EXPORT uint32_t BCM6838X_SetPortMirrorMode(const uint8_t* modes);

/// Switches mirroring and sends the mirroring record (BRMGR_CMD_PORT_MIRROR).
///
/// @param[in] enable passed on as it is
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_SetPortMirrorEnable(uint32_t enable);

/// Does nothing.
///
/// @param[in] port not used
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_GetGlobalLinkState(uint32_t port, ...);

/// Does nothing.
///
/// @param[in] port not used
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_GetGlobalNegResult(uint32_t port, ...);

/// Does nothing.
///
/// @param[in] port not used
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_SetPortAuthMode(uint32_t port, ...);

/// A 64-bit result in two words.
typedef struct Counter64 {
  uint32_t high;  ///< upper 32 bits
  uint32_t low;   ///< lower 32 bits
} Counter64;

/// One port's raw counters, as BCM6838X_GetPortStatistics fills them.
typedef struct PortStatisticsEntry {
  uint32_t rxOctetsHigh;  ///< 0
  uint32_t rxOctets;      ///< received octets
  uint32_t rxUnicast;     ///< received unicast frames
  uint32_t rxMulticast;   ///< received multicast frames
  uint32_t rxBroadcast;   ///< received broadcast frames
  uint32_t rxErrors;      ///< receive errors, discards included
  uint32_t rxDiscards;    ///< received frames that were discarded
  uint32_t rx64;          ///< received frames of 64 octets
  uint32_t rx65to127;     ///< received frames of 65 to 127 octets
  uint32_t rx128to255;    ///< received frames of 128 to 255 octets
  uint32_t rx256to511;    ///< received frames of 256 to 511 octets
  uint32_t rx512to1023;   ///< received frames of 512 to 1023 octets
  uint32_t rx1024to1518;  ///< received frames of 1024 to 1518 octets
  uint32_t rxWord22;      ///< a receive counter whose meaning is the driver's
  uint32_t txOctetsHigh;  ///< 0
  uint32_t txOctets;      ///< transmitted octets
  uint32_t txUnicast;     ///< transmitted unicast frames
  uint32_t txMulticast;   ///< transmitted multicast frames
  uint32_t txBroadcast;   ///< transmitted broadcast frames
  uint32_t txErrors;      ///< transmit errors, discards included
  uint32_t txDiscards;    ///< frames to transmit that were discarded
  uint32_t tx64;          ///< transmitted frames of 64 octets
  uint32_t tx65to127;     ///< transmitted frames of 65 to 127 octets
  uint32_t tx128to255;    ///< transmitted frames of 128 to 255 octets
  uint32_t tx256to511;    ///< transmitted frames of 256 to 511 octets
  uint32_t tx512to1023;   ///< transmitted frames of 512 to 1023 octets
  uint32_t tx1024to1518;  ///< transmitted frames of 1024 to 1518 octets
  uint32_t notWritten;    ///< left as the caller had it
} PortStatisticsEntry;

/// @cond
BRMGR_STATIC_ASSERT(sizeof(Counter64) == 8, "Counter64 has another size");
BRMGR_STATIC_ASSERT(sizeof(PortStatisticsEntry) == 112, "PortStatisticsEntry has another size");
BRMGR_STATIC_ASSERT(offsetof(PortStatisticsEntry, rxWord22) == 52, "rxWord22 is misplaced");
BRMGR_STATIC_ASSERT(offsetof(PortStatisticsEntry, notWritten) == 108, "notWritten is misplaced");
/// @endcond

/// Fills a table of the raw counters of all ports, one BRMGR_CMD_PORT_STATS a port, counted from 0
/// in these requests. Clears do not count here. An entry whose command fails is filled with zeros.
///
/// @param[out] entries one entry for each Ethernet port; the last word of an entry is not written
/// @return BCM6838X_OK, or BCM6838X_INVALID, with a log line, when `entries` is null
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatistics(PortStatisticsEntry* entries);

/// Clears a port's counters: keeps them as they stand (BRMGR_CMD_PORT_STATS), for the getters to
/// subtract. The hardware goes on counting. The request's port word is what the driver left in the
/// port's kept record, zero before the first clear. A failed command may leave the kept record
/// partly overwritten.
///
/// @param[in] port UNI port, 1..32
/// @return the command's result (codes of BCM6838X_Ioctl); BCM6838X_INVALID, with a log line and
///   without a command, when the port is out of range
BCM6838X_EXPORT uint32_t BCM6838X_SetPortStatisticsClear(uint32_t port);

/// Does nothing.
///
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_SetPortStatisticsInit(void);

/// Does nothing.
///
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_SetPortStatisticsSync(void);

/// Reads the octets that a port has received since its last clear (one BRMGR_CMD_PORT_STATS).
///
/// @param[in] port UNI port, from 1 to the number of Ethernet ports and to 32
/// @param[out] out the counter; when it fell below its value at the clear, `high` is 0xFFFFFFFF
/// @return BCM6838X_OK; BCM6838X_INVALID, without a command, when the port is out of range, and,
///   with a log line, when `out` is null; BCM6838X_FAILED, with a log line and `out` left as it
///   was, when the command fails
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsRxOctets(uint32_t port, Counter64* out);

/// Reads the unicast frames that a port has received since its last clear (one
/// BRMGR_CMD_PORT_STATS).
///
/// @param[in] port UNI port, from 1 to the number of Ethernet ports and to 32
/// @param[out] out the counter; it wraps when it fell below its value at the clear
/// @return BCM6838X_OK; BCM6838X_INVALID, without a command, when the port is out of range, and,
///   with a log line, when `out` is null; BCM6838X_FAILED, with a log line and `out` left as it
///   was, when the command fails
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsRxUnicastPackets(uint32_t port, uint32_t* out);

/// Reads the received multicast frames of a port since its last clear.
///
/// @copydetails BCM6838X_GetPortStatisticsRxUnicastPackets
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsRxMulticastPackets(uint32_t port, uint32_t* out);

/// Reads the received broadcast frames of a port since its last clear.
///
/// @copydetails BCM6838X_GetPortStatisticsRxUnicastPackets
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsRxBroadcastPackets(uint32_t port, uint32_t* out);

/// Reads the receive errors, discards included, of a port since its last clear.
///
/// @copydetails BCM6838X_GetPortStatisticsRxUnicastPackets
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsRxErrorPackets(uint32_t port, uint32_t* out);

/// Reads the received frames that were discarded of a port since its last clear.
///
/// @copydetails BCM6838X_GetPortStatisticsRxUnicastPackets
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsRxDiscardPackets(uint32_t port, uint32_t* out);

/// Reads the received frames of 64 octets of a port since its last clear.
///
/// @copydetails BCM6838X_GetPortStatisticsRxUnicastPackets
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsRx64Octets(uint32_t port, uint32_t* out);

/// Reads the received frames of 65 to 127 octets of a port since its last clear.
///
/// @copydetails BCM6838X_GetPortStatisticsRxUnicastPackets
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsRx65to127Octets(uint32_t port, uint32_t* out);

/// Reads the received frames of 128 to 255 octets of a port since its last clear.
///
/// @copydetails BCM6838X_GetPortStatisticsRxUnicastPackets
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsRx128to255Octets(uint32_t port, uint32_t* out);

/// Reads the received frames of 256 to 511 octets of a port since its last clear.
///
/// @copydetails BCM6838X_GetPortStatisticsRxUnicastPackets
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsRx256to511Octets(uint32_t port, uint32_t* out);

/// Reads the received frames of 512 to 1023 octets of a port since its last clear.
///
/// @copydetails BCM6838X_GetPortStatisticsRxUnicastPackets
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsRx512to1023Octets(uint32_t port, uint32_t* out);

/// Reads the received frames of 1024 to 1518 octets of a port since its last clear.
///
/// @copydetails BCM6838X_GetPortStatisticsRxUnicastPackets
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsRx1024to1518Octets(uint32_t port, uint32_t* out);

/// Reads the octets that a port has transmitted since its last clear.
///
/// @copydetails BCM6838X_GetPortStatisticsRxOctets
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsTxOctets(uint32_t port, Counter64* out);

/// Reads the transmitted unicast frames of a port since its last clear.
///
/// @copydetails BCM6838X_GetPortStatisticsRxUnicastPackets
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsTxUnicastPackets(uint32_t port, uint32_t* out);

/// Reads the transmitted multicast frames of a port since its last clear.
///
/// @copydetails BCM6838X_GetPortStatisticsRxUnicastPackets
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsTxMulticastPackets(uint32_t port, uint32_t* out);

/// Reads the transmitted broadcast frames of a port since its last clear.
///
/// @copydetails BCM6838X_GetPortStatisticsRxUnicastPackets
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsTxBroadcastPackets(uint32_t port, uint32_t* out);

/// Reads the transmit errors, discards included, of a port since its last clear.
///
/// @copydetails BCM6838X_GetPortStatisticsRxUnicastPackets
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsTxErrorPackets(uint32_t port, uint32_t* out);

/// Reads the frames to transmit that were discarded of a port since its last clear.
///
/// @copydetails BCM6838X_GetPortStatisticsRxUnicastPackets
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsTxDiscardPackets(uint32_t port, uint32_t* out);

/// Reads the transmitted frames of 64 octets of a port since its last clear.
///
/// @copydetails BCM6838X_GetPortStatisticsRxUnicastPackets
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsTx64Octets(uint32_t port, uint32_t* out);

/// Reads the transmitted frames of 65 to 127 octets of a port since its last clear.
///
/// @copydetails BCM6838X_GetPortStatisticsRxUnicastPackets
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsTx65to127Octets(uint32_t port, uint32_t* out);

/// Reads the transmitted frames of 128 to 255 octets of a port since its last clear.
///
/// @copydetails BCM6838X_GetPortStatisticsRxUnicastPackets
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsTx128to255Octets(uint32_t port, uint32_t* out);

/// Reads the transmitted frames of 256 to 511 octets of a port since its last clear.
///
/// @copydetails BCM6838X_GetPortStatisticsRxUnicastPackets
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsTx256to511Octets(uint32_t port, uint32_t* out);

/// Reads the transmitted frames of 512 to 1023 octets of a port since its last clear.
///
/// @copydetails BCM6838X_GetPortStatisticsRxUnicastPackets
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsTx512to1023Octets(uint32_t port, uint32_t* out);

/// Reads the transmitted frames of 1024 to 1518 octets of a port since its last clear.
///
/// @copydetails BCM6838X_GetPortStatisticsRxUnicastPackets
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsTx1024to1518Octets(uint32_t port, uint32_t* out);

BCM6838X_END_DECLS

#endif
