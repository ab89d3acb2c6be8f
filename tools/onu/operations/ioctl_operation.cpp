/// @file
/// Building of command records from words.
#include "operations/ioctl_operation.h"

#include <algorithm>
#include <cstdint>
#include <string>

#include <brmgr_cmd.h>
#include <hal_bcm6838x.h>

#include "base/text.h"
#include "device/records.h"
#include "language/failure.h"
#include "report/record_report.h"

namespace onu {

namespace {

using virtual_onu::Bytes;
using virtual_onu::CommandInfo;
using virtual_onu::FieldFormat;
using virtual_onu::FieldInfo;
using virtual_onu::RecordInfo;

/// Longer than any record; a length beyond it is a slip of the pen.
constexpr std::uint32_t kMaxLength = 1024 * 1024;

/// A record of zeros in which every index names nothing, because index 0 is a valid object.
Bytes EmptyRecord(const RecordInfo& record) {
  Bytes bytes(record.size);
  for (const FieldInfo& field : record.fields) {
    if (field.format == FieldFormat::Index) {
      std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(field.offset), field.size,
                  std::uint8_t{0xFF});
    }
  }
  return bytes;
}

void SetFieldFromWord(const RecordInfo& record, const std::string& word, Bytes& bytes) {
  const std::size_t equals = word.find('=');
  const std::string name = word.substr(0, equals);
  if (!virtual_onu::FindField(record, name)) {
    const Words names = virtual_onu::FieldNames(record);
    throw WrongUse(record.name + " has no field " + Quote(name) + Suggestion(name, names) +
                   " (its fields: " + Join(names, ", ") + ")");
  }
  const auto error = virtual_onu::SetField(record, name, word.substr(equals + 1), bytes);
  if (error) {
    throw WrongUse(*error);
  }
}

Bytes BuildRecord(const CommandInfo* command, const Arguments& given) {
  const RecordInfo* record = command == nullptr ? nullptr : command->record;
  const Words fields = given.words("FIELD=VALUE");
  if (given.has("HEX")) {
    if (!fields.empty()) {
      throw WrongUse("expected fields or raw, got both");
    }
    const Bytes wire = virtual_onu::ParseHex(given.word("HEX")).value();
    return record == nullptr ? wire : virtual_onu::FromWire(*record, wire);
  }
  if (record == nullptr) {
    if (!fields.empty()) {
      throw WrongUse("the record of this command is not described; give it with raw HEX");
    }
    return Bytes(command == nullptr ? 0 : command->length.value_or(0));
  }
  Bytes bytes = EmptyRecord(*record);
  for (const std::string& word : fields) {
    SetFieldFromWord(*record, word, bytes);
  }
  return bytes;
}

CallOutcome Report(const CommandInfo* command, const Bytes& bytes, std::uint32_t code) {
  CallOutcome outcome;
  outcome.outputs["raw"] = WireHex(code, bytes);
  if (command == nullptr || command->record == nullptr) {
    outcome.text = "  record " + WireHex(code, bytes) + "\n";
    return outcome;
  }
  outcome.outputs["record"] = command->record->name;
  outcome.outputs["fields"] = FieldsToJson(*command->record, bytes);
  outcome.text = "  " + RecordToText(*command->record, bytes) + "\n";
  return outcome;
}

}  // namespace

CallOutcome SendIoctl(const Arguments& given, std::span<const Argument> /*rows*/) {
  const std::uint32_t code = ParseCommandCode(given.word("CMD"));
  const CommandInfo* command = virtual_onu::FindCommand(code);
  Bytes bytes = BuildRecord(command, given);
  const std::uint32_t length =
      given.optionalNumber("N").value_or(static_cast<std::uint32_t>(bytes.size()));
  if (length > kMaxLength) {
    throw WrongUse("len: expected a number from 0 to " + std::to_string(kMaxLength) + ", got " +
                   std::to_string(length));
  }
  // The driver may use as many bytes as the request names.
  bytes.resize(std::max<std::size_t>(bytes.size(), length));
  const std::uint32_t flag =
      given.optionalNumber("F").value_or(command == nullptr ? BRMGR_FLAG_INPUT : command->flag);

  const std::uint32_t result =
      BCM6838X_Ioctl(code, bytes.empty() ? nullptr : bytes.data(), length, flag);
  CallOutcome outcome =
      flag == BRMGR_FLAG_READ_BACK && !bytes.empty() ? Report(command, bytes, code) : CallOutcome();
  outcome.value = result;
  return outcome;
}

}  // namespace onu
