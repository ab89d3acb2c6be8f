/// @file
/// The virtual unit: one object that owns every room. Constructing one makes it the unit that the
/// library's platform calls reach; there is one at a time.
#pragma once

#include <cstdint>
#include <filesystem>

#include "base/clock.h"
#include "base/trace.h"
#include "datapath/data_path.h"
#include "device/device.h"
#include "monitor/kernel_monitor.h"
#include "phy/interfaces.h"
#include "platform/platform.h"
#include "shell/shell.h"

namespace virtual_onu {

struct UnitConfig {
  /// Its number of Ethernet ports is that of the whole unit: chip, interfaces, data path.
  PlatformConfig platform;
  ChipLimits chip;  ///< its number of ports is not used
  std::filesystem::path
      directory;  ///< for the unit's files; empty: a fresh temporary one, removed at the end
};

class Unit {
 public:
  explicit Unit(UnitConfig config = {});
  ~Unit();
  Unit(const Unit&) = delete;
  Unit& operator=(const Unit&) = delete;

  Clock& clock() { return clock_; }
  Trace& trace() { return trace_; }
  [[nodiscard]] const Trace& trace() const { return trace_; }
  Device& device() { return device_; }
  Platform& platform() { return platform_; }
  [[nodiscard]] const Platform& platform() const { return platform_; }
  DataPath& dataPath() { return dataPath_; }
  KernelMonitor& monitor() { return monitor_; }
  Shell& shell() { return shell_; }
  Interfaces& interfaces() { return interfaces_; }

  /// The PHY of a UNI port, counted from 1.
  Phy& phy(std::uint32_t port) { return interfaces_.phy(port); }

  /// Ends the tasks that run, once they have carried out what was sent to them. The end of the unit
  /// does that too.
  void endTasks();

  /// The unit that the platform calls reach, or null.
  static Unit* Current();

 private:
  bool ownsDirectory_;
  std::filesystem::path directory_;
  Clock clock_;
  Trace trace_;
  Device device_;
  KernelMonitor monitor_;
  Interfaces interfaces_;
  Shell shell_;
  Platform platform_;
  DataPath dataPath_;
};

}  // namespace virtual_onu
