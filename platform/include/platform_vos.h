/// @file
/// Operating-system layer of the device platform, supplied by the program that loads the library.
#ifndef PLATFORM_VOS_H
#define PLATFORM_VOS_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Opens a device of the platform by its name.
///
/// @param[in] name device name, "BrmgrDev" for the bridge-manager device
/// @return a descriptor for ioctl() and read(); below 1 on failure
int32_t VOS_OpenDevice(const char* name);

/// Starts a task.
///
/// @param[in] name task name
/// @param[in] a the platform's
/// @param[in] b the platform's
/// @param[in] c the platform's
/// @param[in] d the platform's
/// @param[in] entry entry point
/// @param[in] arg the platform's
/// @return 0, or non-zero when the task could not be started
int32_t VOS_TaskSpawn(const char* name, uint32_t a, uint32_t b, uint32_t c, uint32_t d,
                      void (*entry)(void), uint32_t arg);

/// Formats and runs a shell command.
///
/// @param[in] format printf format with its arguments
/// @return the command's result, 0 on success
int32_t VOS_System(const char* format, ...) __attribute__((format(printf, 1, 2)));

/// Sends a message to another module of the platform.
///
/// @param[in] module receiving module
/// @param[in] code message code
/// @param[in] message the message; not kept
/// @param[in] length length of the message in bytes
/// @return 0 on success
uint32_t VOS_MsgSend(uint32_t module, uint32_t code, void* message, uint32_t length);

/// Delays the calling task.
///
/// @param[in] milliseconds length of the delay
void VOS_TaskDelay(uint32_t milliseconds);

/// Restarts the unit.
///
/// @param[in] reason reason code, 11 for the reset button
void VOS_Reboot(uint32_t reason);

/// Resets the unit's configuration to factory defaults.
void VOS_ResetDefaultCfg(void);

/// Compares two strings without regard to case.
///
/// @param[in] a first string
/// @param[in] b second string
/// @return 0 when equal
int32_t VOS_StrNcaseCmp(const char* a, const char* b);

/// Fetches the unit's two MAC addresses.
///
/// @param[out] first 6 bytes
/// @param[out] second 6 bytes
/// @return 0 on success
uint32_t VOS_OntInfoGetMac(uint8_t* first, uint8_t* second);

/// Tells the time since start.
///
/// @return milliseconds, wrapping at 32 bits
uint32_t TIMER_GetCurrent(void);

#ifdef __cplusplus
}
#endif

#endif
