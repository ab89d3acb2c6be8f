/// @file
/// The lines of the Ethernet tool "ethctl": PHY registers and media types.
#include "shell/ethctl_lines.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>

#include "base/text.h"

namespace virtual_onu {
namespace {

using Arguments = std::span<const Argument>;

/// The PHY of an interface, or null.
Phy* FindPhy(const Workplace& place, std::string_view interface) {
  const auto uni = place.board.interfaces.find(interface);
  return uni ? &place.board.interfaces.phy(*uni) : nullptr;
}

std::string NoInterface(std::string_view interface) {
  return "no interface " + std::string(interface);
}

std::string WriteRegister(const Workplace& place, Arguments arguments) {
  Phy* const phy = FindPhy(place, arguments[0].text);
  if (phy == nullptr) {
    return NoInterface(arguments[0].text);
  }
  const std::uint32_t reg = arguments[1].number;
  const std::uint32_t value = arguments[2].number;
  if (reg >= kMiiRegisters) {
    return OutOfRange("register " + std::to_string(reg), 0, kMiiRegisters - 1);
  }
  if (value > std::numeric_limits<std::uint16_t>::max()) {
    return "value " + HexNumber(value) + " is wider than a register, which has 16 bits";
  }
  phy->write(reg, static_cast<std::uint16_t>(value));
  return {};
}

/// What the Ethernet tool writes to the control register for a media type: the whole register, so
/// that it powers the PHY up too.
struct MediaType {
  std::string_view name;
  std::uint16_t control;
};

constexpr std::array kMediaTypes = {
    MediaType{"10HD", 0},
    MediaType{"100HD", kControlSpeedLow},
    MediaType{"10FD", kControlFullDuplex},
    MediaType{"100FD", kControlSpeedLow | kControlFullDuplex},
    MediaType{"auto", kControlNegotiate | kControlRestart | kControlSpeedHigh | kControlFullDuplex},
};

std::string SetMediaType(const Workplace& place, Arguments arguments) {
  Phy* const phy = FindPhy(place, arguments[0].text);
  if (phy == nullptr) {
    return NoInterface(arguments[0].text);
  }
  const auto* const type = std::ranges::find(kMediaTypes, arguments[1].text, &MediaType::name);
  if (type == kMediaTypes.end()) {
    return "no media type " + std::string(arguments[1].text) +
           ", expected 10HD, 100HD, 10FD, 100FD or auto";
  }
  phy->write(kMiiControl, type->control);
  return {};
}

constexpr std::array kLines = {
    LineRow{"ethctl $word reg $number $hex", WriteRegister},
    LineRow{"ethctl $word media-type $word", SetMediaType},
};

}  // namespace

std::span<const LineRow> EthctlLines() {
  return kLines;
}

}  // namespace virtual_onu
