/// @file
/// Learning of source addresses.
#include "datapath/stations.h"

#include "datapath/frame.h"

namespace virtual_onu {
namespace {

constexpr std::uint8_t kGroupBit = 0x01;

/// The address that begins at an offset of the frame.
Bytes AddressAt(ByteView frame, std::size_t offset) {
  const ByteView address = frame.subspan(offset, kMacSize);
  return {address.begin(), address.end()};
}

}  // namespace

void Stations::learn(PortId port, ByteView frame) {
  Bytes source = AddressAt(frame, kMacSize);
  if ((source.front() & kGroupBit) == 0) {
    ports_.insert_or_assign(std::move(source), port);
  }
}

std::optional<PortId> Stations::neighbourOf(PortId port, ByteView frame) const {
  const auto found = ports_.find(AddressAt(frame, 0));
  const bool elsewhere = !port.isWan() && found != ports_.end() && found->second != port;
  return elsewhere ? std::optional(found->second) : std::nullopt;
}

}  // namespace virtual_onu
