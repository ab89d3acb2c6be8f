/// @file
/// The command that lists the flows.
#include <vector>

#include "commands/command_rows.h"
#include "report/chip_objects.h"
#include "session/session.h"

namespace onu {

namespace {

using virtual_onu::IngressClass;

const Columns<ObjectRow> kFlows = {
    AllFields(),
    Field("dir", "dir"),
    Field("class", "icIndex"),
    Field("flow", "flowIndex"),
    Field("forward", "forward"),
    Field("queue", "queue"),
    Field("action", "vlanActionIndex"),
    Field("policer", "policer"),
    {"", "keys", [](const auto& row) { return KeysOf(*row.ingressClass, row.fields); }},
};

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

}  // namespace

const Command kShowFlows = {
    {"show flows", {}, "lists the flows with their keys and results", {"Init\nshow flows"}},
    ShowFlows};

}  // namespace onu
