/// @file
/// The commands that list the chip's objects: ingress classes, flows, VLAN actions.
#include <cstdint>
#include <string>
#include <vector>

#include <brmgr_record.h>

#include "commands/command_rows.h"
#include "device/records.h"
#include "report/chip_report.h"
#include "report/record_report.h"
#include "report/text_table.h"
#include "session/session.h"

namespace onu {

namespace {

using virtual_onu::ByteView;
using virtual_onu::ChipTables;
using virtual_onu::DirectionTables;
using virtual_onu::FindRecord;
using virtual_onu::IngressClass;

/// The classes of both directions, upstream first.
std::vector<const IngressClass*> AllClassesAsTried(const ChipTables& tables) {
  std::vector<const IngressClass*> classes = ClassesAsTried(tables.upstream);
  const std::vector<const IngressClass*> downstream = ClassesAsTried(tables.downstream);
  classes.insert(classes.end(), downstream.begin(), downstream.end());
  return classes;
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

Result ShowClasses(Session& session, const Arguments& /*arguments*/) {
  Result result;
  Json& list = result.json["classes"] = Json::array();
  TextTable table({"dir", "class", "priority", "flows", "keys"});
  for (const IngressClass* ingressClass : AllClassesAsTried(session.unit().device().tables())) {
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
  for (const IngressClass* ingressClass : AllClassesAsTried(session.unit().device().tables())) {
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

}  // namespace

const Command kShowClasses = {
    {"show classes", {}, "lists the ingress classes", {"Init\nshow classes"}}, ShowClasses};

const Command kShowFlows = {
    {"show flows", {}, "lists the flows with their keys and results", {"Init\nshow flows"}},
    ShowFlows};

const Command kShowActions = {{"show actions",
                               {},
                               "lists the VLAN actions",
                               {"Init\nIoctl VLAN_ACTION_ADD cmd=pop dir=ds\nshow actions"}},
                              ShowActions};

}  // namespace onu
