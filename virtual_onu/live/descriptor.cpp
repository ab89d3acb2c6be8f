/// @file
/// The end of a descriptor.
#include "live/descriptor.h"

#include <unistd.h>
#include <utility>

namespace virtual_onu {
namespace {

constexpr int kClosed = -1;

}  // namespace

Descriptor::~Descriptor() {
  if (fd_ != kClosed) {
    close(fd_);
  }
}

Descriptor::Descriptor(Descriptor&& other) noexcept : fd_(std::exchange(other.fd_, kClosed)) {}

}  // namespace virtual_onu
