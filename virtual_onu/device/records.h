/// @file
/// What the tools know of commands and records: names, layout and formats, made from the library's
/// own tables, and the decoder that turns a record's bytes into named values. Nothing here sends
/// anything.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/bytes.h"

namespace virtual_onu {

/// How a field's value is written.
enum class FieldFormat : std::uint8_t {
  Dec,
  Hex,      ///< all digits, "0x8100"
  Index,    ///< decimal, "none" for 0xFFFFFFFF
  Dir,      ///< "ds" for 0, else "us"
  Keys,     ///< names of the key bits joined by '|', unknown bits in hexadecimal
  Forward,  ///< name of the forwarding decision, else decimal
  TagOps,   ///< names of the tag operation bits, as for Keys
  Mac,      ///< "01:80:c2:00:00:00"
  Ip,       ///< dotted IPv4, or IPv6 when any byte behind the fourth is not 0
  Raw,      ///< hexadecimal digits, "0" when all are 0
  List,     ///< records, of which those are in use that are not all zero
  Reserved  ///< as Raw, a number of more than one byte as Hex
};

/// Who fills a field.
enum class FieldAccess : std::uint8_t { Caller, Driver, Both, Nobody };

/// One field. A few nested records are flattened ("tag[0].vid"); a list of them is one field, whose
/// elements' fields are named "trunkList[7].vid".
struct FieldInfo {
  std::string name;
  std::size_t offset = 0;
  std::size_t size = 0;   ///< whole field in bytes
  std::size_t width = 0;  ///< one element in bytes: 1, 2, 4, or the size of a list's record
  FieldFormat format = FieldFormat::Dec;
  FieldAccess access = FieldAccess::Caller;
  std::string text;
  std::string record = {};             ///< of a list: the name of its elements' record
  std::vector<FieldInfo> fields = {};  ///< of a list: the fields of one element

  [[nodiscard]] std::size_t count() const { return size / width; }
};

struct RecordInfo {
  std::string name;
  std::size_t size = 0;
  std::string text;
  std::vector<FieldInfo> fields;  ///< cover every byte, in order
};

struct CommandInfo {
  std::uint32_t code = 0;
  std::string name;                     ///< "BRMGR_CMD_INIT"
  std::optional<std::uint32_t> length;  ///< nothing where it depends on the payload
  std::uint32_t flag = 0;
  std::string text;
  const RecordInfo* record = nullptr;  ///< null where the record is not described
};

/// All records, in the order of their declaration.
const std::vector<RecordInfo>& AllRecords();

/// The record of that name, or null.
const RecordInfo* FindRecord(std::string_view name);

/// All commands, in the order of their codes.
const std::vector<CommandInfo>& AllCommands();

/// The command with that code, or null.
const CommandInfo* FindCommand(std::uint32_t code);

/// The command of that name, with or without "BRMGR_CMD_" and in any case, or null.
const CommandInfo* FindCommand(std::string_view name);

/// "BRMGR_CMD_INIT", or "command 182" for a code without a name.
std::string CommandName(std::uint32_t code);

/// A value that has a name.
struct NamedValue {
  std::uint32_t value = 0;
  std::string_view name;      ///< as decoded and as SetField takes it
  std::string_view constant;  ///< "BRMGR_KEY_OUTER_VID"
};

/// Bits of a class's fieldMask; the name is that of the flow field with the key.
std::span<const NamedValue> KeyBits();

/// Bits of a VLAN action's cmd.
std::span<const NamedValue> TagOperations();

/// Values of a flow's forward field.
std::span<const NamedValue> ForwardDecisions();

/// The field of that name, "vid" or "port[0].trunkList[7].vid", at its offset in the record.
std::optional<FieldInfo> FindField(const RecordInfo& record, std::string_view name);

/// The names of the fields that are not reserved; those of a list with the range of its indexes,
/// "port[0..31].pvid".
std::vector<std::string> FieldNames(const RecordInfo& record);

/// One field's value in words.
struct DecodedField {
  const FieldInfo* info = nullptr;
  std::string name;  ///< with the places in the lists in which the field stands
  std::string value;
  bool zero = false;  ///< every byte is 0
};

/// Decodes a record that is in the processor's byte order. Fields that `bytes` does not cover whole
/// are left out, and the elements of a list that are not in use; of one with Raw format, such as a
/// frame, the bytes that are there are decoded.
std::vector<DecodedField> DecodeRecord(const RecordInfo& record, ByteView bytes);

/// One line of "name=value" pairs; fields that are reserved and zero are left out.
std::string DescribeRecord(const RecordInfo& record, ByteView bytes);

/// The record as it stands on the target: every number big-endian. Bytes beyond the record stay.
Bytes ToWire(const RecordInfo& record, ByteView bytes);

/// The inverse of ToWire.
Bytes FromWire(const RecordInfo& record, ByteView bytes);

/// Sets one field by its name, as FindField takes it, from text, as DecodeRecord writes it:
/// decimal, 0x hexadecimal, "none", "us"/"ds", a MAC or an IP address, names of bits joined by '|',
/// hexadecimal digits. The record is in the processor's byte order. Returns an error text that
/// names the field and what was expected, and leaves the bytes alone, or nothing when done.
std::optional<std::string> SetField(const RecordInfo& record, std::string_view field,
                                    std::string_view value, Bytes& bytes);

}  // namespace virtual_onu
