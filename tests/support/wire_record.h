/// @file
/// Expected records, written down by offset and width as they stand on the target's wire. It shares
/// nothing with the library's structures, so that a wrong structure cannot hide.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "base/bytes.h"

namespace hal_test {

/// A record of `size` zero bytes, then the fields that are set; numbers are big-endian.
class WireRecord {
 public:
  explicit WireRecord(std::size_t size);

  WireRecord& u8(std::size_t offset, std::uint8_t value);
  WireRecord& u16(std::size_t offset, std::uint16_t value);
  WireRecord& u32(std::size_t offset, std::uint32_t value);
  WireRecord& bytes(std::size_t offset, virtual_onu::ByteView value);

  /// The record as it stands on the target.
  [[nodiscard]] const virtual_onu::Bytes& wire() const { return bytes_; }

  /// The record as hexadecimal digits.
  [[nodiscard]] std::string hex() const;

 private:
  virtual_onu::Bytes bytes_;
};

/// What Left() shows for a command: its name, length, flag and record as sent.
std::string Sent(const std::string& name, std::uint32_t flag, const WireRecord& record);

}  // namespace hal_test
