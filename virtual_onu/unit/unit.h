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

/// Threads and locks, of the unit and of its rooms.
///
/// The library's calls come on any of its threads: the caller's, that of a task, that which
/// captures. So do frames (receive()), listeners and whoever looks at the unit meanwhile.
///
/// The device's lock is the unit's: one command, or one frame, at a time. While it is held, the
/// device, which keeps the chip's tables, and the data path, which reads them and writes what it
/// learns and counts, are as the last command or frame left them; what a command gives to send is
/// decided behind that command, before the next. Other parts have locks of their own for what they
/// keep. A lock of this list may be taken while one above it is held, and never the other way:
///
///   1. Shell: a line of the shell at a time.
///   2. Device: a command, an event, or a frame in the data path, which has no lock itself.
///   3. PacketPath: what the library sent, and the stations whose frames went to a relay.
///      KernelMonitor: the sockets, and who waits at them. Platform: the tasks. Unit: the links
///      that were told; the taker of the clients' frames. Pump: its counts, and sending to its ends.
///      None of these is held with another.
///   4. Phy: the registers of one port.
///   5. Trace: the events.
///   6. Clock: the time.
///
/// No thread takes one twice: who holds the device, by hold() too, calls neither receive() nor a
/// function of the device that locks.
///
/// Who is called back, and what is held then:
/// - The trace's listener: the device when a command is traced, the monitor when a call on its
///   sockets is; never the trace. It calls no function of these two that locks.
/// - Device::onRequest() and the sender of setSender(): the device.
/// - The takers of onTransmit() and onClientCall(), and the listener of a task's end: nothing; they
///   may call whatever they like.
///
/// What is handed out without a lock (the tables and faults of Device, dataPath(), the objects and
/// faults of Shell, the faults of Interfaces, the configuration of Platform) is read and changed on
/// the thread that makes the library's calls, while none is made, or, of the device and the data
/// path, with hold(). Whatever sets a callback of Platform does so before the first call.
///
/// Waiting: tellLinks(), spawnTask() and endTasks() wait for the library's task, which needs the
/// device meanwhile; whoever holds it must not call them. The device hands events over without
/// waiting for their reader.
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
  /// out.
  Verdict receive(PortId port, ByteView frame) { return packetPath_.receive(port, frame); }

  /// Who takes the frames that the library sends, and their mirrored copies, where they leave; an
  /// empty function for nobody. Called on the thread that sends; of two threads that send at once
  /// either may come first.
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
  /// device's tables may be read while other threads work.
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
