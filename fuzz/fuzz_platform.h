/// @file
/// What the fuzzers share: their input taken apart, and the platform's side of the device and of
/// the kernel monitor's socket.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include <brmgr_record.h>

namespace fuzz {

using Bytes = std::vector<std::uint8_t>;

/// The input, from the front; zeros behind its end.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : rest_(data, size) {}

  std::uint8_t byte() {
    if (rest_.empty()) {
      return 0;
    }
    const std::uint8_t first = rest_.front();
    rest_ = rest_.subspan(1);
    return first;
  }

  /// A number, most significant byte first.
  std::uint32_t number(std::size_t bytes) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < bytes; ++i) {
      value = (value << 8U) | byte();
    }
    return value;
  }

  /// Everything that is left.
  Bytes rest() {
    Bytes bytes(rest_.begin(), rest_.end());
    rest_ = {};
    return bytes;
  }

 private:
  std::span<const std::uint8_t> rest_;
};

/// Gives the ports VLAN modes, PVIDs and a few entries in their lists.
void ConfigurePorts(Input& input);

/// Puts a record in front of the device's reader.
void PutEvent(const BrmgrEvent& event);

/// Runs the kernel event task on datagrams, until it asks for one more than there are.
void RunMonitor(const std::vector<Bytes>& datagrams);

/// Ends the process when the library gave the platform something that it may not give.
void Require(bool condition);

}  // namespace fuzz
