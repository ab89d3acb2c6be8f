/// @file
/// Names of the places where frames enter and leave the unit: "uni1", "uni2", ... and "wan".
#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace virtual_onu {

/// The most UNI ports that a unit has.
constexpr std::uint32_t kMaxUniPorts = 32;

/// A UNI port by its number from 1, or the WAN side.
struct PortId {
  std::uint32_t uni = 0;  ///< 0 is the WAN side

  static constexpr PortId Wan() { return {0}; }
  static constexpr PortId Uni(std::uint32_t number) { return {number}; }

  [[nodiscard]] bool isWan() const { return uni == 0; }
  [[nodiscard]] std::string name() const;
  bool operator==(const PortId&) const = default;
  std::strong_ordering operator<=>(const PortId& other) const { return uni <=> other.uni; }
};

/// Reads "uniN" (1..32) or "wan"; nothing when it is neither.
std::optional<PortId> ParsePort(std::string_view text);

}  // namespace virtual_onu
