/// @file
/// The parts of the operation table put together.
#include "operations/operation_table.h"

#include "operations/operation_rows.h"

namespace onu {

const std::vector<OperationGroup>& OperationTable() {
  static const std::vector<OperationGroup> table = {
      {"Start-up and command channel", CoreOperations()},
      {"Packet path", PacketOperations()},
      {"VLAN actions, flows and objects", VlanOperations()},
      {"VLAN modes", VlanModeOperations()},
      {"VLAN configuration of the ports", VlanPortOperations()},
      {"Multicast", IgmpOperations()},
      {"Ports", PortOperations()},
      {"Counters of the ports", PortStatisticsOperations()},
      {"QoS", QosOperations()},
      {"MAC table", MacOperations()},
  };
  return table;
}

}  // namespace onu
