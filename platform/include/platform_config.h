/// @file
/// Hardware configuration, feature switches and board queries of the device platform, supplied by
/// the program that loads the library.
#ifndef PLATFORM_CONFIG_H
#define PLATFORM_CONFIG_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Non-zero on boards that number their LAN ports in reverse.
extern uint32_t g_PortRevert;

/// Tells the number of Ethernet UNI ports.
/// @return the number of ports
uint32_t HC_GetEthPortNum(void);

/// Tells the number of Fast-Ethernet ports.
/// @return the number of ports
uint32_t HC_GetFePortNum(void);

/// Tells the number of Gigabit-Ethernet ports.
/// @return the number of ports
uint32_t HC_GetGePortNum(void);

/// Tells the port number of the uplink.
/// @return the port number
uint32_t HC_GetUplinkPortNo(void);

/// Reads a feature switch.
///
/// @param[in] feature number of the switch
/// @return its value, 1 when on
uint32_t SF_GetFeature(uint32_t feature);

/// Reads the board identifier.
///
/// @param[out] buffer `length` bytes; not terminated when the identifier fills it
/// @param[in] length size of the buffer
/// @return 0 on success
uint32_t BCM6838X_sysGetBoardId(char* buffer, uint32_t length);

/// Tells whether the unit is in factory mode.
///
/// @param[out] mode non-zero in factory mode
/// @return 0 on success
uint32_t BCM6838X_sysGetFactoryMode(uint32_t* mode);

#ifdef __cplusplus
}
#endif

#endif
