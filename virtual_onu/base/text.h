/// @file
/// Numbers, byte sequences and addresses as people write them. A reader takes the whole text or
/// nothing.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/bytes.h"

namespace virtual_onu {

/// A decimal number of at most `max`.
std::optional<std::uint32_t> ParseDecimal(std::string_view text, std::uint32_t max = UINT32_MAX);

/// A hexadecimal number, with or without "0x" before it.
std::optional<std::uint32_t> ParseHexNumber(std::string_view text);

/// Pairs of hexadecimal digits in either case, without separators; an empty text is no bytes.
std::optional<Bytes> ParseHex(std::string_view text);

/// A MAC address: six pairs of hexadecimal digits joined by ':'.
std::optional<std::array<std::uint8_t, 6>> ParseMac(std::string_view text);

/// An IPv4 address (4 bytes, dotted decimal) or an IPv6 address (16 bytes, RFC 4291), in network
/// order.
std::optional<Bytes> ParseIp(std::string_view text);

/// An address of 4 or 16 bytes as people write it (IPv6 as in RFC 5952); bytes of any other length
/// as hexadecimal digits.
std::string FormatIp(ByteView address);

/// The number as "0x8100": at least four hexadecimal digits, lower case.
std::string HexNumber(std::uint32_t number);

}  // namespace virtual_onu
