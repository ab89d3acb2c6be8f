/// @file
/// Descriptor, requests and events of the device. What a command does is in commands.cpp.
#include "device/device.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

#include <brmgr_cmd.h>

namespace virtual_onu {
namespace {

/// Moves a descriptor above those of standard input and output, which a program may have closed:
/// the library takes 0 for "not open". Returns -1 with errno set when there is none left.
int MoveAboveStandard(int fd) {
  constexpr int kFirst = 3;
  const int moved = fcntl(fd, F_DUPFD_CLOEXEC, kFirst);
  const int error = errno;
  close(fd);
  errno = error;
  return moved;
}

/// What is wrong with a request before anybody looks at its record.
CommandResult CheckBuffer(const BrmgrRequest& request) {
  if (request.len > Device::kMaxRecordLength) {
    return {EINVAL, "record longer than " + std::to_string(Device::kMaxRecordLength) + " bytes"};
  }
  if (request.len > 0 && request.buf == nullptr) {
    return {EFAULT, "no record, but a length of " + std::to_string(request.len)};
  }
  return {};
}

}  // namespace

Device::Device(Trace& trace, ChipLimits limits) : trace_(trace), state_{.limits = limits} {}

Device::~Device() {
  for (const Channel& channel : channels_) {
    close(channel.driver);
    close(channel.reader);
  }
}

int Device::open() {
  std::array<int, 2> pair = {};
  if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, pair.data()) != 0) {
    return -1;
  }
  const Channel channel = {.reader = MoveAboveStandard(pair[0]),
                           .driver = MoveAboveStandard(pair[1])};
  if (channel.reader < 0 || channel.driver < 0) {
    const int error = errno;
    close(channel.reader);
    close(channel.driver);
    errno = error;
    return -1;
  }
  const std::lock_guard lock(mutex_);
  channels_.push_back(channel);
  return channel.reader;
}

bool Device::owns(int fd) const {
  const std::lock_guard lock(mutex_);
  return std::ranges::find(channels_, fd, &Channel::reader) != channels_.end();
}

int Device::ioctl(unsigned long request, void* argument) {
  const std::lock_guard lock(mutex_);
  // As in the kernel, only the low 32 bits of a request count: callers may have sign-extended it.
  const auto number = static_cast<std::uint32_t>(request);
  if (number != BRMGR_IOCTL_REQUEST || argument == nullptr) {
    trace_.add(CallEvent{"ioctl(BrmgrDev, " + std::to_string(number) + ")", -1});
    errno = number != BRMGR_IOCTL_REQUEST ? ENOTTY : EFAULT;
    return -1;
  }
  BrmgrRequest command;
  std::memcpy(&command, argument, sizeof(command));
  CommandEvent event;
  event.code = command.cmd;
  event.length = command.len;
  event.flag = command.flag;
  const int error = serve(command, event);
  const int result = error == 0 ? 0 : -1;
  event.result = result;
  trace_.add(std::move(event));
  if (error != 0) {
    errno = error;
  }
  return result;
}

int Device::serve(const BrmgrRequest& request, CommandEvent& event) {
  CommandResult result = CheckBuffer(request);
  if (result.error == 0 && request.len > 0) {
    const auto* const first = static_cast<const std::uint8_t*>(request.buf);
    event.before.assign(first, first + request.len);
  }
  event.after = event.before;
  if (faults_.refuses(request.cmd)) {
    result = {EIO, "refused by a fault rule"};
  }
  if (result.error == 0) {
    Bytes record = event.before;
    state_.now = trace_.now();
    result = ExecuteCommand(state_, request.cmd, record);
    if (result.error == 0 && request.flag == BRMGR_FLAG_READ_BACK && !record.empty()) {
      std::memcpy(request.buf, record.data(), record.size());
      event.after = std::move(record);
    }
  }
  event.reason = std::move(result.reason);
  return result.error;
}

CommandResult Device::setPortAction(std::uint32_t icIndex, const PortActionKey& key,
                                    std::uint32_t vlanActionIndex) {
  const std::lock_guard lock(mutex_);
  return SetPortAction(state_, icIndex, key, vlanActionIndex);
}

bool Device::sendEvent(ByteView event) {
  // An empty record would look like the end of the file to the reader.
  if (event.empty()) {
    return false;
  }
  const std::lock_guard lock(mutex_);
  const auto sent = std::ranges::count_if(channels_, [event](const Channel& channel) {
    return send(channel.driver, event.data(), event.size(), MSG_DONTWAIT | MSG_NOSIGNAL) >= 0;
  });
  return sent != 0;
}

std::optional<DrvInitRecord> Device::ports() const {
  const std::lock_guard lock(mutex_);
  return state_.ports;
}

std::optional<std::uint32_t> Device::feature() const {
  const std::lock_guard lock(mutex_);
  return state_.feature;
}

}  // namespace virtual_onu
