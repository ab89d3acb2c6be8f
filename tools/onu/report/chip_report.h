/// @file
/// The chip's objects in the words of tables.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/bytes.h"
#include "device/chip_tables.h"
#include "device/records.h"

namespace onu {

template <typename Record>
virtual_onu::ByteView BytesOf(const Record& record) {
  return {reinterpret_cast<const std::uint8_t*>(&record), sizeof(record)};
}

/// A record's fields by name, each with its value in words.
class FieldTexts {
 public:
  FieldTexts(std::string_view record, virtual_onu::ByteView bytes);

  [[nodiscard]] std::string operator[](std::string_view name) const;

 private:
  std::vector<virtual_onu::DecodedField> fields_;
};

/// The classes of a direction in the order in which they are tried.
std::vector<const virtual_onu::IngressClass*> ClassesAsTried(
    const virtual_onu::DirectionTables& direction);

/// The key values that the flow's class compares, "dstMac=01:80:c2:00:00:00".
std::string KeysOf(const virtual_onu::IngressClass& ingressClass, const FieldTexts& flow);

}  // namespace onu
