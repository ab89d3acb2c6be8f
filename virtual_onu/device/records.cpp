/// @file
/// The tables of commands, records and named values, expanded from those of the library's headers.
#include "device/records.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <type_traits>
#include <utility>

#include <brmgr_cmd.h>
#include <brmgr_record.h>

namespace virtual_onu {
namespace {

// What the field tables call the formats and who fills a field.
constexpr FieldFormat kFormat_DEC = FieldFormat::Dec;
constexpr FieldFormat kFormat_HEX = FieldFormat::Hex;
constexpr FieldFormat kFormat_INDEX = FieldFormat::Index;
constexpr FieldFormat kFormat_DIR = FieldFormat::Dir;
constexpr FieldFormat kFormat_KEYS = FieldFormat::Keys;
constexpr FieldFormat kFormat_FORWARD = FieldFormat::Forward;
constexpr FieldFormat kFormat_TAG_OPS = FieldFormat::TagOps;
constexpr FieldFormat kFormat_MAC = FieldFormat::Mac;
constexpr FieldFormat kFormat_IP = FieldFormat::Ip;
constexpr FieldFormat kFormat_BYTES = FieldFormat::Raw;
constexpr FieldFormat kFormat_TAG = FieldFormat::Raw;  // flattened before anybody sees it
constexpr FieldFormat kFormat_LIST = FieldFormat::List;
constexpr FieldFormat kFormat_RESERVED = FieldFormat::Reserved;
constexpr FieldAccess kAccess_CALLER = FieldAccess::Caller;
constexpr FieldAccess kAccess_DRIVER = FieldAccess::Driver;
constexpr FieldAccess kAccess_BOTH = FieldAccess::Both;
constexpr FieldAccess kAccess_NOBODY = FieldAccess::Nobody;

template <typename Record>
std::vector<FieldInfo> FieldsOf();

/// Adds the fields of the records of which a field consists.
template <typename Element>
void AppendFlattened(std::vector<FieldInfo>& fields, const FieldInfo& field) {
  for (std::size_t i = 0; i < field.count(); ++i) {
    for (FieldInfo inner : FieldsOf<Element>()) {
      inner.name.insert(0, field.name + "[" + std::to_string(i) + "].");
      inner.offset += field.offset + i * sizeof(Element);
      fields.push_back(inner);
    }
  }
}

/// Adds a field; one that is a record, or an array of records, is flattened unless it is a list.
template <typename Element>
void Append(std::vector<FieldInfo>& fields, FieldInfo field) {
  if constexpr (std::is_class_v<Element>) {
    if (field.format != FieldFormat::List) {
      AppendFlattened<Element>(fields, field);
      return;
    }
    field.fields = FieldsOf<Element>();
  } else {
    field.record.clear();
  }
  fields.push_back(std::move(field));
}

#define APPEND_FIELD(record, offset, type, name, array, format, access, text)                \
  Append<type>(fields, {#name, offset, sizeof(record::name), sizeof(type), kFormat_##format, \
                        kAccess_##access, text, #type});
#define DEFINE_FIELDS(record, table, size, text) \
  template <>                                    \
  std::vector<FieldInfo> FieldsOf<record>() {    \
    std::vector<FieldInfo> fields;               \
    table(APPEND_FIELD, record) return fields;   \
  }
BRMGR_RECORD_LIST(DEFINE_FIELDS)
#undef DEFINE_FIELDS
#undef APPEND_FIELD

/// @param[in] record  its name; that of a command without one is no record's
CommandInfo MakeCommand(std::uint32_t code, const char* name, const char* record,
                        std::uint32_t length, std::uint32_t flag, const char* text) {
  CommandInfo command = {code, name, {}, flag, text, FindRecord(record)};
  if (length != BRMGR_LENGTH_VARIABLE) {
    command.length = length;
  }
  return command;
}

std::string UpperCase(std::string_view text) {
  std::string upper(text);
  std::ranges::transform(upper, upper.begin(), [](unsigned char letter) {
    return static_cast<char>(std::toupper(letter));
  });
  return upper;
}

}  // namespace

const std::vector<RecordInfo>& AllRecords() {
#define MAKE_RECORD(record, table, size, text) {#record, size, text, FieldsOf<record>()},
  static const std::vector<RecordInfo> records = {BRMGR_RECORD_LIST(MAKE_RECORD)};
#undef MAKE_RECORD
  return records;
}

const RecordInfo* FindRecord(std::string_view name) {
  const auto found = std::ranges::find(AllRecords(), name, &RecordInfo::name);
  return found == AllRecords().end() ? nullptr : &*found;
}

const std::vector<CommandInfo>& AllCommands() {
#define MAKE_COMMAND(code, name, record, length, flag, otherFlag, text) \
  MakeCommand(code, "BRMGR_CMD_" #name, #record, length, BRMGR_FLAG_##flag, text),
  static const std::vector<CommandInfo> commands = {BRMGR_COMMAND_LIST(MAKE_COMMAND)};
#undef MAKE_COMMAND
  return commands;
}

const CommandInfo* FindCommand(std::uint32_t code) {
  const auto found = std::ranges::find(AllCommands(), code, &CommandInfo::code);
  return found == AllCommands().end() ? nullptr : &*found;
}

const CommandInfo* FindCommand(std::string_view name) {
  constexpr std::string_view kPrefix = "BRMGR_CMD_";
  std::string wanted = UpperCase(name);
  if (!wanted.starts_with(kPrefix)) {
    wanted.insert(0, kPrefix);
  }
  const auto found = std::ranges::find(AllCommands(), wanted, &CommandInfo::name);
  return found == AllCommands().end() ? nullptr : &*found;
}

std::string CommandName(std::uint32_t code) {
  const CommandInfo* const command = FindCommand(code);
  return command != nullptr ? command->name : "command " + std::to_string(code);
}

std::span<const NamedValue> KeyBits() {
#define MAKE_KEY(bit, name, field) NamedValue{bit, #field, "BRMGR_KEY_" #name},
  static constexpr std::array kKeys = {BRMGR_KEY_LIST(MAKE_KEY)};
#undef MAKE_KEY
  return kKeys;
}

std::span<const NamedValue> TagOperations() {
  static constexpr std::array<NamedValue, 4> kOperations = {{
      {BRMGR_TAG_PUSH, "push", "BRMGR_TAG_PUSH"},
      {BRMGR_TAG_POP, "pop", "BRMGR_TAG_POP"},
      {BRMGR_TAG_REPLACE_VID, "replace_vid", "BRMGR_TAG_REPLACE_VID"},
      {BRMGR_TAG_REPLACE_PRIORITY, "replace_priority", "BRMGR_TAG_REPLACE_PRIORITY"},
  }};
  return kOperations;
}

std::span<const NamedValue> ForwardDecisions() {
  static constexpr std::array<NamedValue, 3> kDecisions = {{
      {BRMGR_FORWARD_PASS, "pass", "BRMGR_FORWARD_PASS"},
      {BRMGR_FORWARD_TRAP, "trap", "BRMGR_FORWARD_TRAP"},
      {BRMGR_FORWARD_ACL, "acl", "BRMGR_FORWARD_ACL"},
  }};
  return kDecisions;
}

}  // namespace virtual_onu
