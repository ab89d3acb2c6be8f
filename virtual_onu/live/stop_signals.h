/// @file
/// The signals that end a live run: a user's Ctrl-C, and the request to end.
#pragma once

#include <csignal>

#include "live/descriptor.h"

namespace virtual_onu {

/// From construction to destruction SIGINT, SIGTERM and SIGHUP do not interrupt this thread and
/// those that it starts, but make a descriptor readable.
class StopSignals {
 public:
  StopSignals();
  ~StopSignals();
  StopSignals(const StopSignals&) = delete;
  StopSignals& operator=(const StopSignals&) = delete;

  /// Readable once one of the signals came.
  [[nodiscard]] int fd() const { return fd_.get(); }

 private:
  sigset_t before_ = {};
  Descriptor fd_;
};

}  // namespace virtual_onu
