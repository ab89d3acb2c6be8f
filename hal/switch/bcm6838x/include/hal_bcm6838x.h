/// @file
/// Driver core: the command channel to the bridge-manager device, start-up and operating modes, and
/// the kernel event task. Operations on ports, VLANs, multicast and QoS are in the headers of their
/// areas.
#ifndef HAL_BCM6838X_H
#define HAL_BCM6838X_H

#include <stdint.h>

#include "bcm6838x_api.h"

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

/// Entry point of the task "kernelEvent", which BCM6838X_Init spawns. The kernel event monitor is
/// not built yet: the task ends at once.
BCM6838X_EXPORT void BCM6838X_kernelEvent(void);

BCM6838X_END_DECLS

#endif
