/// @file
/// What the library keeps of the QoS rules of a port. Links only with the library's archive.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace virtual_onu {

/// The objects that the library made for a rule; nothing where it has none.
struct KnownQosRule {
  std::uint32_t precedence = 0;
  std::optional<std::uint32_t> icIndex;
  std::optional<std::uint32_t> flowIndex;
  std::optional<std::uint32_t> vlanActionIndex;
};

/// The rules of a UNI port that have an object, by precedence; none for a port that the library
/// keeps no rules for, and none before its start-up.
std::vector<KnownQosRule> ReadQosRules(std::uint32_t uni);

}  // namespace virtual_onu
