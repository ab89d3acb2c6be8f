/// @file
/// The command that lists the VLAN actions.
#include <cstdint>
#include <vector>

#include "commands/command_rows.h"
#include "report/chip_objects.h"
#include "session/session.h"

namespace onu {

namespace {

using virtual_onu::ChipTables;
using virtual_onu::DirectionTables;

/// How many flows, and how many port actions, of the direction name an action.
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

const Columns<ObjectRow> kActions = {
    AllFields(),
    Field("dir", "dir"),
    Field("action", "vlanActionIndex"),
    Field("operations", "cmd"),
    Field("vid", "tag[0].vid"),
    Field("pbit", "tag[0].pbit"),
    Field("tpid", "tag[0].tpid"),
    {"flows", "flows", [](const auto& row) { return row.references.flows; }},
    {"portActions", "ports", [](const auto& row) { return row.references.portActions; }},
};

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

const Command kShowActions = {{"show actions",
                               {},
                               "lists the VLAN actions",
                               {"Init\nIoctl VLAN_ACTION_ADD cmd=pop dir=ds\nshow actions"}},
                              ShowActions};

}  // namespace onu
