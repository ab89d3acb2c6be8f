/// @file
/// Clients that keep every frame that they get and do nothing else.
#pragma once

#include <cstdint>
#include <mutex>
#include <vector>

#include "base/bytes.h"
#include "unit/client_call.h"

namespace virtual_onu {

struct RecordedCall {
  Client client = Client::Igmp;
  Bytes frame;
  std::uint32_t vid = 0;
  std::uint32_t port = 0;
  bool operator==(const RecordedCall&) const = default;
};

/// May be used from any thread.
class ClientRecorder {
 public:
  /// What every call returns to the library.
  explicit ClientRecorder(std::uint32_t result = 0) : result_(result) {}

  std::uint32_t take(const ClientCall& call);

  /// The calls so far, the oldest first, which are then forgotten.
  std::vector<RecordedCall> collect();

 private:
  const std::uint32_t result_;
  std::mutex mutex_;
  std::vector<RecordedCall> calls_;
};

}  // namespace virtual_onu
