/// @file
/// The parts of the operation table put together.
#include "operation_table.h"

#include "operation_rows.h"

namespace onu {

namespace {

std::vector<Operation> MakeTable() {
  std::vector<Operation> table;
  for (const auto* part :
       {&CoreOperations(), &PacketOperations(), &VlanOperations(), &VlanModeOperations(),
        &VlanPortOperations(), &IgmpOperations(), &PortOperations(), &PortStatisticsOperations(),
        &QosOperations(), &MacOperations()}) {
    table.insert(table.end(), part->begin(), part->end());
  }
  return table;
}

}  // namespace

const std::vector<Operation>& OperationTable() {
  static const std::vector<Operation> table = MakeTable();
  return table;
}

}  // namespace onu
