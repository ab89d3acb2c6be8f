/// @file
/// Long records in the trace: most of their bytes are zero.
#pragma once

#include <cstddef>
#include <vector>

#include "base/bytes.h"

namespace virtual_onu {

/// Bytes kept without their long runs of zeros.
class PackedBytes {
 public:
  PackedBytes() = default;
  explicit PackedBytes(ByteView bytes);

  [[nodiscard]] Bytes unpack() const;

  /// How many bytes are kept.
  [[nodiscard]] std::size_t kept() const;

 private:
  struct Run {
    std::size_t offset = 0;
    Bytes bytes;
  };

  std::size_t size_ = 0;
  std::vector<Run> runs_;  ///< what is not zero, in order
};

}  // namespace virtual_onu
