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

std::string Digest(ByteView bytes) {
  std::uint64_t sum = 0xCBF29CE484222325;
  for (const std::uint8_t byte : bytes) {
    sum = (sum ^ byte) * 0x100000001B3;
  }
  Bytes digits(sizeof(sum));
  for (std::size_t i = digits.size(); i-- > 0; sum >>= 8U) {
    digits[i] = static_cast<std::uint8_t>(sum);
  }
  return std::to_string(bytes.size()) + " bytes, FNV-1a " + ToHex(digits);
}

std::string FormatMac(ByteView mac) {
  return ToHex(mac, ':');
}

}  // namespace virtual_onu
