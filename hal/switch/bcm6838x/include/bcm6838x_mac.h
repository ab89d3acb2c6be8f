/// @file
/// The MAC table of the bridge: static, dynamic, blocked and bound addresses, learning limit, aging
/// and clearing, and a walk over the entries.
///
/// The table lives in the driver and the chip; nothing of it is kept here. What the driver refuses
/// is logged by the command channel and does not change an operation's result. The operations may
/// be called from any thread.
#ifndef BCM6838X_MAC_H
#define BCM6838X_MAC_H

#include <stddef.h>
#include <stdint.h>

#include "bcm6838x_api.h"
#include "brmgr_record.h"

BCM6838X_BEGIN_DECLS

/// A MAC address, passed by value.
typedef struct MacAddress {
  uint8_t octet[6];  ///< in network order
} MacAddress;

/// A static entry of the MAC table.
typedef struct MacStaticEntry {
  uint16_t vid;    ///< VLAN identifier
  uint8_t mac[6];  ///< in network order
  uint8_t port;    ///< UNI port, from 1
} MacStaticEntry;

/// A dynamic entry of the MAC table.
typedef struct MacDynamicEntry {
  uint16_t vid;     ///< VLAN identifier
  uint8_t mac[6];   ///< in network order
  uint32_t unused;  ///< not read
  uint32_t port;    ///< UNI port, from 1
} MacDynamicEntry;

/// @cond
BRMGR_STATIC_ASSERT(sizeof(MacAddress) == 6, "MacAddress has another size");
BRMGR_STATIC_ASSERT(sizeof(MacStaticEntry) == 10, "MacStaticEntry has another size");
BRMGR_STATIC_ASSERT(offsetof(MacStaticEntry, mac) == 2, "MacStaticEntry.mac is misplaced");
BRMGR_STATIC_ASSERT(offsetof(MacStaticEntry, port) == 8, "MacStaticEntry.port is misplaced");
BRMGR_STATIC_ASSERT(sizeof(MacDynamicEntry) == 16, "MacDynamicEntry has another size");
BRMGR_STATIC_ASSERT(offsetof(MacDynamicEntry, mac) == 2, "MacDynamicEntry.mac is misplaced");
BRMGR_STATIC_ASSERT(offsetof(MacDynamicEntry, port) == 12, "MacDynamicEntry.port is misplaced");
/// @endcond

/// Adds a static entry (BRMGR_CMD_MAC_STATIC_ADD).
///
/// @param[in] entry the entry; not kept
/// @return BCM6838X_OK, or BCM6838X_INVALID, without a command or a log line, when `entry` is null
BCM6838X_EXPORT uint32_t BCM6838X_AddMacStatic(const MacStaticEntry* entry);

/// Deletes a static entry (BRMGR_CMD_MAC_STATIC_DEL).
///
/// @param[in] entry the entry; not kept
/// @return BCM6838X_OK, or BCM6838X_INVALID, without a command or a log line, when `entry` is null
BCM6838X_EXPORT uint32_t BCM6838X_DelMacStatic(const MacStaticEntry* entry);

/// Adds a dynamic entry (BRMGR_CMD_MAC_DYNAMIC_ADD).
///
/// @param[in] entry the entry; not kept
/// @return BCM6838X_OK, or BCM6838X_INVALID, without a command or a log line, when `entry` is null
BCM6838X_EXPORT uint32_t BCM6838X_AddMacDynamic(const MacDynamicEntry* entry);

/// Deletes a dynamic entry (BRMGR_CMD_MAC_DYNAMIC_DEL).
///
/// @param[in] entry the entry; not kept
/// @return BCM6838X_OK, or BCM6838X_INVALID, without a command or a log line, when `entry` is null
BCM6838X_EXPORT uint32_t BCM6838X_DelMacDynamic(const MacDynamicEntry* entry);

/// Blocks a MAC address on a port (BRMGR_CMD_MAC_FILTER_ADD); logs the port as given, the VID and
/// the address.
///
/// @param[in] port UNI port, from 1; the driver receives the low 8 bits
/// @param[in] vid VLAN identifier; only the low 16 bits count
/// @param[in] mac the address
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_AddMacFilter(uint32_t port, uint32_t vid, MacAddress mac);

/// Unblocks a MAC address on a port (BRMGR_CMD_MAC_FILTER_DEL); logs the port as given, the VID and
/// the address.
///
/// @param[in] port UNI port, from 1; the driver receives the low 8 bits
/// @param[in] vid VLAN identifier; only the low 16 bits count
/// @param[in] mac the address
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_DelMacFilter(uint32_t port, uint32_t vid, MacAddress mac);

/// Binds a MAC address to a port (BRMGR_CMD_MAC_BIND_ADD); logs the port as given, the VID and
/// the address.
///
/// @param[in] port UNI port, from 1; the driver receives the low 8 bits
/// @param[in] vid VLAN identifier; only the low 16 bits count
/// @param[in] mac the address
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_AddMacBind(uint32_t port, uint32_t vid, MacAddress mac);

/// Removes a MAC address binding (BRMGR_CMD_MAC_BIND_DEL); logs the port as given, the VID and
/// the address.
///
/// @param[in] port UNI port, from 1; the driver receives the low 8 bits
/// @param[in] vid VLAN identifier; only the low 16 bits count
/// @param[in] mac the address
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_DelMacBind(uint32_t port, uint32_t vid, MacAddress mac);

/// Sets the learning limit of the whole switch (BRMGR_CMD_MAC_LIMIT); logs the value as given.
///
/// @param[in] limit number of addresses; the driver receives the low 16 bits
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_SetMacLimitMacNum(uint32_t limit);

/// Sets the aging time of learned entries; logs the value. With feature switch 27 at 1 the driver
/// gets it (BRMGR_CMD_MAC_AGING); otherwise no command is sent and the process that ages the table
/// gets it as a message of one 32-bit word (module 0xA440, code 0x443).
///
/// @param[in] ageTime aging time; only the low 16 bits count
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_SetMacAgingTime(uint32_t ageTime);

/// Clears learned entries (BRMGR_CMD_MAC_LEARN); logs the value.
///
/// @param[in] clear passed on as it is
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_SetMacClear(uint32_t clear);

/// Reads the first entry of the MAC table (BRMGR_CMD_MAC_GET_NEXT). When none was read, all four
/// outputs are zero.
///
/// @param[out] port UNI port of the entry
/// @param[out] vid VLAN identifier of the entry
/// @param[out] mac address of the entry; 6 bytes must be writable
/// @param[out] flag 0 when the driver gives the entry type 0, else 1
/// @return BCM6838X_OK, also when no entry was read; BCM6838X_INVALID, without a command or a log
///   line, when any pointer is null
BCM6838X_EXPORT uint32_t BCM6838X_GetFirstMacEntry(uint32_t* port, uint16_t* vid, uint8_t* mac,
                                                   uint8_t* flag);

/// Reads the entry of the MAC table that follows an address (BRMGR_CMD_MAC_GET_NEXT). No cursor is
/// kept between calls. When none was read, `mac` is as it was and the other outputs are zero.
///
/// @param[out] port UNI port of the entry
/// @param[out] vid VLAN identifier of the entry
/// @param[in,out] mac the address after which to look, then that of the entry; 6 bytes must be
///   readable and writable
/// @param[out] flag 0 when the driver gives the entry type 0, else 1
/// @return BCM6838X_OK, also when no entry was read; BCM6838X_INVALID, without a command or a log
///   line, when any pointer is null
BCM6838X_EXPORT uint32_t BCM6838X_GetNextMacEntry(uint32_t* port, uint16_t* vid, uint8_t* mac,
                                                  uint8_t* flag);

BCM6838X_END_DECLS

#endif
