/// @file
/// The chapters of the page. All of their facts come from the tables of commands and records.
#include "records_page/page.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "device/records.h"

namespace records_page {
namespace {

using virtual_onu::AllCommands;
using virtual_onu::AllRecords;
using virtual_onu::CommandInfo;
using virtual_onu::FieldAccess;
using virtual_onu::FieldFormat;
using virtual_onu::FieldInfo;
using virtual_onu::NamedValue;
using virtual_onu::RecordInfo;

constexpr std::string_view kIntroduction = R"(# Commands and records of BrmgrDev

<!-- Generated from brmgr_cmd.h and brmgr_record.h; change those, then make this page again:
     build/host/tools/records_page/records_page > docs/records.md -->

Everything that passes between the library and the bridge-manager driver: the commands, the records
that they carry, and the events. On the target all numbers are big-endian; offsets and lengths are in bytes. A sender
clears the whole record before it fills it, so that reserved bytes are zero.

)";

constexpr std::string_view kCommandsIntroduction = R"(## Commands

After a command with *read-back*, the driver has written its result into the record; *input*
leaves the record as it was sent. A command without an entry under Record carries one that is not
described here.

)";

constexpr std::string_view kRecordsIntroduction = R"(## Records

*Filled by* says who gives a field its value: the **caller**; the **driver**, where the caller sends
a placeholder; **both**, where the driver may change what the caller proposes; or **nobody**, where
zero is sent.

)";

struct FormatRow {
  FieldFormat format;
  std::string_view name;
  std::string_view text;
};

constexpr std::array<FormatRow, 12> kFormats = {{
    {FieldFormat::Dec, "decimal", "a number"},
    {FieldFormat::Hex, "hexadecimal", "a number in hexadecimal with all digits, `0x8100`"},
    {FieldFormat::Index, "index", "a number; `none` for 0xFFFFFFFF, which names no object"},
    {FieldFormat::Dir, "direction", "`ds` (downstream) for 0, `us` (upstream) for any other value"},
    {FieldFormat::Keys, "key fields", "names of [key fields](#key-fields) joined by `|`"},
    {FieldFormat::Forward, "forwarding",
     "name of a [forwarding decision](#forwarding-decisions), else a number"},
    {FieldFormat::TagOps, "tag operations",
     "names of [tag operations](#tag-operations) joined by `|`"},
    {FieldFormat::Mac, "MAC", "six bytes, `01:80:c2:00:00:00`"},
    {FieldFormat::Ip, "IP",
     "an IPv4 address in the first four bytes, or an IPv6 address, in network order"},
    {FieldFormat::Raw, "bytes", "hexadecimal digits"},
    {FieldFormat::List, "list",
     "the fields of each record that is not all zero, `list[index].field`"},
    {FieldFormat::Reserved, "reserved", "not shown while zero"},
}};

std::string_view Name(FieldFormat format) {
  return std::ranges::find(kFormats, format, &FormatRow::format)->name;
}

std::string_view Name(FieldAccess access) {
  constexpr std::array<std::string_view, 4> kNames = {"caller", "driver", "both", "nobody"};
  return kNames.at(static_cast<std::size_t>(access));
}

std::string Code(std::string_view text) {
  return "`" + std::string(text) + "`";
}

/// One row of a table; a '|' inside a cell is escaped.
std::string Row(const std::vector<std::string>& cells) {
  std::string row = "|";
  for (const std::string& cell : cells) {
    row += ' ';
    for (const char letter : cell) {
      row.append(letter == '|' ? "\\" : "").push_back(letter);
    }
    row += " |";
  }
  return row + "\n";
}

std::string Header(const std::vector<std::string>& cells) {
  return Row(cells) + Row(std::vector<std::string>(cells.size(), "---"));
}

std::string Link(const std::string& record) {
  std::string anchor = record;
  std::ranges::transform(anchor, anchor.begin(), [](unsigned char letter) {
    return static_cast<char>(std::tolower(letter));
  });
  return "[" + Code(record) + "](#" + anchor + ")";
}

std::string LengthOf(const CommandInfo& command) {
  return command.length ? std::to_string(*command.length) : "varies";
}

std::string Commands() {
  std::string text(kCommandsIntroduction);
  text += Header({"Code", "Name", "Length", "Flag", "Record", "Purpose"});
  for (const CommandInfo& command : AllCommands()) {
    text += Row({std::to_string(command.code), Code(command.name), LengthOf(command),
                 command.flag != 0 ? "read-back" : "input",
                 command.record != nullptr ? Link(command.record->name) : "", command.text});
  }
  return text + "\n";
}

/// "u32", "u8[6]", or a record and the number of its copies.
std::string TypeOf(const FieldInfo& field) {
  if (field.format == FieldFormat::List) {
    return Link(field.record) + " × " + std::to_string(field.count());
  }
  const std::string element = "u" + std::to_string(8 * field.width);
  return field.count() == 1 ? element : element + "[" + std::to_string(field.count()) + "]";
}

std::string SendersOf(const RecordInfo& record) {
  std::string text;
  for (const CommandInfo& command : AllCommands()) {
    if (command.record == &record) {
      text += (text.empty() ? ", sent with " : " and ") + Code(command.name);
    }
  }
  return text;
}

std::string Record(const RecordInfo& record) {
  std::string text = "### " + record.name + "\n\n" + record.text + " " +
                     std::to_string(record.size) + " bytes" + SendersOf(record) + ".\n\n" +
                     Header({"Offset", "Type", "Field", "Format", "Filled by", "Meaning"});
  for (const FieldInfo& field : record.fields) {
    text += Row({std::to_string(field.offset), TypeOf(field), Code(field.name),
                 std::string(Name(field.format)), std::string(Name(field.access)), field.text});
  }
  return text + "\n";
}

std::string Records() {
  std::string text(kRecordsIntroduction);
  for (const RecordInfo& record : AllRecords()) {
    text += Record(record);
  }
  return text;
}

std::string Hex(std::uint32_t value) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text;
  do {
    text.insert(text.begin(), kDigits[value % kDigits.size()]);
    value /= static_cast<std::uint32_t>(kDigits.size());
  } while (value != 0);
  return "0x" + text;
}

std::string Values(std::string_view title, std::string_view introduction,
                   std::span<const NamedValue> values) {
  std::string text = "### " + std::string(title) + "\n\n" + std::string(introduction) + "\n\n" +
                     Header({"Value", "Name", "Constant"});
  for (const NamedValue& value : values) {
    text += Row({Hex(value.value), Code(value.name), Code(value.constant)});
  }
  return text + "\n";
}

std::string Formats() {
  std::string text =
      "## Formats\n\nHow decoded values are written.\n\n" + Header({"Format", "Written as"});
  for (const FormatRow& row : kFormats) {
    text += Row({std::string(row.name), std::string(row.text)});
  }
  return text + "\n";
}

}  // namespace

std::string Page() {
  std::string page(kIntroduction);
  page += Commands() + Records() + Formats();
  page += Values("Key fields",
                 "Bits of a class's `fieldMask`. Each has the name of the field of an\n"
                 "[`IngressFlowRule`](#ingressflowrule) that holds the key's value.",
                 virtual_onu::KeyBits());
  page += Values("Tag operations", "Bits of a VLAN action's `cmd`; a combination does all of them.",
                 virtual_onu::TagOperations());
  page += Values("Forwarding decisions", "Values of a flow's `forward`.",
                 virtual_onu::ForwardDecisions());
  page.pop_back();
  return page;
}

}  // namespace records_page
