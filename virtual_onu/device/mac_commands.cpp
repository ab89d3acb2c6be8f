/// @file
/// The handlers of the MAC table: entries, blocked and bound addresses, aging, and the walk.
#include "device/mac_commands.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <iterator>
#include <limits>
#include <string>

#include "base/text.h"

namespace virtual_onu {
namespace {

constexpr std::uint16_t kMaxVid = 4095;

/// The key of an entry, a blocked or a bound address.
template <typename Record>
MacKey KeyOf(const Record& record) {
  MacKey key = {.vid = record.vid};
  std::ranges::copy(record.mac, key.mac.begin());
  return key;
}

std::string NameOf(const MacKey& key) {
  return FormatMac(key.mac) + " in VLAN " + std::to_string(key.vid);
}

/// Checks what a new entry, blocked or bound address names; the result tells why it is refused.
template <typename Record>
CommandResult Check(const DriverState& state, const Record& record) {
  if (record.port < 1 || record.port > state.limits.uniPorts) {
    return {EINVAL, "UNI port " + std::to_string(record.port) + " is none of 1 to " +
                        std::to_string(state.limits.uniPorts)};
  }
  if (record.vid > kMaxVid) {
    return {EINVAL, "VID " + std::to_string(record.vid) + " is above 4095"};
  }
  return {};
}

template <std::uint32_t kType>
CommandResult AddEntry(DriverState& state, MacEntryRecord& record) {
  CommandResult result = Check(state, record);
  if (result.error != 0) {
    return result;
  }
  auto& entries = state.macTables.entries;
  const MacKey key = KeyOf(record);
  state.macTables.removeAged(state.now);
  if (!entries.contains(key) && entries.size() >= state.limits.macEntries) {
    return {ENOSPC,
            "all " + std::to_string(state.limits.macEntries) + " MAC table entries are in use"};
  }
  entries[key] = {record.port, kType, state.now};
  return {};
}

/// Deletes an entry of the given type, on whatever port it is; a dynamic one may be learned.
template <std::uint32_t kType>
CommandResult DeleteEntry(DriverState& state, MacEntryRecord& record) {
  auto& entries = state.macTables.entries;
  state.macTables.removeAged(state.now);
  const auto found = entries.find(KeyOf(record));
  if (found == entries.end() || found->second.type != kType) {
    return {ENOENT, "no " + std::string(kType == kMacEntryStatic ? "static" : "dynamic") +
                        " entry of " + NameOf(KeyOf(record))};
  }
  entries.erase(found);
  return {};
}

template <MacPorts MacTables::*kTable>
CommandResult AddFilter(DriverState& state, MacFilterRecord& record) {
  CommandResult result = Check(state, record);
  if (result.error == 0) {
    (state.macTables.*kTable)[KeyOf(record)] = record.port;
  }
  return result;
}

template <MacPorts MacTables::*kTable>
CommandResult DeleteFilter(DriverState& state, MacFilterRecord& record) {
  if ((state.macTables.*kTable).erase(KeyOf(record)) == 0) {
    return {ENOENT, NameOf(KeyOf(record)) + " is not in the list"};
  }
  return {};
}

/// Returns the entry with the next higher address. An address that is in several VLANs is returned
/// in the lowest one only, because the record asks by the address alone.
CommandResult ReadNext(DriverState& state, MacEntryRecord& record) {
  const auto& entries = state.macTables.entries;
  MacKey last = KeyOf(record);
  last.vid = std::numeric_limits<std::uint16_t>::max();
  const auto next = std::find_if(entries.upper_bound(last), entries.end(), [&](const auto& item) {
    return state.macTables.isLive(item.second, state.now);
  });
  if (next == entries.end()) {
    return {ENOENT, "no entry after " + FormatMac(last.mac)};
  }
  std::ranges::copy(next->first.mac, std::begin(record.mac));
  record.port = next->second.uni;
  record.vid = next->first.vid;
  record.entryType = next->second.type;
  return {};
}

CommandResult SetAging(DriverState& state, MacAgingRecord& record) {
  state.macTables.ageTime = record.ageTime;
  return {};
}

constexpr std::array kMacCommands = {
    kRow<BRMGR_CMD_MAC_GET_NEXT, ReadNext>,
    kRow<BRMGR_CMD_MAC_BIND_ADD, AddFilter<&MacTables::binds>>,
    kRow<BRMGR_CMD_MAC_BIND_DEL, DeleteFilter<&MacTables::binds>>,
    kRow<BRMGR_CMD_MAC_FILTER_ADD, AddFilter<&MacTables::filters>>,
    kRow<BRMGR_CMD_MAC_FILTER_DEL, DeleteFilter<&MacTables::filters>>,
    kRow<BRMGR_CMD_MAC_STATIC_ADD, AddEntry<kMacEntryStatic>>,
    kRow<BRMGR_CMD_MAC_STATIC_DEL, DeleteEntry<kMacEntryStatic>>,
    kRow<BRMGR_CMD_MAC_DYNAMIC_ADD, AddEntry<kMacEntryDynamic>>,
    kRow<BRMGR_CMD_MAC_DYNAMIC_DEL, DeleteEntry<kMacEntryDynamic>>,
    kRow<BRMGR_CMD_MAC_AGING, SetAging>,
};

}  // namespace

std::span<const CommandRow> MacCommands() {
  return kMacCommands;
}

}  // namespace virtual_onu
