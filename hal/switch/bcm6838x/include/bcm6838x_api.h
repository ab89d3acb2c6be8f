/// @file
/// What the headers of all operations share: how an operation is exported, the result codes, and
/// what holds for every operation and is said here once:
///
/// - **Arguments.** Numbers are 32-bit words; an operation says which of their bits count, and
///   otherwise all do. What a pointer leads to is used during the call and not kept. What a null
///   pointer comes to is said at the operation.
/// - **Commands.** *Sends* names every command (BRMGR_CMD_*, brmgr_cmd.h) that an operation sends,
///   itself or by the operations that it calls; each goes through BCM6838X_Ioctl. While the device
///   is not open, none reaches the driver and each comes to BCM6838X_NOT_OPEN, without a line. One
///   that the driver refuses comes to BCM6838X_REFUSED, with the line of BCM6838X_Ioctl. Where an
///   operation does not say what becomes of either, its result is not looked at.
/// - **Lines.** *Logs* names the lines of the operation itself; those of the operations that it
///   calls, BCM6838X_Ioctl among them, come besides. A line is quoted as its format, without the
///   "\r\n" at its end. It has level 1 (LOG_LEVEL_TRACE) unless it says level 4
///   (LOG_LEVEL_INVALID). A "%s" and "%d" at its beginning are the operation's name and the source
///   line.
/// - **The null line** is "%s(%d), null pointer", level 4, and **the port line** is
///   "[%s %d] port %u is out of range", level 4. Many operations have them, which name them so.
/// - **Shell lines.** *Runs* quotes the shell lines, as their formats; their results are not looked
///   at unless the operation says so.
/// - **Threads.** Nothing is locked. The management layer calls the operations one at a time; the
///   headers name those that may run beside others.
#ifndef BCM6838X_API_H
#define BCM6838X_API_H

#include <stdint.h>

/// @def BCM6838X_BEGIN_DECLS
/// Begins declarations with C linkage.
/// @def BCM6838X_END_DECLS
/// Ends them.
#ifdef __cplusplus
#define BCM6838X_BEGIN_DECLS extern "C" {
#define BCM6838X_END_DECLS }
#else
#define BCM6838X_BEGIN_DECLS
#define BCM6838X_END_DECLS
#endif

/// Marks an operation that the shared object exports; everything else in it is hidden.
#define BCM6838X_EXPORT __attribute__((visibility("default")))

/// UNI ports for which the library keeps tables, whatever number the unit has.
#define BCM6838X_UNI_PORTS 32U

/// Result codes of the operations. Operations that return an index or the result of their last
/// command say so.
enum {
  BCM6838X_OK = 0,           ///< done
  BCM6838X_FAILED = 1,       ///< general failure: bad port, table full, device cannot be opened
  BCM6838X_INVALID = 2,      ///< invalid argument, unchanged value, or command code out of range
  BCM6838X_UNSUPPORTED = 3,  ///< unsupported scheduling scheme
  BCM6838X_REFUSED = 8,      ///< the driver refused a command
  BCM6838X_NOT_OPEN = 10,    ///< the device is not open
  BCM6838X_END = 12          ///< end of an iteration, or no performance marker
};

#endif
