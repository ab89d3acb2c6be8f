/// @file
/// Keeping of calls.
#include "clients/client_recorder.h"

#include <utility>

namespace virtual_onu {

std::uint32_t ClientRecorder::take(const ClientCall& call) {
  const std::lock_guard lock(mutex_);
  calls_.push_back({call.client, {call.frame.begin(), call.frame.end()}, call.vid, call.port});
  return result_;
}

std::vector<RecordedCall> ClientRecorder::collect() {
  const std::lock_guard lock(mutex_);
  return std::exchange(calls_, {});
}

}  // namespace virtual_onu
