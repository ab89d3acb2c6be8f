/// @file
/// The event records with which the driver hands trapped frames to the library.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include <brmgr_record.h>

#include "base/bytes.h"

namespace virtual_onu {

/// Event of a frame of no protocol that the library serves: it reads the event and passes it over.
constexpr std::uint32_t kHostEvent = 0;

/// Where the frame begins in the data field of an event of that type: at its start, or two bytes
/// behind it.
std::size_t EventFrameOffset(std::uint32_t type);

/// The longest frame that an event of that type holds.
std::size_t EventFrameCapacity(std::uint32_t type);

/// "BPDU", "DHCP", ...; "event 9" for a type without a name.
std::string EventName(std::uint32_t type);

/// The event of a frame, in the processor's byte order. Of a frame that is too long it holds the
/// beginning, and tells its whole length.
/// @param[in] port  UNI port; 0 for none
/// @param[in] flow  identifier of the frame's ingress flow
BrmgrEvent MakeEvent(std::uint32_t type, std::uint32_t port, std::uint32_t flow, ByteView frame);

}  // namespace virtual_onu
