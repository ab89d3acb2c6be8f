/// @file
/// The C library's calls that the unit interposes: ioctl() on the device's descriptors and, on any
/// socket, for the unit's network interfaces; access() and unlink() of the files that the unit
/// keeps in its own directory; socket() and bind() of the kernel monitor, and the end of recvmsg()
/// on its socket. Everything else goes to the system.
#include <cstdarg>
#include <cstdint>
#include <dlfcn.h>
#include <filesystem>
#include <linux/netlink.h>
#include <linux/sockios.h>
#include <optional>
#include <string>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include "unit/unit.h"

using virtual_onu::Unit;

namespace {

/// The C library's own function of that name.
template <typename Function>
Function* Next(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

/// Where the path lies for the unit; a call on one of the unit's own files is noted in the trace.
std::filesystem::path Mapped(const char* call, const char* path) {
  Unit* unit = Unit::Current();
  if (unit == nullptr) {
    return path;
  }
  std::filesystem::path mapped = unit->platform().mapPath(path);
  if (mapped != path) {
    unit->trace().add(virtual_onu::CallEvent{std::string(call) + "(\"" + path + "\")", 0});
  }
  return mapped;
}

bool IsSocket(int fd) {
  struct stat status = {};
  return fstat(fd, &status) == 0 && S_ISSOCK(status.st_mode);
}

/// Offers a request to the unit; nothing when it is the system's. The argument is looked at only
/// for the few requests that the unit knows: it need not be an address for others.
std::optional<int> ServedByUnit(int fd, unsigned long request, void* argument) {
  Unit* unit = Unit::Current();
  if (unit == nullptr) {
    return std::nullopt;
  }
  if (unit->device().owns(fd)) {
    return unit->device().ioctl(request, argument);
  }
  if (!virtual_onu::Interfaces::Knows(request) || !IsSocket(fd)) {
    return std::nullopt;
  }
  const std::optional<int> served = unit->interfaces().ioctl(request, argument);
  if (request == SIOCSMIIREG && served == 0) {
    unit->tellLinks();
  }
  return served;
}

/// The unit's monitor when the descriptor is one of its sockets.
virtual_onu::KernelMonitor* MonitorOf(int fd) {
  Unit* unit = Unit::Current();
  return unit != nullptr && unit->monitor().owns(fd) ? &unit->monitor() : nullptr;
}

/// What is to go wrong with the monitor's sockets.
virtual_onu::MonitorFaults MonitorFaultsOf(const Unit& unit) {
  const virtual_onu::PlatformConfig& config = unit.platform().config();
  return {.socketFails = config.monitorSocketFails, .bindFails = config.monitorBindFails};
}

}  // namespace

extern "C" {

int ioctl(int fd, unsigned long request, ...) noexcept {
  std::va_list arguments;
  va_start(arguments, request);
  void* argument = va_arg(arguments, void*);
  va_end(arguments);
  if (const std::optional<int> served = ServedByUnit(fd, request, argument)) {
    return *served;
  }
  static auto* const next = Next<int(int, unsigned long, ...)>("ioctl");
  return next(fd, request, argument);
}

int access(const char* name, int type) noexcept {
  static auto* const next = Next<int(const char*, int)>("access");
  return next(Mapped("access", name).c_str(), type);
}

int unlink(const char* name) noexcept {
  static auto* const next = Next<int(const char*)>("unlink");
  return next(Mapped("unlink", name).c_str());
}

int socket(int domain, int type, int protocol) noexcept {
  Unit* unit = Unit::Current();
  if (unit != nullptr && domain == AF_NETLINK &&
      protocol == virtual_onu::KernelMonitor::kProtocol) {
    return unit->monitor().open(MonitorFaultsOf(*unit));
  }
  static auto* const next = Next<int(int, int, int)>("socket");
  return next(domain, type, protocol);
}

int bind(int fd, const sockaddr* addr, socklen_t len) noexcept {
  if (virtual_onu::KernelMonitor* monitor = MonitorOf(fd)) {
    return monitor->bind(fd, MonitorFaultsOf(*Unit::Current()), addr, len);
  }
  static auto* const next = Next<int(int, const sockaddr*, socklen_t)>("bind");
  return next(fd, addr, len);
}

ssize_t recvmsg(int fd, msghdr* message, int flags) {
  static auto* const next = Next<ssize_t(int, msghdr*, int)>("recvmsg");
  const ssize_t size = next(fd, message, flags);
  if (virtual_onu::KernelMonitor* monitor = MonitorOf(fd)) {
    return monitor->received(fd, size);
  }
  return size;
}

}  // extern "C"
