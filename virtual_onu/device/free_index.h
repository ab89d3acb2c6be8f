/// @file
/// How the driver allots the index of a new object.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>

namespace virtual_onu {

/// The wished index when it is free, otherwise the next free one above it, starting over at 0
/// behind the last index of the table. Nothing when the table is full.
template <typename Object>
std::optional<std::uint32_t> FreeIndex(const std::map<std::uint32_t, Object>& table,
                                       std::size_t limit, std::uint32_t wished = 0) {
  if (table.size() >= limit) {
    return {};
  }
  std::uint32_t index = wished < limit ? wished : 0;
  while (table.contains(index)) {
    index = index + 1 < limit ? index + 1 : 0;
  }
  return index;
}

}  // namespace virtual_onu
