/// @file
/// Leaving out blocks of zeros, and putting them back.
#include "base/packed_bytes.h"

#include <algorithm>

namespace virtual_onu {
namespace {

constexpr std::size_t kBlock = 64;

bool IsZero(ByteView block) {
  return std::ranges::all_of(block, [](std::uint8_t byte) { return byte == 0; });
}

}  // namespace

PackedBytes::PackedBytes(ByteView bytes) : size_(bytes.size()) {
  for (std::size_t offset = 0; offset < bytes.size(); offset += kBlock) {
    const ByteView block = bytes.subspan(offset, std::min(kBlock, bytes.size() - offset));
    if (IsZero(block)) {
      continue;
    }
    if (runs_.empty() || runs_.back().offset + runs_.back().bytes.size() != offset) {
      runs_.push_back({offset, {}});
    }
    Bytes& run = runs_.back().bytes;
    run.insert(run.end(), block.begin(), block.end());
  }
}

Bytes PackedBytes::unpack() const {
  Bytes bytes(size_);
  for (const Run& run : runs_) {
    std::ranges::copy(run.bytes, bytes.begin() + static_cast<std::ptrdiff_t>(run.offset));
  }
  return bytes;
}

std::size_t PackedBytes::kept() const {
  std::size_t kept = 0;
  for (const Run& run : runs_) {
    kept += run.bytes.size();
  }
  return kept;
}

}  // namespace virtual_onu
