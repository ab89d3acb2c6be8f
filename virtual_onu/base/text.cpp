/// @file
/// Readers and writers of numbers, byte sequences and addresses.
#include "base/text.h"

#include <algorithm>
#include <arpa/inet.h>
#include <charconv>
#include <cinttypes>
#include <cstdio>
#include <system_error>

namespace virtual_onu {
namespace {

template <typename Number>
std::optional<Number> ParseNumber(std::string_view text, int base) {
  Number number = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number, base);
  if (error != std::errc() || stop != end) {
    return std::nullopt;
  }
  return number;
}

}  // namespace

std::optional<std::uint32_t> ParseDecimal(std::string_view text, std::uint32_t max) {
  const std::optional<std::uint32_t> number = ParseNumber<std::uint32_t>(text, 10);
  return number && *number <= max ? number : std::nullopt;
}

std::optional<std::uint32_t> ParseHexNumber(std::string_view text) {
  constexpr std::string_view kPrefix = "0x";
  if (text.starts_with(kPrefix)) {
    text.remove_prefix(kPrefix.size());
  }
  return ParseNumber<std::uint32_t>(text, 16);
}

std::optional<Bytes> ParseHex(std::string_view text) {
  if (text.size() % 2 != 0) {
    return std::nullopt;
  }
  Bytes bytes;
  for (; !text.empty(); text.remove_prefix(2)) {
    const std::optional<std::uint8_t> byte = ParseNumber<std::uint8_t>(text.substr(0, 2), 16);
    if (!byte) {
      return std::nullopt;
    }
    bytes.push_back(*byte);
  }
  return bytes;
}

std::optional<std::array<std::uint8_t, 6>> ParseMac(std::string_view text) {
  constexpr std::size_t kTextLength = 17;
  std::array<std::uint8_t, 6> mac = {};
  if (text.size() != kTextLength) {
    return std::nullopt;
  }
  for (std::size_t i = 0; i < mac.size(); ++i) {
    const std::optional<std::uint8_t> byte = ParseNumber<std::uint8_t>(text.substr(3 * i, 2), 16);
    if (!byte || (i > 0 && text[3 * i - 1] != ':')) {
      return std::nullopt;
    }
    mac.at(i) = *byte;
  }
  return mac;
}

std::optional<Bytes> ParseIp(std::string_view text) {
  const bool six = text.find(':') != std::string_view::npos;
  Bytes address(six ? sizeof(in6_addr) : sizeof(in_addr));
  // inet_pton() takes a C string, which would end at a zero character inside the text.
  if (text.find('\0') != std::string_view::npos ||
      inet_pton(six ? AF_INET6 : AF_INET, std::string(text).c_str(), address.data()) != 1) {
    return std::nullopt;
  }
  return address;
}

std::string FormatIp(ByteView address) {
  std::array<char, INET6_ADDRSTRLEN> text = {};
  const bool six = address.size() == sizeof(in6_addr);
  if ((!six && address.size() != sizeof(in_addr)) ||
      inet_ntop(six ? AF_INET6 : AF_INET, address.data(), text.data(), text.size()) == nullptr) {
    return ToHex(address);
  }
  return text.data();
}

std::string HexNumber(std::uint32_t number) {
  std::array<char, sizeof("0xffffffff")> text = {};
  const int length = std::snprintf(text.data(), text.size(), "0x%04" PRIx32, number);
  return {text.data(), static_cast<std::size_t>(length)};
}

}  // namespace virtual_onu
