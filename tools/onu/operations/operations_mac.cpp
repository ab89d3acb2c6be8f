/// @file
/// The rows of the operations that bcm6838x_mac.h declares. A new operation is one more row.
#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <optional>

#include <bcm6838x_mac.h>

#include "base/text.h"
#include "operations/operation_rows.h"

namespace onu {

namespace {

using enum ResultKind;

constexpr Argument kVid = {"vid", ArgumentType::Number, "VLAN identifier"};
constexpr Argument kMac = {"mac", ArgumentType::Mac, "MAC address"};
const ArgumentRows kEntry = {kUniPort, kVid, kMac};
const ArgumentRows kDynamicEntry = {kWholePort, kVid, kMac};

/// Calls an operation on a static or a dynamic entry.
template <typename Entry, std::uint32_t (*kOperation)(const Entry*)>
std::uint32_t WithEntry(std::uint32_t port, std::uint32_t vid, MacAddress mac) {
  Entry entry = {};
  entry.vid = static_cast<std::uint16_t>(vid);
  std::ranges::copy(mac.octet, std::begin(entry.mac));
  entry.port = static_cast<decltype(entry.port)>(port);
  return kOperation(&entry);
}

using Reader = std::uint32_t (*)(std::uint32_t* port, std::uint16_t* vid, std::uint8_t* mac,
                                 std::uint8_t* flag);

/// Binds a reader of the table; the address after which to look is given where there is a row.
Binding BindReader(Reader read, std::size_t arity) {
  return {[read](const Arguments& given, std::span<const Argument> rows) {
            std::array<std::uint8_t, 6> mac = {};
            if (!rows.empty()) {
              mac = virtual_onu::ParseMac(given.word(rows[0].name)).value();
            }
            std::uint32_t port = 0;
            std::uint16_t vid = 0;
            std::uint8_t flag = 0;
            CallOutcome outcome;
            outcome.value = read(&port, &vid, mac.data(), &flag);
            outcome.outputs = {
                {"port", port}, {"vid", vid}, {"mac", virtual_onu::FormatMac(mac)}, {"flag", flag}};
            outcome.text = "  mac = " + virtual_onu::FormatMac(mac) +
                           ", vid = " + std::to_string(vid) + ", port = " + std::to_string(port) +
                           ", flag = " + std::to_string(flag) + "\n";
            return outcome;
          },
          arity};
}

const std::vector<Operation> kRows = {
    {{"BCM6838X_AddMacStatic",
      kEntry,
      "adds a static entry to the MAC table",
      {"InitDrv\nAddMacStatic 1 100 02:00:00:00:00:0a"}},
     Status,
     Bind(WithEntry<MacStaticEntry, BCM6838X_AddMacStatic>)},
    {{"BCM6838X_DelMacStatic",
      kEntry,
      "deletes a static entry of the MAC table",
      {"InitDrv\nAddMacStatic 1 100 02:00:00:00:00:0a\nDelMacStatic 1 100 02:00:00:00:00:0a"}},
     Status,
     Bind(WithEntry<MacStaticEntry, BCM6838X_DelMacStatic>)},
    {{"BCM6838X_AddMacDynamic",
      kDynamicEntry,
      "adds a dynamic entry to the MAC table",
      {"InitDrv\nAddMacDynamic 1 100 02:00:00:00:00:0a"}},
     Status,
     Bind(WithEntry<MacDynamicEntry, BCM6838X_AddMacDynamic>)},
    {{"BCM6838X_DelMacDynamic",
      kDynamicEntry,
      "deletes a dynamic entry of the MAC table",
      {"InitDrv\nAddMacDynamic 1 100 02:00:00:00:00:0a\nDelMacDynamic 1 100 02:00:00:00:00:0a"}},
     Status,
     Bind(WithEntry<MacDynamicEntry, BCM6838X_DelMacDynamic>)},
    {{"BCM6838X_AddMacFilter",
      kEntry,
      "blocks a MAC address on a port",
      {"InitDrv\nAddMacFilter 1 100 02:00:00:00:00:0a"}},
     Status,
     Bind(BCM6838X_AddMacFilter)},
    {{"BCM6838X_DelMacFilter",
      kEntry,
      "unblocks a MAC address on a port",
      {"InitDrv\nAddMacFilter 1 100 02:00:00:00:00:0a\nDelMacFilter 1 100 02:00:00:00:00:0a"}},
     Status,
     Bind(BCM6838X_DelMacFilter)},
    {{"BCM6838X_AddMacBind",
      kEntry,
      "binds a MAC address to a port",
      {"InitDrv\nAddMacBind 1 100 02:00:00:00:00:0a"}},
     Status,
     Bind(BCM6838X_AddMacBind)},
    {{"BCM6838X_DelMacBind",
      kEntry,
      "removes a MAC address binding",
      {"InitDrv\nAddMacBind 1 100 02:00:00:00:00:0a\nDelMacBind 1 100 02:00:00:00:00:0a"}},
     Status,
     Bind(BCM6838X_DelMacBind)},
    {{"BCM6838X_SetMacLimitMacNum",
      {{"limit", ArgumentType::Number, "number of addresses; the low 16 bits are sent"}},
      "sets the learning limit of the whole switch",
      {"SetMacLimitMacNum 16"}},
     Status,
     Bind(BCM6838X_SetMacLimitMacNum)},
    {{"BCM6838X_SetMacAgingTime",
      {{"ageTime", ArgumentType::Number, "aging time; the low 16 bits count"}},
      "sets the aging time of learned entries",
      {"InitDrv\nSetMacAgingTime 300", "config feature 27 0\nSetMacAgingTime 300"}},
     Status,
     Bind(BCM6838X_SetMacAgingTime)},
    {{"BCM6838X_SetMacClear",
      {{"clear", ArgumentType::Number, "passed on as it is"}},
      "clears learned entries of the MAC table",
      {"SetMacClear 1"}},
     Status,
     Bind(BCM6838X_SetMacClear)},
    {{"BCM6838X_GetFirstMacEntry",
      {},
      "reads the first entry of the MAC table; zeros when there is none",
      {"InitDrv\nAddMacStatic 1 100 02:00:00:00:00:0a\nGetFirstMacEntry"}},
     Status,
     BindReader(BCM6838X_GetFirstMacEntry, 0)},
    {{"BCM6838X_GetNextMacEntry",
      {{"mac", ArgumentType::Mac, "the address after which to look"}},
      "reads the entry of the MAC table after an address; that address when there is none",
      {"InitDrv\nAddMacStatic 1 100 02:00:00:00:00:0a\nGetNextMacEntry 02:00:00:00:00:00"}},
     Status,
     BindReader(BCM6838X_GetNextMacEntry, 1)},
};

}  // namespace

const std::vector<Operation>& MacOperations() {
  return kRows;
}

}  // namespace onu
