/// @file
/// The near end of a link that carries whole Ethernet frames: a TAP interface, or any socket that
/// keeps frames apart. What happens to the frames is not known here.
#pragma once

#include <stdexcept>
#include <string>

#include "base/bytes.h"
#include "live/descriptor.h"

namespace virtual_onu {

/// One line that says which end failed, why, and how to mend it where that is known.
class LiveError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// What an attempt to receive gave.
enum class Received { Frame, Nothing, Gone };

/// Sends and receives without waiting. Several threads may send; one may receive meanwhile.
class FrameEnd {
 public:
  /// @param[in] fd    taken over: a socket that keeps messages apart, or a TAP interface's
  ///                  descriptor that does not wait
  /// @param[in] name  how messages and reports call it, "tap:home0"
  FrameEnd(Descriptor fd, std::string name);

  [[nodiscard]] int fd() const { return fd_.get(); }
  [[nodiscard]] const std::string& name() const { return name_; }

  /// Takes the next frame; frames longer than any link carries are cut.
  /// @return Nothing when none is there now; Gone when none will come any more
  Received receive(Bytes& frame) const;

  /// @return false when the far end does not take the frame now
  [[nodiscard]] bool send(ByteView frame) const;

 private:
  Descriptor fd_;
  std::string name_;
  bool isSocket_;
};

}  // namespace virtual_onu
