/// @file
/// Calls of the chip's and the board's own libraries, supplied by the program that loads the
/// library.
#ifndef PLATFORM_CHIP_H
#define PLATFORM_CHIP_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Calls the board driver.
///
/// @param[in] request board request
/// @param[in] action action of the request
/// @param[in] string string argument
/// @param[in] stringLength length of the string in bytes
/// @param[in] offset offset argument
/// @param[in] buffer buffer argument
/// @return 0 on success
int32_t devCtl_boardIoctl(uint32_t request, uint32_t action, char* string, uint32_t stringLength,
                          uint32_t offset, char* buffer);

/// Switches a port's jumbo frames.
///
/// @param[in] unit chip unit, 0
/// @param[in] port port index, from 0
/// @param[in] value 1 on, 0 off
/// @return 0 on success
int32_t bcm_port_jumbo_control_set(uint32_t unit, uint32_t port, uint32_t* value);

#ifdef __cplusplus
}
#endif

#endif
