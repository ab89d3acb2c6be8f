/// @file
/// The MII registers in words.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace virtual_onu {

/// "control", "status", ...; nothing for a register that the maker gave its meaning.
std::string_view RegisterName(std::uint32_t reg);

/// Names of the bits that are set, from the highest, as far as they have a name.
std::vector<std::string_view> RegisterBits(std::uint32_t reg, std::uint16_t value);

}  // namespace virtual_onu
