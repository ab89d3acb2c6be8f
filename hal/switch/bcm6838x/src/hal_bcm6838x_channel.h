/// @file
/// State of the driver core, and the way in which the areas send a typed command record.
#ifndef HAL_BCM6838X_CHANNEL_H
#define HAL_BCM6838X_CHANNEL_H

#include <cstdint>

#include <brmgr_cmd.h>
#include <brmgr_record.h>
#include <hal_bcm6838x.h>

/// Size of g_BoardId: an identifier of up to 16 characters and its terminating zero.
constexpr uint32_t kBoardIdSize = 17;

/// The platform's feature switch that enables frame capture and the data path's own MAC aging.
constexpr uint32_t kCaptureFeature = 27;

extern "C" {
extern int32_t sgHwDevFd;             ///< descriptor of "BrmgrDev"; below 1 when not open
extern int32_t g_SwitchPerformance;   ///< 1 in performance mode, else 0
extern char g_BoardId[kBoardIdSize];  ///< board identifier
}

/// Sends a whole record.
template <typename Record>
uint32_t SendCommand(uint32_t cmd, Record& record, uint32_t flag) {
  return BCM6838X_Ioctl(cmd, &record, sizeof(record), flag);
}

#endif
