/// @file
/// What the files of the port area share.
#ifndef BCM6838X_PORT_INTERNAL_H
#define BCM6838X_PORT_INTERNAL_H

#include <cstdint>

#include <brmgr_record.h>

namespace hal {

/// A media type that stands for none of the codes.
constexpr uint32_t kMediaTypeUnknown = 7;

/// The UNI port number that a port argument names.
constexpr uint32_t UniPort(uint32_t port) {
  return port & 0xFF;
}

/// The device port number of a UNI port.
constexpr uint32_t DevicePort(uint32_t uni) {
  return uni + 1;
}

extern "C" PortMirrorRecord g_mirror_cfg;  ///< built up by the mirroring operations

}  // namespace hal

#endif
