/// @file
/// The MAC table of the bridge: static, dynamic, blocked and bound addresses, learning limit, aging
/// and clearing, and a walk over the entries. What holds for all operations is said in
/// bcm6838x_api.h.
///
/// The table lives in the driver and the chip; nothing of it is kept here. What becomes of a
/// command does not change an operation's result. Nothing of an entry is checked. The operations
/// may be called from any thread.
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

/// Adds a static entry. Logs nothing.
///
/// @par Sends
/// BRMGR_CMD_MAC_STATIC_ADD.
///
/// @param[in] entry the entry, 10 bytes readable
/// @return BCM6838X_OK, or BCM6838X_INVALID, without a command, when `entry` is null
BCM6838X_EXPORT uint32_t BCM6838X_AddMacStatic(const MacStaticEntry* entry);

/// Deletes a static entry. Logs nothing.
///
/// @par Sends
/// BRMGR_CMD_MAC_STATIC_DEL.
///
/// @param[in] entry the entry, 10 bytes readable
/// @return BCM6838X_OK, or BCM6838X_INVALID, without a command, when `entry` is null
BCM6838X_EXPORT uint32_t BCM6838X_DelMacStatic(const MacStaticEntry* entry);

/// Adds a dynamic entry. Logs nothing.
///
/// @par Sends
/// BRMGR_CMD_MAC_DYNAMIC_ADD.
///
/// @param[in] entry the entry, 16 bytes readable
/// @return BCM6838X_OK, or BCM6838X_INVALID, without a command, when `entry` is null
BCM6838X_EXPORT uint32_t BCM6838X_AddMacDynamic(const MacDynamicEntry* entry);

/// Deletes a dynamic entry. Logs nothing.
///
/// @par Sends
/// BRMGR_CMD_MAC_DYNAMIC_DEL.
///
/// @param[in] entry the entry, 16 bytes readable
/// @return BCM6838X_OK, or BCM6838X_INVALID, without a command, when `entry` is null
BCM6838X_EXPORT uint32_t BCM6838X_DelMacDynamic(const MacDynamicEntry* entry);

/// Blocks a MAC address on a port.
///
/// @par Sends
/// BRMGR_CMD_MAC_FILTER_ADD.
/// @par Logs
/// "%s(%d), port=%d, vid=%d, macAddr:%x:%x:%x:%x:%x:%x" before the command, with the port as given.
///
/// @param[in] port UNI port, from 1; the driver receives the low 8 bits
/// @param[in] vid VLAN identifier; only the low 16 bits count
/// @param[in] mac the address
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_AddMacFilter(uint32_t port, uint32_t vid, MacAddress mac);

/// Unblocks a MAC address on a port.
///
/// @par Sends
/// BRMGR_CMD_MAC_FILTER_DEL.
/// @par Logs
/// "%s(%d), port=%d, vid=%d, macAddr:%x:%x:%x:%x:%x:%x" before the command, with the port as given.
///
/// @param[in] port UNI port, from 1; the driver receives the low 8 bits
/// @param[in] vid VLAN identifier; only the low 16 bits count
/// @param[in] mac the address
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_DelMacFilter(uint32_t port, uint32_t vid, MacAddress mac);

/// Binds a MAC address to a port.
///
/// @par Sends
/// BRMGR_CMD_MAC_BIND_ADD.
/// @par Logs
/// "%s(%d), port=%d, vid=%d, macAddr:%x:%x:%x:%x:%x:%x" before the command, with the port as given.
///
/// @param[in] port UNI port, from 1; the driver receives the low 8 bits
/// @param[in] vid VLAN identifier; only the low 16 bits count
/// @param[in] mac the address
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_AddMacBind(uint32_t port, uint32_t vid, MacAddress mac);

/// Removes a MAC address binding.
///
/// @par Sends
/// BRMGR_CMD_MAC_BIND_DEL.
/// @par Logs
/// "%s(%d), port=%d, vid=%d, macAddr:%x:%x:%x:%x:%x:%x" before the command, with the port as given.
///
/// @param[in] port UNI port, from 1; the driver receives the low 8 bits
/// @param[in] vid VLAN identifier; only the low 16 bits count
/// @param[in] mac the address
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_DelMacBind(uint32_t port, uint32_t vid, MacAddress mac);

/// Sets the learning limit of the whole switch.
///
/// @par Sends
/// BRMGR_CMD_MAC_LIMIT.
/// @par Logs
/// "%s(%d), limit=%d" before the command, with the limit as given.
///
/// @param[in] limit number of addresses; the driver receives the low 16 bits
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_SetMacLimitMacNum(uint32_t limit);

/// Sets the aging time of learned entries. With feature switch 27 at 1 the driver gets it;
/// otherwise no command is sent and the process that ages the table gets it as a message of one
/// 32-bit word (module 0xA440, code 0x443).
///
/// @par Sends
/// BRMGR_CMD_MAC_AGING, with feature switch 27 at 1.
/// @par Logs
/// "%s(%d), ageTime=%d" before either, with the low 16 bits.
///
/// @param[in] ageTime aging time; only the low 16 bits count
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_SetMacAgingTime(uint32_t ageTime);

/// Clears learned entries.
///
/// @par Sends
/// BRMGR_CMD_MAC_LEARN.
/// @par Logs
/// "%s(%d), clear=%d" before the command.
///
/// @param[in] clear passed on as it is
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_SetMacClear(uint32_t clear);

/// Reads the first entry of the MAC table. The outputs are what the record holds after the command,
/// whatever became of it: when none was read they are zero, unless a driver that refuses has
/// written into the record, which is then handed on. Logs nothing.
///
/// @par Sends
/// BRMGR_CMD_MAC_GET_NEXT, with a record of zeros.
///
/// @param[out] port UNI port of the entry
/// @param[out] vid VLAN identifier of the entry
/// @param[out] mac address of the entry; 6 bytes must be writable
/// @param[out] flag 0 when the driver gives the entry type 0, else 1
/// @return BCM6838X_OK, also when no entry was read; BCM6838X_INVALID, without a command, when any
///   pointer is null
BCM6838X_EXPORT uint32_t BCM6838X_GetFirstMacEntry(uint32_t* port, uint16_t* vid, uint8_t* mac,
                                                   uint8_t* flag);

/// Reads the entry of the MAC table that follows an address. No cursor is kept between calls, and
/// the end of the table is the caller's to recognise. The outputs are what the record holds after
/// the command, whatever became of it: when none was read `mac` is as it was and the others are
/// zero, unless a driver that refuses has written into the record, which is then handed on. Logs
/// nothing.
///
/// @par Sends
/// BRMGR_CMD_MAC_GET_NEXT, with the address and zeros.
///
/// @param[out] port UNI port of the entry
/// @param[out] vid VLAN identifier of the entry
/// @param[in,out] mac the address after which to look, then that of the entry; 6 bytes must be
///   readable and writable
/// @param[out] flag 0 when the driver gives the entry type 0, else 1
/// @return BCM6838X_OK, also when no entry was read; BCM6838X_INVALID, without a command, when any
///   pointer is null
BCM6838X_EXPORT uint32_t BCM6838X_GetNextMacEntry(uint32_t* port, uint16_t* vid, uint8_t* mac,
                                                  uint8_t* flag);

BCM6838X_END_DECLS

#endif
