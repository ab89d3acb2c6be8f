/// @file
/// Frames over descriptors.
#include "live/frame_end.h"

#include <cerrno>
#include <optional>
#include <string_view>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "base/text.h"
#include "live/tap.h"

namespace virtual_onu {
namespace {

constexpr std::size_t kLongestFrame = 65536;
constexpr int kClosed = -1;

bool IsSocket(int fd) {
  struct stat status = {};
  return fstat(fd, &status) == 0 && S_ISSOCK(status.st_mode);
}

bool KeepsFramesApart(int fd) {
  int type = 0;
  socklen_t size = sizeof(type);
  return getsockopt(fd, SOL_SOCKET, SO_TYPE, &type, &size) == 0 &&
         (type == SOCK_DGRAM || type == SOCK_SEQPACKET);
}

/// Takes over a descriptor that the process inherited.
FrameEnd AdoptDescriptor(const std::string& text, std::string_view number) {
  const std::optional<std::uint32_t> fd = ParseDecimal(number, INT32_MAX);
  if (!fd) {
    throw LiveError(text + ": expected the number of an open descriptor behind \"fd:\"");
  }
  if (!KeepsFramesApart(static_cast<int>(*fd))) {
    throw LiveError(text +
                    ": expected an open socket that keeps frames apart (SOCK_SEQPACKET or "
                    "SOCK_DGRAM)");
  }
  return {Descriptor(static_cast<int>(*fd)), text};
}

}  // namespace

Descriptor::~Descriptor() {
  if (fd_ != kClosed) {
    close(fd_);
  }
}

Descriptor::Descriptor(Descriptor&& other) noexcept : fd_(std::exchange(other.fd_, kClosed)) {}

FrameEnd::FrameEnd(Descriptor fd, std::string name)
    : fd_(std::move(fd)), name_(std::move(name)), isSocket_(IsSocket(fd_.get())) {}

Received FrameEnd::receive(Bytes& frame) const {
  frame.resize(kLongestFrame);
  const ssize_t length = isSocket_ ? recv(fd(), frame.data(), frame.size(), MSG_DONTWAIT)
                                   : read(fd(), frame.data(), frame.size());
  if (length > 0) {
    frame.resize(static_cast<std::size_t>(length));
    return Received::Frame;
  }
  frame.clear();
  const bool later = length < 0 && (errno == EAGAIN || errno == EINTR || errno == EIO);
  return later ? Received::Nothing : Received::Gone;
}

bool FrameEnd::send(ByteView frame) const {
  const ssize_t length = isSocket_
                             ? ::send(fd(), frame.data(), frame.size(), MSG_DONTWAIT | MSG_NOSIGNAL)
                             : write(fd(), frame.data(), frame.size());
  return length == static_cast<ssize_t>(frame.size());
}

FrameEnd OpenFrameEnd(const std::string& text) {
  const std::size_t colon = text.find(':');
  const std::string_view kind = std::string_view(text).substr(0, colon);
  const std::string_view rest =
      colon == std::string::npos ? std::string_view() : std::string_view(text).substr(colon + 1);
  if (kind == "tap" && colon != std::string::npos) {
    return OpenTap(text, rest);
  }
  if (kind == "fd" && colon != std::string::npos) {
    return AdoptDescriptor(text, rest);
  }
  throw LiveError(text + ": expected tap:NAME, tap:NAME@NETNS or fd:N");
}

}  // namespace virtual_onu
