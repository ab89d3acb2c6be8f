/// @file
/// Port control: link and negotiation state, pause, PHY power, administrative state, negotiation
/// mode, loopback, isolation, learning, spanning tree, frame size and mirroring.
///
/// Every operation takes a UNI port number, counted from 1, in the low 8 bits of `port`. The Linux
/// interface of ports 1..5 is "eth0".."eth4"; an operation that reads the PHY fails for any other
/// port. Device commands carry the port number plus 1. The results of device commands and shell
/// lines are not checked.
#ifndef BCM6838X_PORT_H
#define BCM6838X_PORT_H

#include <stdint.h>

#include "bcm6838x_api.h"

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
/// @return BCM6838X_OK, or BCM6838X_FAILED with a log line when `state` is null
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

BCM6838X_END_DECLS

#endif
