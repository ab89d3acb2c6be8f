/// @file
/// Frames over descriptors.
#include "live/frame_end.h"

#include <cerrno>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace virtual_onu {
namespace {

constexpr std::size_t kLongestFrame = 65536;

bool IsSocket(int fd) {
  struct stat status = {};
  return fstat(fd, &status) == 0 && S_ISSOCK(status.st_mode);
}

}  // namespace

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

}  // namespace virtual_onu
