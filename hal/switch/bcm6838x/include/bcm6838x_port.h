/// @file
/// Port control: link and negotiation state, pause, PHY power, administrative state, negotiation
/// mode, loopback, isolation, learning, spanning tree, frame size and mirroring. Port statistics:
/// counters, and their clearing. What holds for all operations is said in bcm6838x_api.h.
///
/// Every operation on a port takes a UNI port number, counted from 1, in the low 8 bits of `port`.
/// What it makes of it:
/// - **Linux interface**: "eth0".."eth4" for ports 1..5. An operation that reads the PHY, by the
///   MII ioctls of the interface, fails for any other port, and also without a socket, as when
///   there is no such interface.
/// - **Device port**, the number plus 1: BRMGR_CMD_PORT_ADMIN, BRMGR_CMD_PORT_LOOPBACK,
///   BRMGR_CMD_PORT_ISOLATE and the destination of BRMGR_CMD_PORT_MIRROR.
/// - **Port index**, the number minus 1: the shell line of BCM6838X_SetPortNegMode and
///   BCM6838X_SetPortMtu. Operations on all ports count from 0 to the number of Ethernet ports
///   minus 1 and use that: BRMGR_CMD_PORT_STP, BCM6838X_InitPort, and BRMGR_CMD_PORT_STATS in
///   BCM6838X_GetPortStatistics.
/// - **UNI port** as it is: BRMGR_CMD_PORT_STATS in the getters.
/// - BRMGR_CMD_MAC_LEARN and BRMGR_CMD_MAC_LIMIT carry no port: they concern the whole switch.
///
/// The results of the commands of port control are not looked at. A failure to read an MII register
/// is told on standard error as "SIOCGMIIREG on %s failed: %s", and the register then reads as 0.
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

/// Asks the interface's driver for its PHY address (SIOCGMIIPHY). Sends nothing.
///
/// @par Logs
/// The null line.
///
/// @param[in] socket an open datagram socket
/// @param[in,out] ifr names the interface; its MII data are cleared of a PHY address, then filled
/// @return the PHY address, or -1 when the ioctl fails or `ifr` is null
BCM6838X_EXPORT int32_t et_get_phyid(int32_t socket, struct ifreq* ifr);

/// Reads one MII register (SIOCGMIIREG). Sends nothing.
///
/// @par Logs
/// The null line.
///
/// @param[in] socket an open datagram socket
/// @param[in,out] ifr names the interface; its MII data are overwritten
/// @param[in] phy PHY address, in the low 16 bits; its top 8 bits are passed to the driver as
///   flags, with their sign: those of -1, which et_get_phyid returns on failure, as 0xFFFF
/// @param[in] reg register number, 0..31; only the low 16 bits count
/// @return the register's value, 0..0xFFFF; 0 on failure, which is told on standard error, or when
///   `ifr` is null
BCM6838X_EXPORT int32_t mdio_read(int32_t socket, struct ifreq* ifr, int32_t phy, int32_t reg);

/// Puts the mirroring record (zeros) and the remembered administrative states (all up) into their
/// initial state and writes the PHY settings that every port gets at start. Called by
/// BCM6838X_Init. Sends and logs nothing.
///
/// @par Runs
/// "/bin/ethctl eth%hhu reg 24 0xf077 > /dev/null 2>&1" and
/// "/bin/ethctl eth%hhu reg 28 0x9000 > /dev/null 2>&1" for each port index.
///
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_InitPort(void);

/// Reads a port's media type from its PHY: with auto-negotiation the best common ability, in which
/// bit 9 of the abilities stands for 1000 half and comes behind 100 full; without it the forced
/// mode; link down when the second of two reads of the status register shows no link. Sends
/// nothing.
///
/// @par Logs
/// The null line.
///
/// @param[in] port UNI port, 1..5
/// @param[out] type BCM6838X_MEDIA_*; left as it was when the link is up but nothing was negotiated
/// @return BCM6838X_OK; BCM6838X_FAILED when there is no such interface, when its PHY does not
///   answer (control register 0xFFFF or status register 0), or when `type` is null
BCM6838X_EXPORT uint32_t BCM6838X_GetMediaType(uint32_t port, uint32_t* type);

/// Reads a port's link state from its PHY. Sends nothing.
///
/// @par Logs
/// The null line.
///
/// @param[in] port UNI port, 1..5
/// @param[out] state 1 link up, 0 link down or PHY not readable
/// @return BCM6838X_OK; also when `state` is null
BCM6838X_EXPORT uint32_t BCM6838X_GetPortLinkState(uint32_t port, uint32_t* state);

/// Reads a port's negotiation result from its PHY. Sends nothing.
///
/// @par Logs
/// The null line.
///
/// @param[in] port UNI port, 1..5
/// @param[out] result 0 10 half (and link down), 1 100 half, 2 1000 half, 3 10 full, 4 100 full, 5
///   1000 full
/// @return BCM6838X_OK; BCM6838X_FAILED when the PHY is not readable or the link is up but nothing
///   was negotiated (`result` is then left as it was), or when `result` is null
BCM6838X_EXPORT uint32_t BCM6838X_GetPortNegResult(uint32_t port, uint32_t* result);

/// Sets whether a port advertises pause (IEEE 802.3 annex 28B) and restarts auto-negotiation, by
/// writing the control register (SIOCSMIIREG), whose failure is told on standard error as
/// "SIOCSMIIREG on %s failed: %s". Nothing changes when auto-negotiation is off. Sends and logs
/// nothing.
///
/// @par Runs
/// "ethctl %s reg %d %x" with the interface, 4 and the new advertisement register.
///
/// @param[in] port UNI port, 1..5
/// @param[in] mode pause mode: 1, 2 and 6 advertise pause, any other value does not
/// @return BCM6838X_OK, or BCM6838X_FAILED when there is no such interface or its PHY does not
///   answer
BCM6838X_EXPORT uint32_t BCM6838X_PauseAbilitySet(uint32_t port, uint32_t mode);

/// Reads whether a port advertises pause. Sends nothing.
///
/// @par Logs
/// The null line.
///
/// @param[in] port UNI port, 1..5
/// @param[out] mode 2 advertised, 0 not; left as it was when auto-negotiation is off
/// @return BCM6838X_OK; BCM6838X_FAILED when there is no such interface, its PHY does not answer,
///   or `mode` is null
BCM6838X_EXPORT uint32_t BCM6838X_PauseAbilityGet(uint32_t port, uint32_t* mode);

/// Switches flow control: sets pause mode 2 or 0 (BCM6838X_PauseAbilitySet, which runs the shell
/// line). Sends and logs nothing.
///
/// @param[in] port UNI port, 1..5
/// @param[in] on 1 on, any other value off; only the low 8 bits count
/// @return the result of BCM6838X_PauseAbilitySet
BCM6838X_EXPORT uint32_t BCM6838X_SetPortFlowControl(uint32_t port, uint32_t on);

/// Powers a port's PHY down or up (IEEE 802.3 22.2.4.1.5). Sends and logs nothing.
///
/// @par Runs
/// "ethctl %s reg %d %x" with the interface, 0 and the new control register.
///
/// @param[in] port UNI port, 1..5
/// @param[in] down 0 up, any other value down
/// @return 0; 1 when there is no such interface; -1 when its PHY does not answer
BCM6838X_EXPORT int32_t BCM6838X_PhyPowerDown(uint32_t port, uint32_t down);

/// Sets a port's administrative state, powers its PHY accordingly (BCM6838X_PhyPowerDown, which
/// runs the shell line) and remembers the state, whatever became of both. Logs nothing.
///
/// @par Sends
/// BRMGR_CMD_PORT_ADMIN.
///
/// @param[in] port UNI port, 1..5
/// @param[in] state 0 down, any other value up
/// @return 1 when the port is out of range (nothing is done), else the result of
///   BCM6838X_PhyPowerDown
BCM6838X_EXPORT int32_t BCM6838X_SetPortAdminState(uint32_t port, uint32_t state);

/// Sets a port's negotiation mode by a shell line, then applies the remembered administrative state
/// again (BCM6838X_SetPortAdminState), so that a port that is down stays down. The port is not
/// range-checked for the shell line; outside 1..5 no administrative state is applied. Logs nothing.
///
/// @par Sends
/// BRMGR_CMD_PORT_ADMIN, for ports 1..5.
/// @par Runs
/// "ethctl eth%d media-type %s" with the port index and 10HD, 100HD, 10FD, 100FD or auto.
///
/// @param[in] port UNI port
/// @param[in] mode 0 10 half, 1 100 half, 3 10 full, 4 100 full; 2, 5 and 6 auto-negotiation
/// @return BCM6838X_OK, or BCM6838X_FAILED when `mode` is 7 or more (nothing is done)
BCM6838X_EXPORT uint32_t BCM6838X_SetPortNegMode(uint32_t port, uint32_t mode);

/// Switches a port's loopback. Logs nothing.
///
/// @par Sends
/// BRMGR_CMD_PORT_LOOPBACK.
///
/// @param[in] port UNI port, 1..5
/// @param[in] on 0 off, any other value on
/// @return BCM6838X_OK, or BCM6838X_FAILED when the port is out of range (nothing is done)
BCM6838X_EXPORT uint32_t BCM6838X_SetPortLoopback(uint32_t port, uint32_t on);

/// Isolates a port from others. Logs nothing.
///
/// @par Sends
/// BRMGR_CMD_PORT_ISOLATE, one a peer.
///
/// @param[in] port UNI port, 1..4
/// @param[in] mask 0 releases the port from all others; otherwise bit b isolates it from UNI port b
///   + 1, itself included, and ports whose bit is clear are not touched; bits above 3 are ignored
/// @return BCM6838X_OK, or BCM6838X_FAILED when the port is out of range (nothing is done)
BCM6838X_EXPORT uint32_t BCM6838X_SetPortIsolateMask(uint32_t port, uint32_t mask);

/// Switches MAC learning of the whole switch.
///
/// @par Sends
/// BRMGR_CMD_MAC_LEARN.
/// @par Logs
/// "%s(%d), enable=%d" before the command.
///
/// @param[in] port not used
/// @param[in] enable passed on as it is
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_SetPortMacLearn(uint32_t port, uint32_t enable);

/// Sets the learning limit of the whole switch.
///
/// @par Sends
/// BRMGR_CMD_MAC_LIMIT.
/// @par Logs
/// "%s(%d), limit=%d" before the command, with the low 16 bits.
///
/// @param[in] port not used
/// @param[in] limit number of addresses; only the low 16 bits count
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_SetPortLimitMacNum(uint32_t port, uint32_t limit);

/// Switches spanning tree on every port: for each port index, from 0, a message of 12 bytes to the
/// spanning-tree process (module 0xA3C0, code 0x1509), and the same record to the driver. Logs
/// nothing.
///
/// @par Sends
/// BRMGR_CMD_PORT_STP, one a port index.
///
/// @param[in] enable passed on as it is
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_SetPortStpEnable(uint32_t enable);

/// Enforces a spanning-tree state by the port's administrative state (BCM6838X_SetPortAdminState),
/// when feature switch 27 is 1. Logs nothing.
///
/// @par Sends
/// BRMGR_CMD_PORT_ADMIN, for the states 1 and 4.
///
/// @param[in] port UNI port, 1..5
/// @param[in] stpState 1 takes the port down, 4 takes it up, any other value does nothing
/// @return the result of BCM6838X_SetPortAdminState when it was called, else BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_SetPortStpState(uint32_t port, uint32_t stpState);

/// Sets a port's maximum frame size (bcm_port_jumbo_control_set, whose result is not looked at):
/// jumbo frames are on from 1519 octets. Sends and logs nothing.
///
/// @param[in] port UNI port; passed on as a port index, unchecked
/// @param[in] mtu size in octets; only the low 16 bits count
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_SetPortMtu(uint32_t port, uint32_t mtu);

/// Chooses the port that receives mirrored frames; takes effect with BCM6838X_SetPortMirrorEnable.
/// Sends and logs nothing.
///
/// @param[in] port UNI port, 1..4
/// @return BCM6838X_OK, or BCM6838X_FAILED when the port is out of range (nothing is changed)
BCM6838X_EXPORT uint32_t BCM6838X_SetPortMirrorDestport(uint32_t port);

/// Chooses what is mirrored; takes effect with BCM6838X_SetPortMirrorEnable. One record serves all
/// ports, so that the last port of the array with a mode wins. Sends nothing.
///
/// @par Logs
/// The null line.
///
/// @param[in] modes one byte for each Ethernet port: 0 none, 1, 2 or 3 give direction 1, 0 or 2;
///   other values choose no direction
/// @return BCM6838X_OK, or BCM6838X_FAILED when `modes` is null
BCM6838X_EXPORT uint32_t BCM6838X_SetPortMirrorMode(const uint8_t* modes);

/// Switches mirroring, and hands the destination and the direction that were chosen to the driver
/// with it. Logs nothing.
///
/// @par Sends
/// BRMGR_CMD_PORT_MIRROR.
///
/// @param[in] enable passed on as it is
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_SetPortMirrorEnable(uint32_t enable);

/// Does nothing, sends and logs nothing.
///
/// @param[in] port not used
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_GetGlobalLinkState(uint32_t port, ...);

/// Does nothing, sends and logs nothing.
///
/// @param[in] port not used
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_GetGlobalNegResult(uint32_t port, ...);

/// Does nothing, sends and logs nothing.
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

// clang-format off
/// The counters of a port, which are those of the getters: X(name of the getter behind
/// "BCM6838X_GetPortStatistics", its result, name in its log line, field of PortStatisticsEntry, what
/// the getter tells, fields of PortStatsRecord that are added up).
// Required: errors-include-discards
#define BCM6838X_RX_COUNTER_LIST(X) \
  X(RxOctets,           Counter64, "RxOctets",           rxOctets,     "received octets since the last clear", rxOctets) \
  X(RxUnicastPackets,   uint32_t,  "RxUnicast",          rxUnicast,    "received unicast frames since the last clear", rxUnicast) \
  X(RxMulticastPackets, uint32_t,  "RxMulticast",        rxMulticast,  "received multicast frames since the last clear", rxMulticast) \
  X(RxBroadcastPackets, uint32_t,  "RxBroadcast",        rxBroadcast,  "received broadcast frames since the last clear", rxBroadcast) \
  X(RxErrorPackets,     uint32_t,  "RxErrorPackets",     rxErrors,     "receive errors, discards included, since the last clear", rxError23, rxDiscard, rxError24) \
  X(RxDiscardPackets,   uint32_t,  "RxDiscard",          rxDiscards,   "received frames that were discarded since the last clear", rxDiscard) \
  X(Rx64Octets,         uint32_t,  "Rx64Octets",         rx64,         "received frames of 64 octets since the last clear", rx64) \
  X(Rx65to127Octets,    uint32_t,  "Rx65to127Octets",    rx65to127,    "received frames of 65 to 127 octets since the last clear", rx65to127) \
  X(Rx128to255Octets,   uint32_t,  "Rx128to255Octets",   rx128to255,   "received frames of 128 to 255 octets since the last clear", rx128to255) \
  X(Rx256to511Octets,   uint32_t,  "Rx256to511Octets",   rx256to511,   "received frames of 256 to 511 octets since the last clear", rx256to511) \
  X(Rx512to1023Octets,  uint32_t,  "Rx512to1023Octets",  rx512to1023,  "received frames of 512 to 1023 octets since the last clear", rx512to1023) \
  X(Rx1024to1518Octets, uint32_t,  "Rx1024to1518Octets", rx1024to1518, "received frames of 1024 to 1518 octets since the last clear", rx1024to1518)

/// The same of what a port transmits.
// Required: errors-include-discards, log-txoctet
#define BCM6838X_TX_COUNTER_LIST(X) \
  X(TxOctets,           Counter64, "TxOctet",            txOctets,     "transmitted octets since the last clear", txOctets) \
  X(TxUnicastPackets,   uint32_t,  "TxUnicast",          txUnicast,    "transmitted unicast frames since the last clear", txUnicast) \
  X(TxMulticastPackets, uint32_t,  "TxMulticast",        txMulticast,  "transmitted multicast frames since the last clear", txMulticast) \
  X(TxBroadcastPackets, uint32_t,  "TxBroadcast",        txBroadcast,  "transmitted broadcast frames since the last clear", txBroadcast) \
  X(TxErrorPackets,     uint32_t,  "TxErrorPackets",     txErrors,     "transmit errors, discards included, since the last clear", txError51, txDiscard, txError47) \
  X(TxDiscardPackets,   uint32_t,  "TxDiscard",          txDiscards,   "frames to transmit that were discarded since the last clear", txDiscard) \
  X(Tx64Octets,         uint32_t,  "Tx64Octets",         tx64,         "transmitted frames of 64 octets since the last clear", tx64) \
  X(Tx65to127Octets,    uint32_t,  "Tx65to127Octets",    tx65to127,    "transmitted frames of 65 to 127 octets since the last clear", tx65to127) \
  X(Tx128to255Octets,   uint32_t,  "Tx128to255Octets",   tx128to255,   "transmitted frames of 128 to 255 octets since the last clear", tx128to255) \
  X(Tx256to511Octets,   uint32_t,  "Tx256to511Octets",   tx256to511,   "transmitted frames of 256 to 511 octets since the last clear", tx256to511) \
  X(Tx512to1023Octets,  uint32_t,  "Tx512to1023Octets",  tx512to1023,  "transmitted frames of 512 to 1023 octets since the last clear", tx512to1023) \
  X(Tx1024to1518Octets, uint32_t,  "Tx1024to1518Octets", tx1024to1518, "transmitted frames of 1024 to 1518 octets since the last clear", tx1024to1518)

/// The counters of both directions.
#define BCM6838X_COUNTER_LIST(X)   \
  BCM6838X_RX_COUNTER_LIST(X)      \
  BCM6838X_TX_COUNTER_LIST(X)
// clang-format on

/// Fills a table of the raw counters of all ports. Clears do not count here. An entry whose command
/// fails is filled from what its record then holds: zeros, and what the driver wrote.
///
/// @par Sends
/// BRMGR_CMD_PORT_STATS, one a port, which names the port index, counted from 0.
/// @par Logs
/// The null line.
///
/// @param[out] entries one entry for each Ethernet port; the last word of an entry is not written
/// @return BCM6838X_OK, whatever the driver answers; also, with nothing sent, when `entries` is
///   null
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatistics(PortStatisticsEntry* entries);

/// Clears a port's counters: keeps them as they stand, for the getters to subtract. The hardware
/// goes on counting. The request is the port's kept record, so that its port word is what the
/// driver left there, zero before the first clear; a failed command may leave the kept record
/// partly overwritten. Logs nothing.
///
/// @par Sends
/// BRMGR_CMD_PORT_STATS.
///
/// @param[in] port UNI port, 1..32; for any other the command goes out with a record of zeros,
///   which is not kept
/// @return the command's result (codes of BCM6838X_Ioctl)
BCM6838X_EXPORT uint32_t BCM6838X_SetPortStatisticsClear(uint32_t port);

/// Does nothing, sends and logs nothing.
///
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_SetPortStatisticsInit(void);

/// Does nothing, sends and logs nothing.
///
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_SetPortStatisticsSync(void);

/// Reads the octets that a port has received since its last clear.
///
/// @par Sends
/// BRMGR_CMD_PORT_STATS, which names the UNI port.
/// @par Logs
/// "%s :%d, Get Port Statistics RxOctets Error!" when the command fails; the null line.
///
/// @param[in] port UNI port, from 1 to the number of Ethernet ports and to 32
/// @param[out] out the counter, a difference of two words of 32 bits; when it fell below its value
///   at the clear, `low` wraps and `high` is 0xFFFFFFFF
/// @return BCM6838X_OK; BCM6838X_INVALID, without a command, when `out` is null or, then without a
///   line, when the port is out of range; BCM6838X_FAILED, with `out` left as it was, when the
///   command fails
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsRxOctets(uint32_t port, Counter64* out);

/// Reads the unicast frames that a port has received since its last clear.
///
/// @par Sends
/// BRMGR_CMD_PORT_STATS, which names the UNI port.
/// @par Logs
/// "%s :%d, Get Port Statistics RxUnicast Error!" when the command fails; the null line.
///
/// @param[in] port UNI port, from 1 to the number of Ethernet ports and to 32
/// @param[out] out the counter; it wraps when it fell below its value at the clear
/// @return BCM6838X_OK; BCM6838X_INVALID, without a command, when `out` is null or, then without a
///   line, when the port is out of range; BCM6838X_FAILED, with `out` left as it was, when the
///   command fails
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsRxUnicastPackets(uint32_t port, uint32_t* out);

/// Reads the received multicast frames of a port since its last clear, as
/// BCM6838X_GetPortStatisticsRxUnicastPackets reads its counter.
///
/// @par Sends
/// BRMGR_CMD_PORT_STATS, which names the UNI port.
/// @par Logs
/// "%s :%d, Get Port Statistics RxMulticast Error!" when the command fails; the null line.
///
/// @param[in] port UNI port, from 1 to the number of Ethernet ports and to 32
/// @param[out] out the counter; it wraps when it fell below its value at the clear
/// @return the results of BCM6838X_GetPortStatisticsRxUnicastPackets
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsRxMulticastPackets(uint32_t port, uint32_t* out);

/// Reads the received broadcast frames of a port since its last clear, as
/// BCM6838X_GetPortStatisticsRxUnicastPackets reads its counter.
///
/// @par Sends
/// BRMGR_CMD_PORT_STATS, which names the UNI port.
/// @par Logs
/// "%s :%d, Get Port Statistics RxBroadcast Error!" when the command fails; the null line.
///
/// @param[in] port UNI port, from 1 to the number of Ethernet ports and to 32
/// @param[out] out the counter; it wraps when it fell below its value at the clear
/// @return the results of BCM6838X_GetPortStatisticsRxUnicastPackets
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsRxBroadcastPackets(uint32_t port, uint32_t* out);

/// Reads the receive errors, discards included, of a port since its last clear, as
/// BCM6838X_GetPortStatisticsRxUnicastPackets reads its counter.
///
/// @par Sends
/// BRMGR_CMD_PORT_STATS, which names the UNI port.
/// @par Logs
/// "%s :%d, Get Port Statistics RxErrorPackets Error!" when the command fails; the null line.
///
/// @param[in] port UNI port, from 1 to the number of Ethernet ports and to 32
/// @param[out] out the counter; it wraps when it fell below its value at the clear
/// @return the results of BCM6838X_GetPortStatisticsRxUnicastPackets
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsRxErrorPackets(uint32_t port, uint32_t* out);

/// Reads the received frames that were discarded of a port since its last clear, as
/// BCM6838X_GetPortStatisticsRxUnicastPackets reads its counter.
///
/// @par Sends
/// BRMGR_CMD_PORT_STATS, which names the UNI port.
/// @par Logs
/// "%s :%d, Get Port Statistics RxDiscard Error!" when the command fails; the null line.
///
/// @param[in] port UNI port, from 1 to the number of Ethernet ports and to 32
/// @param[out] out the counter; it wraps when it fell below its value at the clear
/// @return the results of BCM6838X_GetPortStatisticsRxUnicastPackets
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsRxDiscardPackets(uint32_t port, uint32_t* out);

/// Reads the received frames of 64 octets of a port since its last clear, as
/// BCM6838X_GetPortStatisticsRxUnicastPackets reads its counter.
///
/// @par Sends
/// BRMGR_CMD_PORT_STATS, which names the UNI port.
/// @par Logs
/// "%s :%d, Get Port Statistics Rx64Octets Error!" when the command fails; the null line.
///
/// @param[in] port UNI port, from 1 to the number of Ethernet ports and to 32
/// @param[out] out the counter; it wraps when it fell below its value at the clear
/// @return the results of BCM6838X_GetPortStatisticsRxUnicastPackets
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsRx64Octets(uint32_t port, uint32_t* out);

/// Reads the received frames of 65 to 127 octets of a port since its last clear, as
/// BCM6838X_GetPortStatisticsRxUnicastPackets reads its counter.
///
/// @par Sends
/// BRMGR_CMD_PORT_STATS, which names the UNI port.
/// @par Logs
/// "%s :%d, Get Port Statistics Rx65to127Octets Error!" when the command fails; the null line.
///
/// @param[in] port UNI port, from 1 to the number of Ethernet ports and to 32
/// @param[out] out the counter; it wraps when it fell below its value at the clear
/// @return the results of BCM6838X_GetPortStatisticsRxUnicastPackets
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsRx65to127Octets(uint32_t port, uint32_t* out);

/// Reads the received frames of 128 to 255 octets of a port since its last clear, as
/// BCM6838X_GetPortStatisticsRxUnicastPackets reads its counter.
///
/// @par Sends
/// BRMGR_CMD_PORT_STATS, which names the UNI port.
/// @par Logs
/// "%s :%d, Get Port Statistics Rx128to255Octets Error!" when the command fails; the null line.
///
/// @param[in] port UNI port, from 1 to the number of Ethernet ports and to 32
/// @param[out] out the counter; it wraps when it fell below its value at the clear
/// @return the results of BCM6838X_GetPortStatisticsRxUnicastPackets
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsRx128to255Octets(uint32_t port, uint32_t* out);

/// Reads the received frames of 256 to 511 octets of a port since its last clear, as
/// BCM6838X_GetPortStatisticsRxUnicastPackets reads its counter.
///
/// @par Sends
/// BRMGR_CMD_PORT_STATS, which names the UNI port.
/// @par Logs
/// "%s :%d, Get Port Statistics Rx256to511Octets Error!" when the command fails; the null line.
///
/// @param[in] port UNI port, from 1 to the number of Ethernet ports and to 32
/// @param[out] out the counter; it wraps when it fell below its value at the clear
/// @return the results of BCM6838X_GetPortStatisticsRxUnicastPackets
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsRx256to511Octets(uint32_t port, uint32_t* out);

/// Reads the received frames of 512 to 1023 octets of a port since its last clear, as
/// BCM6838X_GetPortStatisticsRxUnicastPackets reads its counter.
///
/// @par Sends
/// BRMGR_CMD_PORT_STATS, which names the UNI port.
/// @par Logs
/// "%s :%d, Get Port Statistics Rx512to1023Octets Error!" when the command fails; the null line.
///
/// @param[in] port UNI port, from 1 to the number of Ethernet ports and to 32
/// @param[out] out the counter; it wraps when it fell below its value at the clear
/// @return the results of BCM6838X_GetPortStatisticsRxUnicastPackets
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsRx512to1023Octets(uint32_t port, uint32_t* out);

/// Reads the received frames of 1024 to 1518 octets of a port since its last clear, as
/// BCM6838X_GetPortStatisticsRxUnicastPackets reads its counter.
///
/// @par Sends
/// BRMGR_CMD_PORT_STATS, which names the UNI port.
/// @par Logs
/// "%s :%d, Get Port Statistics Rx1024to1518Octets Error!" when the command fails; the null line.
///
/// @param[in] port UNI port, from 1 to the number of Ethernet ports and to 32
/// @param[out] out the counter; it wraps when it fell below its value at the clear
/// @return the results of BCM6838X_GetPortStatisticsRxUnicastPackets
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsRx1024to1518Octets(uint32_t port, uint32_t* out);

/// Reads the octets that a port has transmitted since its last clear, as
/// BCM6838X_GetPortStatisticsRxOctets reads its counter.
///
/// @par Sends
/// BRMGR_CMD_PORT_STATS, which names the UNI port.
/// @par Logs
/// "%s :%d, Get Port Statistics TxOctet Error!", without an "s", when the command fails; the null
/// line.
///
/// @param[in] port UNI port, from 1 to the number of Ethernet ports and to 32
/// @param[out] out the counter, as there
/// @return the results of BCM6838X_GetPortStatisticsRxOctets
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsTxOctets(uint32_t port, Counter64* out);

/// Reads the transmitted unicast frames of a port since its last clear, as
/// BCM6838X_GetPortStatisticsRxUnicastPackets reads its counter.
///
/// @par Sends
/// BRMGR_CMD_PORT_STATS, which names the UNI port.
/// @par Logs
/// "%s :%d, Get Port Statistics TxUnicast Error!" when the command fails; the null line.
///
/// @param[in] port UNI port, from 1 to the number of Ethernet ports and to 32
/// @param[out] out the counter; it wraps when it fell below its value at the clear
/// @return the results of BCM6838X_GetPortStatisticsRxUnicastPackets
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsTxUnicastPackets(uint32_t port, uint32_t* out);

/// Reads the transmitted multicast frames of a port since its last clear, as
/// BCM6838X_GetPortStatisticsRxUnicastPackets reads its counter.
///
/// @par Sends
/// BRMGR_CMD_PORT_STATS, which names the UNI port.
/// @par Logs
/// "%s :%d, Get Port Statistics TxMulticast Error!" when the command fails; the null line.
///
/// @param[in] port UNI port, from 1 to the number of Ethernet ports and to 32
/// @param[out] out the counter; it wraps when it fell below its value at the clear
/// @return the results of BCM6838X_GetPortStatisticsRxUnicastPackets
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsTxMulticastPackets(uint32_t port, uint32_t* out);

/// Reads the transmitted broadcast frames of a port since its last clear, as
/// BCM6838X_GetPortStatisticsRxUnicastPackets reads its counter.
///
/// @par Sends
/// BRMGR_CMD_PORT_STATS, which names the UNI port.
/// @par Logs
/// "%s :%d, Get Port Statistics TxBroadcast Error!" when the command fails; the null line.
///
/// @param[in] port UNI port, from 1 to the number of Ethernet ports and to 32
/// @param[out] out the counter; it wraps when it fell below its value at the clear
/// @return the results of BCM6838X_GetPortStatisticsRxUnicastPackets
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsTxBroadcastPackets(uint32_t port, uint32_t* out);

/// Reads the transmit errors, discards included, of a port since its last clear, as
/// BCM6838X_GetPortStatisticsRxUnicastPackets reads its counter.
///
/// @par Sends
/// BRMGR_CMD_PORT_STATS, which names the UNI port.
/// @par Logs
/// "%s :%d, Get Port Statistics TxErrorPackets Error!" when the command fails; the null line.
///
/// @param[in] port UNI port, from 1 to the number of Ethernet ports and to 32
/// @param[out] out the counter; it wraps when it fell below its value at the clear
/// @return the results of BCM6838X_GetPortStatisticsRxUnicastPackets
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsTxErrorPackets(uint32_t port, uint32_t* out);

/// Reads the frames to transmit that were discarded of a port since its last clear, as
/// BCM6838X_GetPortStatisticsRxUnicastPackets reads its counter.
///
/// @par Sends
/// BRMGR_CMD_PORT_STATS, which names the UNI port.
/// @par Logs
/// "%s :%d, Get Port Statistics TxDiscard Error!" when the command fails; the null line.
///
/// @param[in] port UNI port, from 1 to the number of Ethernet ports and to 32
/// @param[out] out the counter; it wraps when it fell below its value at the clear
/// @return the results of BCM6838X_GetPortStatisticsRxUnicastPackets
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsTxDiscardPackets(uint32_t port, uint32_t* out);

/// Reads the transmitted frames of 64 octets of a port since its last clear, as
/// BCM6838X_GetPortStatisticsRxUnicastPackets reads its counter.
///
/// @par Sends
/// BRMGR_CMD_PORT_STATS, which names the UNI port.
/// @par Logs
/// "%s :%d, Get Port Statistics Tx64Octets Error!" when the command fails; the null line.
///
/// @param[in] port UNI port, from 1 to the number of Ethernet ports and to 32
/// @param[out] out the counter; it wraps when it fell below its value at the clear
/// @return the results of BCM6838X_GetPortStatisticsRxUnicastPackets
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsTx64Octets(uint32_t port, uint32_t* out);

/// Reads the transmitted frames of 65 to 127 octets of a port since its last clear, as
/// BCM6838X_GetPortStatisticsRxUnicastPackets reads its counter.
///
/// @par Sends
/// BRMGR_CMD_PORT_STATS, which names the UNI port.
/// @par Logs
/// "%s :%d, Get Port Statistics Tx65to127Octets Error!" when the command fails; the null line.
///
/// @param[in] port UNI port, from 1 to the number of Ethernet ports and to 32
/// @param[out] out the counter; it wraps when it fell below its value at the clear
/// @return the results of BCM6838X_GetPortStatisticsRxUnicastPackets
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsTx65to127Octets(uint32_t port, uint32_t* out);

/// Reads the transmitted frames of 128 to 255 octets of a port since its last clear, as
/// BCM6838X_GetPortStatisticsRxUnicastPackets reads its counter.
///
/// @par Sends
/// BRMGR_CMD_PORT_STATS, which names the UNI port.
/// @par Logs
/// "%s :%d, Get Port Statistics Tx128to255Octets Error!" when the command fails; the null line.
///
/// @param[in] port UNI port, from 1 to the number of Ethernet ports and to 32
/// @param[out] out the counter; it wraps when it fell below its value at the clear
/// @return the results of BCM6838X_GetPortStatisticsRxUnicastPackets
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsTx128to255Octets(uint32_t port, uint32_t* out);

/// Reads the transmitted frames of 256 to 511 octets of a port since its last clear, as
/// BCM6838X_GetPortStatisticsRxUnicastPackets reads its counter.
///
/// @par Sends
/// BRMGR_CMD_PORT_STATS, which names the UNI port.
/// @par Logs
/// "%s :%d, Get Port Statistics Tx256to511Octets Error!" when the command fails; the null line.
///
/// @param[in] port UNI port, from 1 to the number of Ethernet ports and to 32
/// @param[out] out the counter; it wraps when it fell below its value at the clear
/// @return the results of BCM6838X_GetPortStatisticsRxUnicastPackets
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsTx256to511Octets(uint32_t port, uint32_t* out);

/// Reads the transmitted frames of 512 to 1023 octets of a port since its last clear, as
/// BCM6838X_GetPortStatisticsRxUnicastPackets reads its counter.
///
/// @par Sends
/// BRMGR_CMD_PORT_STATS, which names the UNI port.
/// @par Logs
/// "%s :%d, Get Port Statistics Tx512to1023Octets Error!" when the command fails; the null line.
///
/// @param[in] port UNI port, from 1 to the number of Ethernet ports and to 32
/// @param[out] out the counter; it wraps when it fell below its value at the clear
/// @return the results of BCM6838X_GetPortStatisticsRxUnicastPackets
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsTx512to1023Octets(uint32_t port, uint32_t* out);

/// Reads the transmitted frames of 1024 to 1518 octets of a port since its last clear, as
/// BCM6838X_GetPortStatisticsRxUnicastPackets reads its counter.
///
/// @par Sends
/// BRMGR_CMD_PORT_STATS, which names the UNI port.
/// @par Logs
/// "%s :%d, Get Port Statistics Tx1024to1518Octets Error!" when the command fails; the null line.
///
/// @param[in] port UNI port, from 1 to the number of Ethernet ports and to 32
/// @param[out] out the counter; it wraps when it fell below its value at the clear
/// @return the results of BCM6838X_GetPortStatisticsRxUnicastPackets
BCM6838X_EXPORT uint32_t BCM6838X_GetPortStatisticsTx1024to1518Octets(uint32_t port, uint32_t* out);

BCM6838X_END_DECLS

#endif
