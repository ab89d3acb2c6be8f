/// @file
/// The processor's byte order against the target's, for one number at a time.
#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <span>

namespace virtual_onu {

/// Turns the bytes of a number from the processor's order to big-endian, or back.
inline void SwapNumber(std::span<std::uint8_t> number) {
  if constexpr (std::endian::native == std::endian::little) {
    std::ranges::reverse(number);
  }
}

}  // namespace virtual_onu
