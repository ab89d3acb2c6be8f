/// @file
/// Descriptor, requests and events of the device. What a command does is not known here.
#include "device/device.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <utility>

#include <brmgr_cmd.h>

#include "device/chip_commands.h"
#include "device/execute_command.h"

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

/// Events that wait at a descriptor's reader; shorter records count as a part of one.
std::size_t WaitingEvents(int reader) {
  int octets = 0;
  // Not by way of ioctl(), which comes back to the device.
  syscall(SYS_ioctl, reader, FIONREAD, &octets);
  return (static_cast<std::size_t>(octets) + sizeof(BrmgrEvent) - 1) / sizeof(BrmgrEvent);
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

/// The record of a request; empty when there is none or nobody may look at it.
Bytes RecordOf(const BrmgrRequest& request) {
  if (request.len == 0 || CheckBuffer(request).error != 0) {
    return {};
  }
  const auto* const first = static_cast<const std::uint8_t*>(request.buf);
  return {first, first + request.len};
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
  std::unique_lock lock(mutex_);
  // As in the kernel, only the low 32 bits of a request count: callers may have sign-extended it.
  // Required: request-number-has-32-bits
  const auto number = static_cast<std::uint32_t>(request);
  if (number != BRMGR_IOCTL_REQUEST || argument == nullptr) {
    trace_.add(CallEvent{"ioctl(BrmgrDev, " + std::to_string(number) + ")", -1});
    errno = number != BRMGR_IOCTL_REQUEST ? ENOTTY : EFAULT;
    return -1;
  }
  BrmgrRequest command;
  std::memcpy(&command, argument, sizeof(command));
  std::function<void()> deliver;
  const int result = serveTraced(command, deliver);
  lock.unlock();
  if (deliver) {
    deliver();
  }
  return result;
}

int Device::serveTraced(const BrmgrRequest& request, std::function<void()>& deliver) {
  CommandEvent event;
  event.code = request.cmd;
  event.length = request.len;
  event.flag = request.flag;
  event.before = RecordOf(request);
  int error = 0;
  if (const std::optional<int> answer = answer_ ? answer_(request) : std::nullopt) {
    event.after = RecordOf(request);
    event.result = *answer;
  } else {
    error = serve(request, event);
    deliver = error == 0 ? sendOutgoing(event) : nullptr;
    event.result = error == 0 ? 0 : -1;
  }
  const int result = event.result;
  trace_.add(std::move(event));
  if (error != 0) {
    errno = error;
  }
  return result;
}

std::function<void()> Device::sendOutgoing(CommandEvent& event) {
  const std::optional<OutgoingFrame> frame = std::exchange(state_.outgoing, std::nullopt);
  if (!frame || !sender_) {
    return nullptr;
  }
  SentFrame sent = sender_(*frame);
  event.reason = std::move(sent.reason);
  return std::move(sent.deliver);
}

void Device::setSender(FrameSender sender) {
  const std::lock_guard lock(mutex_);
  sender_ = std::move(sender);
}

void Device::onRequest(RequestAnswer answer) {
  const std::lock_guard lock(mutex_);
  answer_ = std::move(answer);
}

int Device::serve(const BrmgrRequest& request, CommandEvent& event) {
  CommandResult result = CheckBuffer(request);
  event.after = event.before;
  // Required: faults-count-every-command
  if (faults_.refuses(request.cmd)) {
    result = {EIO, "refused by a fault rule"};
  }
  if (result.error == 0) {
    Bytes record = event.before;
    state_.now = trace_.now();
    result = ExecuteCommand(state_, request.cmd, record);
    // Required: only-flag-1-writes-back
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
    return WaitingEvents(channel.reader) < kEventQueue &&
           send(channel.driver, event.data(), event.size(), MSG_DONTWAIT | MSG_NOSIGNAL) >= 0;
  });
  return sent != 0;
}

bool Device::isOpen() const {
  const std::lock_guard lock(mutex_);
  return !channels_.empty();
}

std::size_t Device::pendingEvents() const {
  const std::lock_guard lock(mutex_);
  return channels_.empty() ? 0 : WaitingEvents(channels_.back().reader);
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
