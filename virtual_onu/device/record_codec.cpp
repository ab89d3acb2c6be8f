/// @file
/// Whole records: decoding, describing, byte order, setting of fields.
#include <algorithm>
#include <span>

#include "base/text.h"
#include "device/byte_order.h"
#include "device/record_text.h"
#include "device/records.h"

namespace virtual_onu {
namespace {

bool Covers(ByteView bytes, const FieldInfo& field) {
  return field.offset <= bytes.size() && field.size <= bytes.size() - field.offset;
}

/// What `bytes` holds of a field: all or nothing of a number or an address; of plain bytes, which
/// may end with the frame that they hold, as many as there are.
ByteView CoveredPart(ByteView bytes, const FieldInfo& field) {
  if (Covers(bytes, field)) {
    return bytes.subspan(field.offset, field.size);
  }
  return field.format == FieldFormat::Raw && field.offset < bytes.size()
             ? bytes.subspan(field.offset)
             : ByteView();
}

bool IsZero(ByteView bytes) {
  return std::ranges::all_of(bytes, [](std::uint8_t byte) { return byte == 0; });
}

/// "NAME[INDEX]." of a list's element.
std::string ElementName(const FieldInfo& list, const std::string& index) {
  return list.name + "[" + index + "].";
}

/// Calls `visit` with the index and the bytes of each element of a list that is in use.
template <typename Byte, typename Visit>
void ForEachUsed(const FieldInfo& list, std::span<Byte> bytes, Visit visit) {
  for (std::size_t i = 0; i < list.count(); ++i) {
    const std::span<Byte> element = bytes.subspan(i * list.width, list.width);
    if (!IsZero(element)) {
      visit(i, element);
    }
  }
}

/// Turns every number between the processor's byte order and the target's; the same both ways.
void SwapNumbers(const std::vector<FieldInfo>& fields, std::span<std::uint8_t> bytes) {
  for (const FieldInfo& field : fields) {
    if (!Covers(bytes, field)) {
      continue;
    }
    const std::span<std::uint8_t> value = bytes.subspan(field.offset, field.size);
    if (field.format == FieldFormat::List) {
      ForEachUsed(field, value, [&](std::size_t, std::span<std::uint8_t> element) {
        SwapNumbers(field.fields, element);
      });
      continue;
    }
    for (std::size_t i = 0; i < field.count(); ++i) {
      SwapNumber(value.subspan(i * field.width, field.width));
    }
  }
}

Bytes Swapped(const RecordInfo& record, ByteView bytes) {
  Bytes swapped(bytes.begin(), bytes.end());
  SwapNumbers(record.fields, swapped);
  return swapped;
}

void Decode(const std::vector<FieldInfo>& fields, ByteView bytes, const std::string& place,
            std::vector<DecodedField>& decoded) {
  for (const FieldInfo& field : fields) {
    const ByteView value = CoveredPart(bytes, field);
    if (value.empty()) {
      continue;
    }
    if (field.format == FieldFormat::List) {
      ForEachUsed(field, value, [&](std::size_t index, ByteView element) {
        Decode(field.fields, element, place + ElementName(field, std::to_string(index)), decoded);
      });
      continue;
    }
    decoded.push_back({&field, place + field.name, WriteField(field, value), IsZero(value)});
  }
}

void AppendNames(const std::vector<FieldInfo>& fields, const std::string& place,
                 std::vector<std::string>& names) {
  for (const FieldInfo& field : fields) {
    if (field.format == FieldFormat::List) {
      const std::string indexes = "0.." + std::to_string(field.count() - 1);
      AppendNames(field.fields, place + ElementName(field, indexes), names);
    } else if (field.format != FieldFormat::Reserved) {
      names.push_back(place + field.name);
    }
  }
}

std::string NamesOf(const RecordInfo& record) {
  std::string names;
  for (const std::string& name : FieldNames(record)) {
    names += (names.empty() ? "" : ", ") + name;
  }
  return names;
}

std::optional<FieldInfo> FindIn(const std::vector<FieldInfo>& fields, std::string_view name);

/// The field of a list's element that "NAME[INDEX].REST" means.
std::optional<FieldInfo> FindInList(const FieldInfo& list, std::string_view name) {
  const std::size_t dot = name.find("].");
  if (!name.starts_with(list.name + "[") || dot == std::string_view::npos) {
    return {};
  }
  const std::size_t first = list.name.size() + 1;
  const std::optional<std::uint32_t> index = ParseDecimal(name.substr(first, dot - first));
  if (!index || *index >= list.count()) {
    return {};
  }
  std::optional<FieldInfo> found = FindIn(list.fields, name.substr(dot + 2));
  if (found) {
    found->name = name;
    found->offset += list.offset + *index * list.width;
  }
  return found;
}

std::optional<FieldInfo> FindIn(const std::vector<FieldInfo>& fields, std::string_view name) {
  for (const FieldInfo& field : fields) {
    if (field.format == FieldFormat::List) {
      if (std::optional<FieldInfo> found = FindInList(field, name)) {
        return found;
      }
    } else if (field.name == name) {
      return field;
    }
  }
  return {};
}

}  // namespace

std::optional<FieldInfo> FindField(const RecordInfo& record, std::string_view name) {
  return FindIn(record.fields, name);
}

std::vector<std::string> FieldNames(const RecordInfo& record) {
  std::vector<std::string> names;
  AppendNames(record.fields, "", names);
  return names;
}

std::vector<DecodedField> DecodeRecord(const RecordInfo& record, ByteView bytes) {
  std::vector<DecodedField> decoded;
  Decode(record.fields, bytes, "", decoded);
  return decoded;
}

std::string DescribeRecord(const RecordInfo& record, ByteView bytes) {
  std::string line;
  for (const DecodedField& field : DecodeRecord(record, bytes)) {
    if (field.info->format != FieldFormat::Reserved || !field.zero) {
      line += (line.empty() ? "" : " ") + field.name + "=" + field.value;
    }
  }
  return line;
}

Bytes ToWire(const RecordInfo& record, ByteView bytes) {
  return Swapped(record, bytes);
}

Bytes FromWire(const RecordInfo& record, ByteView bytes) {
  return Swapped(record, bytes);
}

std::optional<std::string> SetField(const RecordInfo& record, std::string_view field,
                                    std::string_view value, Bytes& bytes) {
  const std::optional<FieldInfo> info = FindField(record, field);
  if (!info) {
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
