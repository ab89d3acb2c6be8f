/// @file
/// Translation of decoded records into JSON.
#include "report/record_report.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <vector>

#include "language/words.h"

namespace onu {

namespace {

using virtual_onu::DecodedField;
using virtual_onu::FieldFormat;

Json FieldToJson(const DecodedField& field) {
  const FieldFormat format = field.info->format;
  if (format == FieldFormat::Index && field.value == "none") {
    return nullptr;
  }
  const bool number = format == FieldFormat::Dec || format == FieldFormat::Index;
  const std::optional<std::uint32_t> value = number ? ParseNumber(field.value) : std::nullopt;
  return value ? Json(*value) : Json(field.value);
}

/// Tells whether the field is a number or an address that is zero. Indexes and directions say
/// something when they are zero.
bool IsPlainZero(const DecodedField& field) {
  const FieldFormat format = field.info->format;
  return field.zero && format != FieldFormat::Index && format != FieldFormat::Dir;
}

bool IsReserved(const DecodedField& field) {
  return field.info->format == FieldFormat::Reserved;
}

}  // namespace

Json FieldsToJson(const virtual_onu::RecordInfo& record, virtual_onu::ByteView bytes) {
  Json fields = Json::object();
  for (const DecodedField& field : virtual_onu::DecodeRecord(record, bytes)) {
    if (!IsReserved(field)) {
      fields[field.name] = FieldToJson(field);
    }
  }
  return fields;
}

std::string RecordToText(const virtual_onu::RecordInfo& record, virtual_onu::ByteView bytes) {
  constexpr std::ptrdiff_t kFewZeros = 3;
  const std::vector<DecodedField> fields = virtual_onu::DecodeRecord(record, bytes);
  const auto zeros = std::ranges::count_if(
      fields, [](const DecodedField& field) { return !IsReserved(field) && IsPlainZero(field); });
  std::string text = record.name;
  for (const DecodedField& field : fields) {
    const bool shown = zeros <= kFewZeros ? !IsReserved(field) : !IsPlainZero(field);
    if (shown || (IsReserved(field) && !field.zero)) {
      text += " " + field.name + "=" + field.value;
    }
  }
  return zeros <= kFewZeros ? text : text + ", others 0";
}

std::string ChangesToText(const virtual_onu::RecordInfo& record, virtual_onu::ByteView before,
                          virtual_onu::ByteView after) {
  const std::vector<DecodedField> old = virtual_onu::DecodeRecord(record, before);
  const std::vector<DecodedField> now = virtual_onu::DecodeRecord(record, after);
  std::string text = record.name;
  for (std::size_t i = 0; i < std::min(old.size(), now.size()); ++i) {
    if (old[i].value != now[i].value) {
      text += " " + now[i].info->name + "=" + now[i].value;
    }
  }
  return text;
}

std::string WireHex(std::uint32_t code, const virtual_onu::Bytes& bytes) {
  constexpr std::size_t kLongest = 4096;
  const virtual_onu::CommandInfo* command = virtual_onu::FindCommand(code);
  const bool known = command != nullptr && command->record != nullptr;
  const virtual_onu::Bytes wire = known ? virtual_onu::ToWire(*command->record, bytes) : bytes;
  return wire.size() > kLongest ? virtual_onu::Digest(wire) : virtual_onu::ToHex(wire);
}

}  // namespace onu
