/// @file
/// Building of expected records.
#include "support/wire_record.h"

#include "support/left.h"

namespace hal_test {

WireRecord::WireRecord(std::size_t size) : bytes_(size) {}

WireRecord& WireRecord::u8(std::size_t offset, std::uint8_t value) {
  bytes_.at(offset) = value;
  return *this;
}

WireRecord& WireRecord::u16(std::size_t offset, std::uint16_t value) {
  return u8(offset, static_cast<std::uint8_t>(value >> 8U))
      .u8(offset + 1, static_cast<std::uint8_t>(value));
}

WireRecord& WireRecord::u32(std::size_t offset, std::uint32_t value) {
  return u16(offset, static_cast<std::uint16_t>(value >> 16U))
      .u16(offset + 2, static_cast<std::uint16_t>(value));
}

WireRecord& WireRecord::bytes(std::size_t offset, virtual_onu::ByteView value) {
  for (const std::uint8_t byte : value) {
    u8(offset++, byte);
  }
  return *this;
}

std::string WireRecord::hex() const {
  return virtual_onu::ToHex(bytes_);
}

std::string Sent(const std::string& name, std::uint32_t flag, const WireRecord& record) {
  const std::string command = "BRMGR_CMD_" + name;
  return "command " + command + " len " + std::to_string(record.wire().size()) + " flag " +
         std::to_string(flag) + " " + ShowRecord(command, record.wire());
}

}  // namespace hal_test
