/// @file
/// The commands that list the chip's objects: ingress classes, flows, VLAN actions.
#include <cstdint>
#include <string_view>
#include <vector>

#include <brmgr_record.h>

#include "commands/command_rows.h"
#include "device/records.h"
#include "report/chip_report.h"
#include "report/record_report.h"
#include "report/report_table.h"
#include "session/session.h"

namespace onu {

namespace {

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

/// An object of the chip: its record, and what belongs to it.
struct ObjectRow {
  Json json;  ///< all fields
  FieldTexts fields;
  const IngressClass* ingressClass = nullptr;  ///< of a class and of a flow
  References references = {};                  ///< to an action
};

template <typename Record>
ObjectRow RowOf(std::string_view name, const Record& record) {
  return {FieldsToJson(*FindRecord(name), BytesOf(record)), FieldTexts(name, BytesOf(record))};
}

/// For people, a field of the record; programs get all of them.
Column<ObjectRow> Field(std::string_view heading, std::string_view name) {
  return {"", heading, [name](const ObjectRow& row) { return row.fields[name]; }};
}

const Column<ObjectRow> kAllFields = {kEveryMember, "", &ObjectRow::json};

const Columns<ObjectRow> kClasses = {
    kAllFields,
    Field("dir", "dir"),
    Field("class", "icIndex"),
    Field("priority", "priority"),
    {"flows", "flows", [](const auto& row) { return row.ingressClass->flows.size(); }},
    Field("keys", "fieldMask"),
};

const Columns<ObjectRow> kFlows = {
    kAllFields,
    Field("dir", "dir"),
    Field("class", "icIndex"),
    Field("flow", "flowIndex"),
    Field("forward", "forward"),
    Field("queue", "queue"),
    Field("action", "vlanActionIndex"),
    Field("policer", "policer"),
    {"", "keys", [](const auto& row) { return KeysOf(*row.ingressClass, row.fields); }},
};

const Columns<ObjectRow> kActions = {
    kAllFields,
    Field("dir", "dir"),
    Field("action", "vlanActionIndex"),
    Field("operations", "cmd"),
    Field("vid", "tag[0].vid"),
    Field("pbit", "tag[0].pbit"),
    Field("tpid", "tag[0].tpid"),
    {"flows", "flows", [](const auto& row) { return row.references.flows; }},
    {"portActions", "ports", [](const auto& row) { return row.references.portActions; }},
};

Result ShowClasses(Session& session, const Arguments& /*arguments*/) {
  std::vector<ObjectRow> rows;
  for (const IngressClass* ingressClass : AllClassesAsTried(session.unit().device().tables())) {
    rows.push_back(RowOf("IngressClassCfg", ingressClass->cfg));
    rows.back().ingressClass = ingressClass;
  }
  return Result().add("classes", Table(kClasses, rows), "no classes");
}

Result ShowFlows(Session& session, const Arguments& /*arguments*/) {
  std::vector<ObjectRow> rows;
  for (const IngressClass* ingressClass : AllClassesAsTried(session.unit().device().tables())) {
    for (const auto& [index, flow] : ingressClass->flows) {
      rows.push_back(RowOf("IngressFlowRule", flow));
      rows.back().ingressClass = ingressClass;
    }
  }
  return Result().add("flows", Table(kFlows, rows), "no flows");
}

Result ShowActions(Session& session, const Arguments& /*arguments*/) {
  std::vector<ObjectRow> rows;
  const ChipTables& tables = session.unit().device().tables();
  for (const DirectionTables* direction : {&tables.upstream, &tables.downstream}) {
    for (const auto& [index, action] : direction->actions) {
      rows.push_back(RowOf("VlanActionRule", action));
      rows.back().references = ReferencesOf(*direction, index);
    }
  }
  return Result().add("actions", Table(kActions, rows), "no actions");
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
