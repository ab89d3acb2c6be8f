/// @file
/// The UNI ports at which source addresses were seen: what the local switching between UNI ports
/// knows.
#pragma once

#include <map>
#include <optional>

#include "base/bytes.h"
#include "datapath/port.h"

namespace virtual_onu {

/// An address stays where it was seen last until it is seen elsewhere. The frames given have whole
/// Ethernet headers.
class Stations {
 public:
  /// Notes the source of a frame that came to a UNI port; a group address is no source.
  void learn(PortId port, ByteView frame);

  /// Where the destination of a frame was seen, when that is another UNI port than the frame's.
  [[nodiscard]] std::optional<PortId> neighbourOf(PortId port, ByteView frame) const;

 private:
  std::map<Bytes, PortId> ports_;  ///< by address
};

}  // namespace virtual_onu
