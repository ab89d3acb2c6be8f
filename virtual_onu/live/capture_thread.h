/// @file
/// The thread on which the library takes the frames that the chip traps.
#pragma once

#include <atomic>
#include <cstdint>
#include <thread>

#include "device/device.h"

namespace virtual_onu {

/// Calls an operation that waits for one event of the device and handles it, over and over, from
/// construction to destruction; the events that came before the end are all handled. Every call
/// must read the device, which must be open.
class CaptureThread {
 public:
  CaptureThread(Device& device, std::uint32_t (*capture)());
  ~CaptureThread();
  CaptureThread(const CaptureThread&) = delete;
  CaptureThread& operator=(const CaptureThread&) = delete;

 private:
  Device& device_;
  std::atomic<bool> ended_ = false;
  std::thread thread_;
};

}  // namespace virtual_onu
