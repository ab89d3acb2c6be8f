/// @file
/// The virtual unit: one object that owns every room. Constructing one makes it the unit that the
/// library's platform calls reach; there is one at a time.
#pragma once

#include <cstdint>
#include <filesystem>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

#include "base/clock.h"
#include "base/trace.h"
#include "datapath/data_path.h"
#include "device/device.h"
#include "monitor/kernel_monitor.h"
#include "phy/interfaces.h"
#include "platform/platform.h"
#include "shell/shell.h"
#include "unit/client_call.h"
#include "unit/packet_path.h"

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

  /// Takes a frame in at a port: offers it to the data path and, when it is trapped, puts an event
  /// in front of the library's reader. An event that cannot be delivered is dropped, counted and
  /// traced. Does not wait for the library. What the verdict lets leave is the caller's to bring
  /// out. May be called from any thread, also by a taker of onTransmit().
  Verdict receive(PortId port, ByteView frame) { return packetPath_.receive(port, frame); }

  /// Who takes the frames that the library sends, and their mirrored copies, where they leave; an
  /// empty function for nobody. Called on the thread that sends, while the unit is not held; of two
  /// threads that send at once either may come first.
  void onTransmit(FrameTaker taker) { packetPath_.onTransmit(std::move(taker)); }

  /// What the library sent, from that number on, the oldest first; the newest thousand are kept.
  [[nodiscard]] std::vector<Transmission> transmissions(std::uint64_t from = 0) const {
    return packetPath_.transmissions(from);
  }

  /// Who takes what the library hands to its protocol clients, on the thread that hands it over;
  /// with an empty function the frames are noted and the configured result is returned.
  void onClientCall(ClientTaker taker);

  /// Hands a frame to the taker; nothing when there is none.
  std::optional<std::uint32_t> callClient(const ClientCall& call) const;

  /// Until the lock is gone no command is carried out and no frame decided: dataPath() and the
  /// device's tables may be read while other threads work. Its holder must not call receive(), nor
  /// anything of the device that locks.
  [[nodiscard]] std::unique_lock<std::mutex> hold() const { return device_.hold(); }

  /// Serves VOS_TaskSpawn. A task that runs is let run until it has ended or waits for a message of
  /// the kernel, as one of a higher priority would: its start is always the same.
  std::int32_t spawnTask(Task task);

  /// Sends the kernel's message about each port whose link has changed since the last time, and
  /// waits until the library's task has carried it out. Called behind whatever may change a link:
  /// by the unit behind shell lines and register writes of the library, and by whoever changes the
  /// partner of a PHY. Tells whether a task listened to the last message, if there was one.
  bool tellLinks();

  /// Ends the tasks that run, once they have carried out what was sent to them. The end of the unit
  /// does that too.
  void endTasks();

  /// The unit that the platform calls reach, or null.
  static Unit* Current();

 private:
  /// The kernel's messages about the links that have changed since the last call.
  std::vector<Bytes> changedLinks();

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
  PacketPath packetPath_;
  std::mutex linkMutex_;  ///< guards what follows
  std::vector<std::optional<Link>> toldLinks_;
  mutable std::mutex clientMutex_;
  ClientTaker clientTaker_;
};

}  // namespace virtual_onu
