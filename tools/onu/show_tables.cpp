/// @file
/// The commands that list the chip's objects: ingress classes, flows, VLAN actions.
#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <brmgr_record.h>

#include "commands.h"
#include "device/records.h"
#include "record_report.h"
#include "text_table.h"

namespace onu {

namespace {

using virtual_onu::ByteView;
using virtual_onu::ChipTables;
using virtual_onu::DirectionTables;
using virtual_onu::FindRecord;
using virtual_onu::IngressClass;
using virtual_onu::RecordInfo;

template <typename Record>
ByteView BytesOf(const Record& record) {
  return {reinterpret_cast<const std::uint8_t*>(&record), sizeof(record)};
}

/// A record's fields by name, each with its value in words.
class FieldTexts {
 public:
  FieldTexts(std::string_view record, ByteView bytes)
      : fields_(virtual_onu::DecodeRecord(*FindRecord(record), bytes)) {}

  [[nodiscard]] std::string operator[](std::string_view name) const {
    const auto found = std::ranges::find_if(
        fields_, [name](const auto& field) { return field.info->name == name; });
    return found == fields_.end() ? "" : found->value;
  }

 private:
  std::vector<virtual_onu::DecodedField> fields_;
};

/// The classes of both directions, upstream first, each in the order in which they are tried.
std::vector<const IngressClass*> ClassesAsTried(const ChipTables& tables) {
  std::vector<const IngressClass*> classes;
  for (const DirectionTables* direction : {&tables.upstream, &tables.downstream}) {
    const auto first = static_cast<std::ptrdiff_t>(classes.size());
    for (const auto& [index, ingressClass] : direction->classes) {
      classes.push_back(&ingressClass);
    }
    std::stable_sort(classes.begin() + first, classes.end(),
                     [](const IngressClass* left, const IngressClass* right) {
                       return left->cfg.priority > right->cfg.priority;
                     });
  }
  return classes;
}

/// The key values that the flow's class compares, "dstMac=01:80:c2:00:00:00".
std::string KeysOf(const IngressClass& ingressClass, const FieldTexts& flow) {
  Words keys;
  for (const virtual_onu::NamedValue& key : virtual_onu::KeyBits()) {
    if ((ingressClass.cfg.fieldMask & key.value) != 0) {
      keys.push_back(std::string(key.name) + "=" + flow[key.name]);
    }
  }
  return Join(keys, " ");
}

/// How many flows, and how many port actions, of the direction name an action.
struct References {
  std::size_t flows = 0;
  std::size_t portActions = 0;
};

References ReferencesOf(const DirectionTables& direction, std::uint32_t actionIndex) {
  References references;
  for (const auto& [index, ingressClass] : direction.classes) {
    for (const auto& [flowIndex, flow] : ingressClass.flows) {
      references.flows += flow.vlanActionIndex == actionIndex ? 1 : 0;
    }
    for (const auto& [key, action] : ingressClass.portActions) {
      references.portActions += action == actionIndex ? 1 : 0;
    }
  }
  return references;
}

}  // namespace

Result ShowClasses(Session& session, const Arguments& /*arguments*/) {
  Result result;
  Json& list = result.json["classes"] = Json::array();
  TextTable table({"dir", "class", "priority", "flows", "keys"});
  for (const IngressClass* ingressClass : ClassesAsTried(session.unit().device().tables())) {
    const ByteView bytes = BytesOf(ingressClass->cfg);
    Json json = FieldsToJson(*FindRecord("IngressClassCfg"), bytes);
    json["flows"] = ingressClass->flows.size();
    list.push_back(json);
    const FieldTexts fields("IngressClassCfg", bytes);
    table.add({fields["dir"], fields["icIndex"], fields["priority"],
               std::to_string(ingressClass->flows.size()), fields["fieldMask"]});
  }
  result.text = table.text("no classes");
  return result;
}

Result ShowFlows(Session& session, const Arguments& /*arguments*/) {
  Result result;
  Json& list = result.json["flows"] = Json::array();
  TextTable table({"dir", "class", "flow", "forward", "queue", "action", "policer", "keys"});
  for (const IngressClass* ingressClass : ClassesAsTried(session.unit().device().tables())) {
    for (const auto& [index, flow] : ingressClass->flows) {
      list.push_back(FieldsToJson(*FindRecord("IngressFlowRule"), BytesOf(flow)));
      const FieldTexts fields("IngressFlowRule", BytesOf(flow));
      table.add({fields["dir"], fields["icIndex"], fields["flowIndex"], fields["forward"],
                 fields["queue"], fields["vlanActionIndex"], fields["policer"],
                 KeysOf(*ingressClass, fields)});
    }
  }
  result.text = table.text("no flows");
  return result;
}

Result ShowActions(Session& session, const Arguments& /*arguments*/) {
  Result result;
  Json& list = result.json["actions"] = Json::array();
  TextTable table({"dir", "action", "operations", "vid", "pbit", "tpid", "flows", "ports"});
  const ChipTables& tables = session.unit().device().tables();
  for (const DirectionTables* direction : {&tables.upstream, &tables.downstream}) {
    for (const auto& [index, action] : direction->actions) {
      const References references = ReferencesOf(*direction, index);
      Json json = FieldsToJson(*FindRecord("VlanActionRule"), BytesOf(action));
      json["flows"] = references.flows;
      json["portActions"] = references.portActions;
      list.push_back(json);
      const FieldTexts fields("VlanActionRule", BytesOf(action));
      table.add({fields["dir"], fields["vlanActionIndex"], fields["cmd"], fields["tag[0].vid"],
                 fields["tag[0].pbit"], fields["tag[0].tpid"], std::to_string(references.flows),
                 std::to_string(references.portActions)});
    }
  }
  result.text = table.text("no actions");
  return result;
}

}  // namespace onu
