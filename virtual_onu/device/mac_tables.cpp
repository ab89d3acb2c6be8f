/// @file
/// Aging of the MAC table.
#include "device/mac_tables.h"

#include <algorithm>

namespace virtual_onu {
namespace {

constexpr std::uint64_t kMillisecondsPerSecond = 1000;

}  // namespace

std::optional<std::uint16_t> MacTables::agingTime() const {
  const std::uint16_t seconds = ageTime.value_or(kDefaultAgeTime);
  return ages && seconds != 0 ? std::optional(seconds) : std::nullopt;
}

bool MacTables::isLive(const MacEntry& entry, std::uint64_t now) const {
  const std::optional<std::uint16_t> seconds = agingTime();
  return entry.type != kMacEntryDynamic || !seconds ||
         now - entry.seen < *seconds * kMillisecondsPerSecond;
}

const MacEntry* MacTables::find(const MacKey& key, std::uint64_t now) const {
  const auto found = entries.find(key);
  return found != entries.end() && isLive(found->second, now) ? &found->second : nullptr;
}

std::size_t MacTables::learnedAt(std::uint32_t uni, std::uint64_t now) const {
  return static_cast<std::size_t>(std::ranges::count_if(entries, [&](const auto& item) {
    const MacEntry& entry = item.second;
    return entry.uni == uni && entry.type == kMacEntryDynamic && isLive(entry, now);
  }));
}

void MacTables::removeAged(std::uint64_t now) {
  std::erase_if(entries, [&](const auto& item) { return !isLive(item.second, now); });
}

void MacTables::removeDynamic() {
  std::erase_if(entries, [](const auto& item) { return item.second.type == kMacEntryDynamic; });
}

}  // namespace virtual_onu
