/// @file
/// Records of the device as JSON.
#pragma once

#include <cstdint>
#include <string>

#include "base/bytes.h"
#include "device/records.h"
#include "report/json.h"

namespace onu {

/// The fields of a record by name, reserved ones left out: numbers as numbers, an index that names
/// nothing as null, everything else as the decoder writes it.
Json FieldsToJson(const virtual_onu::RecordInfo& record, virtual_onu::ByteView bytes);

/// "NAME field=value ...": zeros are summed up where there are many.
std::string RecordToText(const virtual_onu::RecordInfo& record, virtual_onu::ByteView bytes);

/// "NAME field=value ..." with the fields that differ between the two.
std::string ChangesToText(const virtual_onu::RecordInfo& record, virtual_onu::ByteView before,
                          virtual_onu::ByteView after);

/// The bytes of a command's record as they stand on the target, in hexadecimal; of more than 4096
/// bytes their digest.
std::string WireHex(std::uint32_t code, const virtual_onu::Bytes& bytes);

}  // namespace onu
