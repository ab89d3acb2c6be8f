/// @file
/// What the files of the port area share.
#ifndef BCM6838X_PORT_INTERNAL_H
#define BCM6838X_PORT_INTERNAL_H

#include <cstdint>

#include <brmgr_record.h>

namespace hal {

/// A media type that stands for none of the codes.
constexpr uint32_t kMediaTypeUnknown = 7;

extern "C" PortMirrorRecord g_mirror_cfg;  ///< built up by the mirroring operations

}  // namespace hal

#endif
