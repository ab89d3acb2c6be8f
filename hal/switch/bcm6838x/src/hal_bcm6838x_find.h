/// @file
/// The search of a table.
#ifndef HAL_BCM6838X_FIND_H
#define HAL_BCM6838X_FIND_H

#include <cstddef>

namespace hal {

/// The first entry of a table for which `accepts` holds, or null.
template <typename Entry, size_t count, typename Accepts>
constexpr Entry* FirstOf(Entry (&table)[count], Accepts accepts) {
  for (Entry& entry : table) {
    if (accepts(entry)) {
      return &entry;
    }
  }
  return nullptr;
}

}  // namespace hal

#endif
