/// @file
/// What the headers of all operations share: how an operation is exported and the result codes.
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
