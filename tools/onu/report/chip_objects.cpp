/// @file
/// Rows and columns of the chip's objects.
#include "report/chip_objects.h"

namespace onu {

using virtual_onu::IngressClass;

Column<ObjectRow> AllFields() {
  return {kEveryMember, "", &ObjectRow::json};
}

Column<ObjectRow> Field(std::string_view heading, std::string_view name) {
  return {"", heading, [name](const ObjectRow& row) { return row.fields[name]; }};
}

std::vector<const IngressClass*> AllClassesAsTried(const virtual_onu::ChipTables& tables) {
  std::vector<const IngressClass*> classes = ClassesAsTried(tables.upstream);
  const std::vector<const IngressClass*> downstream = ClassesAsTried(tables.downstream);
  classes.insert(classes.end(), downstream.begin(), downstream.end());
  return classes;
}

}  // namespace onu
