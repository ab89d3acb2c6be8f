/// @file
/// Administrative state, links, isolation and mirroring of the ports.
#include "datapath/ports.h"

#include <utility>

namespace virtual_onu {
namespace {

/// Directions of the mirroring record, seen from the mirrored port.
constexpr std::uint32_t kMirrorTransmitted = 0;
constexpr std::uint32_t kMirrorReceived = 1;
constexpr std::uint32_t kMirrorBoth = 2;

}  // namespace

Ports::Ports(const PortTables& tables, std::uint32_t uniPorts,
             std::function<bool(std::uint32_t uni)> passesFrames)
    : tables_(tables), uniPorts_(uniPorts), passesFrames_(std::move(passesFrames)) {}

bool Ports::isAdminDown(PortId port) const {
  return !port.isWan() && !tables_.of(port.uni).adminUp;
}

bool Ports::isLinkDown(PortId port) const {
  return !port.isWan() && !passesFrames_(port.uni);
}

std::optional<Outcome> Ports::entryBlock(PortId port) const {
  if (port.uni > uniPorts_) {
    return Outcome::UnknownPort;
  }
  if (isAdminDown(port)) {
    return Outcome::PortAdminDown;
  }
  return isLinkDown(port) ? std::optional(Outcome::PortLinkDown) : std::nullopt;
}

std::optional<Outcome> Ports::exitBlock(PortId from, PortId to) const {
  if (!from.isWan() && !to.isWan() && tables_.areIsolated(from.uni, to.uni)) {
    return Outcome::EgressIsolated;
  }
  if (isAdminDown(to)) {
    return Outcome::EgressAdminDown;
  }
  return isLinkDown(to) ? std::optional(Outcome::EgressLinkDown) : std::nullopt;
}

std::optional<PortId> Ports::mirrorPort() const {
  const PortMirrorRecord& mirror = tables_.mirror;
  return mirror.enable == 0 ? std::nullopt
                            : std::optional(PortId::Uni(mirror.destinationPort - DevicePortOf(0)));
}

std::optional<PortId> Ports::mirrorOf(PortId port, bool received) const {
  const std::uint32_t direction = tables_.mirror.direction;
  const std::uint32_t oneWay = received ? kMirrorReceived : kMirrorTransmitted;
  const std::optional<PortId> destination = mirrorPort();
  const bool mirrored =
      !port.isWan() && port != destination && (direction == oneWay || direction == kMirrorBoth);
  return mirrored ? destination : std::nullopt;
}

}  // namespace virtual_onu
