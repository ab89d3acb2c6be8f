/// @file
/// Network byte order and the Internet checksum.
#include "frame/wire_format.h"

namespace virtual_onu {
namespace {

std::uint32_t AddWords(std::uint32_t sum, ByteView bytes) {
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const std::uint32_t byte = bytes[i];
    sum += i % 2 == 0 ? byte << 8U : byte;
  }
  return sum;
}

}  // namespace

void AppendU8(Bytes& bytes, unsigned value) {
  bytes.push_back(static_cast<std::uint8_t>(value));
}

void AppendU16(Bytes& bytes, unsigned value) {
  AppendU8(bytes, value >> 8U);
  AppendU8(bytes, value);
}

void AppendU32(Bytes& bytes, std::uint32_t value) {
  AppendU16(bytes, value >> 16U);
  AppendU16(bytes, value);
}

void Append(Bytes& bytes, ByteView more) {
  bytes.insert(bytes.end(), more.begin(), more.end());
}

void SetChecksum(Bytes& bytes, std::size_t offset, ByteView pseudoHeader) {
  std::uint32_t sum = AddWords(AddWords(0, pseudoHeader), bytes);
  while (sum > 0xFFFFU) {
    sum = (sum & 0xFFFFU) + (sum >> 16U);
  }
  sum = ~sum;
  bytes.at(offset) = static_cast<std::uint8_t>(sum >> 8U);
  bytes.at(offset + 1) = static_cast<std::uint8_t>(sum);
}

}  // namespace virtual_onu
