/// @file
/// The numbers of the platform: its feature switches, and its modules with their messages.
#ifndef HAL_BCM6838X_PLATFORM_H
#define HAL_BCM6838X_PLATFORM_H

#include <cstdint>

#include <platform_config.h>

namespace hal {

/// The platform's feature switch that enables frame capture and the data path's own MAC aging.
constexpr uint32_t kCaptureFeature = 27;

inline bool IsCaptureEnabled() {
  // Required: capture-by-feature-exactly-1, mac-aging-by-feature-27
  return SF_GetFeature(kCaptureFeature) == 1;
}

/// Modules that get messages, and the codes of these.
enum PlatformMessage : uint32_t {
  kStpModule = 0xA3C0,  ///< the spanning-tree process
  kStpReceivedBpdu = 0x1500,
  kStpEnable = 0x1509,

  kMacAgingModule = 0xA440,
  kMacAgingTime = 0x443,

  kManagementModule = 0xA280,
  kManagementUniState = 0x0D02,
};

}  // namespace hal

#endif
