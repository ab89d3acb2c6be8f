/// @file
/// Protocol clients of the device platform that consume trapped frames, supplied by the program
/// that loads the library. None of them keeps the frame's address.
#ifndef PLATFORM_CLIENTS_H
#define PLATFORM_CLIENTS_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Hands an IGMP frame to the snooping client.
///
/// @param[in] frame the frame
/// @param[in] size its length in bytes
/// @param[in] vid VLAN identifier, 0 when untagged
/// @param[in] srcPort source UNI port
/// @return the client's result
uint32_t IGMP_DispatchPacket(uint8_t* frame, uint32_t size, uint32_t vid, uint32_t srcPort);

/// Hands an MLD frame to the snooping client.
///
/// @param[in] frame the frame
/// @param[in] size its length in bytes
/// @param[in] vid VLAN identifier, 0 when untagged
/// @param[in] srcPort source UNI port
/// @return the client's result
uint32_t MLD_DispatchPacket(uint8_t* frame, uint32_t size, uint32_t vid, uint32_t srcPort);

/// Hands a DHCP frame to the relay client.
///
/// @param[in] frame the frame
/// @param[in] length its length in bytes
/// @param[in] vlan VLAN identifier, 0 when untagged
/// @param[in] port source UNI port
/// @return the client's result
uint32_t DHCPRELAY_HandlePacket(uint8_t* frame, uint32_t length, uint32_t vlan, uint32_t port);

/// Hands a PPPoE frame to the relay client.
///
/// @param[in] frame the frame
/// @param[in] length its length in bytes
/// @param[in] vlan VLAN identifier, 0 when untagged
/// @param[in] port source UNI port
/// @return the client's result
uint32_t PPPOERELAY_HandlePacket(uint8_t* frame, uint32_t length, uint32_t vlan, uint32_t port);

#ifdef __cplusplus
}
#endif

#endif
