/// @file
/// Byte sequences as the rooms of the virtual unit pass them around, and numbers in network order.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace virtual_onu {

using Bytes = std::vector<std::uint8_t>;
using ByteView = std::span<const std::uint8_t>;

/// The bytes as lower-case hexadecimal digits, with `separator` between bytes when it is not 0.
std::string ToHex(ByteView bytes, char separator = 0);

/// Reads a big-endian number of 1 to 4 bytes.
std::uint32_t ReadBigEndian(ByteView bytes);

/// A short text that tells long byte sequences apart: their number and a checksum (FNV-1a, 64
/// bits), "492032 bytes, FNV-1a 6c62272e07bb0142".
std::string Digest(ByteView bytes);

/// A MAC address (6 bytes) in the usual notation, "01:80:c2:00:00:00".
std::string FormatMac(ByteView mac);

}  // namespace virtual_onu
