/// @file
/// The walk over the entries of the MAC table: the driver finds the entry that follows an address.
#include <cstdint>
#include <cstring>

#include <bcm6838x_mac.h>
#include <brmgr_cmd.h>
#include <brmgr_record.h>

#include "hal_bcm6838x_channel.h"
#include "hal_bcm6838x_log.h"

using namespace hal;

namespace {

/// Where a reader puts what it has read.
struct EntryOutput {
  uint32_t* port;
  uint16_t* vid;
  uint8_t* mac;
  uint8_t* flag;
};

bool IsComplete(const EntryOutput& output) {
  return !IsAnyNull(output.port, output.vid, output.mac, output.flag);
}

/// Sends the record, which holds the address after which to look, and copies out what it then
/// holds, also when the driver refused: the end of the table is the caller's to recognise.
void ReadEntry(MacEntryRecord& record, const EntryOutput& output) {
  // Required: mac-walk-ignores-refusal
  Send<BRMGR_CMD_MAC_GET_NEXT>(record);
  *output.port = record.port;
  *output.vid = record.vid;
  memcpy(output.mac, record.mac, sizeof(record.mac));
  *output.flag = record.entryType != 0 ? 1 : 0;
}

}  // namespace

// The entry is written through these pointers, by way of EntryOutput.
// NOLINTBEGIN(readability-non-const-parameter)
uint32_t BCM6838X_GetFirstMacEntry(uint32_t* port, uint16_t* vid, uint8_t* mac, uint8_t* flag) {
  const EntryOutput output = {port, vid, mac, flag};
  if (!IsComplete(output)) {
    return BCM6838X_INVALID;
  }
  MacEntryRecord record = {};
  ReadEntry(record, output);
  return BCM6838X_OK;
}

uint32_t BCM6838X_GetNextMacEntry(uint32_t* port, uint16_t* vid, uint8_t* mac, uint8_t* flag) {
  const EntryOutput output = {port, vid, mac, flag};
  if (!IsComplete(output)) {
    return BCM6838X_INVALID;
  }
  MacEntryRecord record = {};
  // Required: mac-walk-asks-by-address
  memcpy(record.mac, mac, sizeof(record.mac));
  ReadEntry(record, output);
  return BCM6838X_OK;
}
// NOLINTEND(readability-non-const-parameter)
