/// @file
/// Formatting and reading of byte sequences.
#include "base/bytes.h"

#include <array>

namespace virtual_onu {

std::string ToHex(ByteView bytes, char separator) {
  constexpr std::array<char, 17> kDigits = {"0123456789abcdef"};
  std::string text;
  for (const std::uint8_t byte : bytes) {
    if (separator != 0 && !text.empty()) {
      text += separator;
    }
    text += kDigits.at(byte >> 4U);
    text += kDigits.at(byte & 0xFU);
  }
  return text;
}

std::uint32_t ReadBigEndian(ByteView bytes) {
  std::uint32_t value = 0;
  for (const std::uint8_t byte : bytes) {
    value = (value << 8U) | byte;
  }
  return value;
}

std::string FormatMac(ByteView mac) {
  return ToHex(mac, ':');
}

}  // namespace virtual_onu
