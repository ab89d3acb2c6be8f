/// @file
/// Writing events as short lines.
#include "support/brief.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <optional>
#include <set>
#include <string_view>
#include <variant>

#include <brmgr_cmd.h>
#include <brmgr_record.h>

#include "device/records.h"
#include "support/left.h"

namespace hal_test {

namespace {

using virtual_onu::Bytes;
using virtual_onu::CommandEvent;
using virtual_onu::CommandInfo;
using virtual_onu::DecodedField;
using virtual_onu::FieldInfo;
using virtual_onu::RecordInfo;

/// What every record of a kind carries, and the fields that are shown in any case.
struct Usual {
  std::uint32_t code;
  std::string_view kind;    ///< direction of the records meant, as decoded
  std::string_view fields;  ///< FIELD=VALUE, blanks between them
  std::set<std::string_view> shown;
};

const std::vector<Usual> kUsual = {
    {BRMGR_CMD_FLOW_ADD,
     "us",
     "forward=pass result104=1 dir=us flowIndex=none vlanActionIndex=none policer=none",
     {"outerVid", "ingressPort", "outerPbit", "vlanNum", "queue", "icIndex"}},
    {BRMGR_CMD_FLOW_ADD,
     "ds",
     "forward=pass dir=ds flowIndex=none vlanActionIndex=none policer=none",
     {"outerVid", "vlanNum", "icIndex"}},
    {BRMGR_CMD_VLAN_ACTION_ADD,
     "us",
     "tag[0].tpid=0x8100 dir=us vlanActionIndex=none",
     {"cmd", "tag[0].vid", "tag[0].pbit"}},
    {BRMGR_CMD_VLAN_ACTION_ADD,
     "ds",
     "tag[0].tpid=0x8100 dir=ds vlanActionIndex=none",
     {"cmd", "tag[0].vid", "tag[0].pbit"}},
};

std::string DirectionOf(const std::vector<DecodedField>& fields) {
  const auto dir = std::ranges::find_if(
      fields, [](const DecodedField& field) { return field.info->name == "dir"; });
  return dir == fields.end() ? "" : dir->value;
}

Bytes UsualRecord(const RecordInfo& record, const Usual& usual) {
  Bytes bytes(record.size);
  std::string_view rest = usual.fields;
  while (!rest.empty()) {
    const std::string_view word = rest.substr(0, rest.find(' '));
    rest.remove_prefix(std::min(word.size() + 1, rest.size()));
    const std::size_t equals = word.find('=');
    // A usual value that cannot be set shows at once, as a difference in every line.
    static_cast<void>(
        virtual_onu::SetField(record, word.substr(0, equals), word.substr(equals + 1), bytes));
  }
  return bytes;
}

bool Differs(const FieldInfo& field, const Bytes& a, const Bytes& b) {
  const auto from = static_cast<std::ptrdiff_t>(field.offset);
  const auto to = static_cast<std::ptrdiff_t>(field.offset + field.size);
  return !std::equal(a.begin() + from, a.begin() + to, b.begin() + from);
}

std::string Differences(const RecordInfo& record, const Usual& usual, const Bytes& sent) {
  const Bytes expected = UsualRecord(record, usual);
  std::string text(usual.kind);
  for (const DecodedField& field : virtual_onu::DecodeRecord(record, sent)) {
    if (usual.shown.contains(field.info->name) || Differs(*field.info, sent, expected)) {
      text += " " + field.info->name + "=" + field.value;
    }
  }
  return text;
}

std::optional<std::string> Brief(const CommandEvent& event) {
  constexpr std::string_view kPrefix = "BRMGR_CMD_";
  const CommandInfo* command = virtual_onu::FindCommand(event.code);
  if (command == nullptr || command->record == nullptr || event.length != command->length ||
      event.before.size() != event.length || event.flag != command->flag) {
    return {};
  }
  const RecordInfo& record = *command->record;
  const std::string name = command->name.substr(kPrefix.size()) + " ";
  const std::string kind = DirectionOf(virtual_onu::DecodeRecord(record, event.before));
  for (const Usual& usual : kUsual) {
    if (usual.code == event.code && usual.kind == kind) {
      return name + Differences(record, usual, event.before);
    }
  }
  return name + virtual_onu::DescribeRecord(record, event.before);
}

/// A log line without level and file when these are the library's usual ones.
std::string WithoutUsual(const std::string& line) {
  constexpr std::string_view kBegin = "log 1 hal/switch/bcm6838x/src/";
  constexpr std::string_view kFile = ".cpp ";
  constexpr std::string_view kEnd = "\r\n";
  const std::size_t file = line.find(kFile);
  if (!line.starts_with(kBegin) || file == std::string::npos || !line.ends_with(kEnd)) {
    return line;
  }
  const std::size_t text = file + kFile.size();
  return "log " + line.substr(text, line.size() - kEnd.size() - text);
}

}  // namespace

std::string DescribeBriefly(const virtual_onu::TraceEvent& event) {
  if (const auto* command = std::get_if<CommandEvent>(&event.detail)) {
    return Brief(*command).value_or(Describe(event));
  }
  return WithoutUsual(Describe(event));
}

std::vector<std::string> LeftBriefly(const virtual_onu::Unit& unit, std::uint64_t from) {
  std::vector<std::string> lines;
  std::ranges::transform(unit.trace().events(from), std::back_inserter(lines), DescribeBriefly);
  return lines;
}

}  // namespace hal_test
