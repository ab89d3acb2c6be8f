/// @file
/// The command that lists the ingress classes.
#include <vector>

#include "commands/command_rows.h"
#include "report/chip_objects.h"
#include "session/session.h"

namespace onu {

namespace {

using virtual_onu::IngressClass;

const Columns<ObjectRow> kClasses = {
    AllFields(),
    Field("dir", "dir"),
    Field("class", "icIndex"),
    Field("priority", "priority"),
    {"flows", "flows", [](const auto& row) { return row.ingressClass->flows.size(); }},
    Field("keys", "fieldMask"),
};

Result ShowClasses(Session& session, const Arguments& /*arguments*/) {
  std::vector<ObjectRow> rows;
  for (const IngressClass* ingressClass : AllClassesAsTried(session.unit().device().tables())) {
    rows.push_back(RowOf("IngressClassCfg", ingressClass->cfg));
    rows.back().ingressClass = ingressClass;
  }
  return Result().add("classes", Table(kClasses, rows), "no classes");
}

}  // namespace

const Command kShowClasses = {
    {"show classes", {}, "lists the ingress classes", {"Init\nshow classes"}}, ShowClasses};

}  // namespace onu
