/// @file
/// Whole records: decoding, describing, byte order, setting of fields.
#include <algorithm>
#include <span>

#include "device/byte_order.h"
#include "device/record_text.h"
#include "device/records.h"

namespace virtual_onu {
namespace {

bool Covers(ByteView bytes, const FieldInfo& field) {
  return field.offset <= bytes.size() && field.size <= bytes.size() - field.offset;
}

/// Turns every number between the processor's byte order and the target's; the same both ways.
Bytes SwapNumbers(const RecordInfo& record, ByteView bytes) {
  Bytes swapped(bytes.begin(), bytes.end());
  for (const FieldInfo& field : record.fields) {
    for (std::size_t i = 0; Covers(bytes, field) && i < field.size; i += field.width) {
      SwapNumber(std::span(swapped).subspan(field.offset + i, field.width));
    }
  }
  return swapped;
}

std::string NamesOf(const RecordInfo& record) {
  std::string names;
  for (const FieldInfo& field : record.fields) {
    if (field.format != FieldFormat::Reserved) {
      names += (names.empty() ? "" : ", ") + field.name;
    }
  }
  return names;
}

}  // namespace

std::vector<DecodedField> DecodeRecord(const RecordInfo& record, ByteView bytes) {
  std::vector<DecodedField> decoded;
  for (const FieldInfo& field : record.fields) {
    if (Covers(bytes, field)) {
      const ByteView value = bytes.subspan(field.offset, field.size);
      const bool zero = std::ranges::all_of(value, [](std::uint8_t byte) { return byte == 0; });
      decoded.push_back({&field, WriteField(field, value), zero});
    }
  }
  return decoded;
}

std::string DescribeRecord(const RecordInfo& record, ByteView bytes) {
  std::string line;
  for (const DecodedField& field : DecodeRecord(record, bytes)) {
    if (field.info->format != FieldFormat::Reserved || !field.zero) {
      line += (line.empty() ? "" : " ") + field.info->name + "=" + field.value;
    }
  }
  return line;
}

Bytes ToWire(const RecordInfo& record, ByteView bytes) {
  return SwapNumbers(record, bytes);
}

Bytes FromWire(const RecordInfo& record, ByteView bytes) {
  return SwapNumbers(record, bytes);
}

std::optional<std::string> SetField(const RecordInfo& record, std::string_view field,
                                    std::string_view value, Bytes& bytes) {
  const auto info = std::ranges::find(record.fields, field, &FieldInfo::name);
  if (info == record.fields.end()) {
    return record.name + " has no field \"" + std::string(field) + "\"; it has " + NamesOf(record);
  }
  const std::string name = record.name + "." + info->name;
  if (!Covers(bytes, *info)) {
    return name + " ends at byte " + std::to_string(info->offset + info->size) +
           ", but the record given has " + std::to_string(bytes.size());
  }
  if (!ReadField(*info, value, std::span(bytes).subspan(info->offset, info->size))) {
    return name + ": expected " + ExpectedText(*info) + ", got \"" + std::string(value) + "\"";
  }
  return {};
}

}  // namespace virtual_onu
