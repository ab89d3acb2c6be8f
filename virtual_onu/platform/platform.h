/// @file
/// The device platform of the virtual unit: configuration, log module, tasks, messages, time and
/// the marker file. The C calls that the library imports are in unit/; what a shell line does is in
/// shell/.
#pragma once

#include <array>
#include <cstdarg>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "base/bytes.h"
#include "base/clock.h"
#include "base/trace.h"

namespace virtual_onu {

using MacAddressBytes = std::array<std::uint8_t, 6>;

/// What the platform answers to the library. The `...Fails` switches make the named call fail.
struct PlatformConfig {
  std::uint32_t ethPorts = 4;
  std::uint32_t fePorts = 0;
  std::uint32_t gePorts = 4;
  std::uint32_t uplinkPort = 5;
  std::uint32_t portRevert = 0;
  std::map<std::uint32_t, std::uint32_t> features = {{27, 1}};  ///< a switch not listed is 0
  std::string boardId = "VIRTUAL-ONU";
  std::uint32_t factoryMode = 0;
  MacAddressBytes firstMac = {0x02, 0x00, 0x5E, 0x10, 0x00, 0x01};
  MacAddressBytes secondMac = {0x02, 0x00, 0x5E, 0x10, 0x00, 0x02};
  bool macQueryFails = false;
  bool logCreateFails = false;
  bool taskSpawnFails = false;
  bool openDeviceFails = false;
  bool monitorSocketFails = false;         ///< socket() for the kernel monitor
  bool monitorBindFails = false;           ///< bind() of its socket
  std::int32_t monitorRegisterResult = 0;  ///< of its registration with devCtl_boardIoctl
  std::uint32_t clientResult = 0;          ///< of every protocol client
  bool runTasks = false;  ///< true: a spawned task runs on a thread; false: it is only recorded
};

/// A task that the library spawned.
struct Task {
  std::string name;
  std::array<std::uint32_t, 4> numbers = {};
  std::uint32_t arg = 0;
  void (*entry)() = nullptr;
};

/// Carries out a shell line and returns it as it is to be traced.
using ShellRunner = std::function<ShellEvent(std::string line)>;

class Platform {
 public:
  /// `directory` holds the unit's files, the performance marker among them; it must exist.
  Platform(PlatformConfig config, Trace& trace, Clock& clock, std::filesystem::path directory);
  ~Platform();
  Platform(const Platform&) = delete;
  Platform& operator=(const Platform&) = delete;

  /// Who carries out shell lines; without a runner they are traced and succeed.
  void setShellRunner(ShellRunner runner) { shellRunner_ = std::move(runner); }

  [[nodiscard]] const PlatformConfig& config() const { return config_; }

  /// For changes between calls of the library; the library asks anew each time.
  PlatformConfig& config() { return config_; }

  /// Who answers HC_GetEthPortNum() instead of the configuration; an empty function for nobody.
  void onEthPortsAsked(std::function<std::uint32_t()> answer) { ethPorts_ = std::move(answer); }
  [[nodiscard]] std::uint32_t ethPorts() const {
    return ethPorts_ ? ethPorts_() : config_.ethPorts;
  }

  /// Who is told, on its thread, that a task has ended by itself.
  void onTaskEnd(std::function<void()> listener) { taskEnd_ = std::move(listener); }

  std::uint32_t createLog(const char* name, std::uint32_t a, std::int32_t b);
  void printLog(std::uint32_t id, std::uint32_t level, const char* file, std::uint32_t line,
                const char* format, std::va_list arguments);
  std::int32_t spawnTask(Task task);
  std::int32_t runShell(const char* format, std::va_list arguments);
  std::uint32_t sendMessage(std::uint32_t module, std::uint32_t code, ByteView message);
  void delay(std::uint32_t milliseconds);
  void reboot(std::uint32_t reason);
  void resetDefaultConfig();
  std::uint32_t macAddresses(std::uint8_t* first, std::uint8_t* second);
  std::uint32_t boardId(char* buffer, std::uint32_t length);

  /// Where a path of the target lies in the unit's directory, when it is one that the unit keeps
  /// there (the performance marker); otherwise the path itself.
  [[nodiscard]] std::filesystem::path mapPath(const char* path) const;

  /// Puts the performance marker in place, or takes it away.
  void setPerformanceMarker(bool present) const;
  [[nodiscard]] bool performanceMarker() const;

  [[nodiscard]] std::vector<Task> tasks() const;

  /// Waits for the tasks that run; somebody must have seen to it that they end.
  void joinTasks();

 private:
  PlatformConfig config_;
  Trace& trace_;
  Clock& clock_;
  std::filesystem::path directory_;
  ShellRunner shellRunner_;
  std::function<std::uint32_t()> ethPorts_;
  std::function<void()> taskEnd_;
  mutable std::mutex mutex_;  ///< guards what follows; threads: see Unit
  std::vector<Task> tasks_;
  std::vector<std::thread> threads_;
};

}  // namespace virtual_onu
