/// @file
/// The parts of the operation table, one for each header of the library, and the arguments that
/// they share.
#pragma once

#include <vector>

#include "operations/operation.h"

namespace onu {

constexpr Argument kUniPort = {"port", ArgumentType::Number,
                               "UNI port number, from 1; the low 8 bits count"};
constexpr Argument kWholePort = {"port", ArgumentType::Number,
                                 "UNI port number, from 1; passed on as it is"};
constexpr Argument kIgnoredPort = {"port", ArgumentType::Number, "not used"};

const std::vector<Operation>& CoreOperations();
const std::vector<Operation>& PacketOperations();
const std::vector<Operation>& VlanOperations();
const std::vector<Operation>& VlanModeOperations();
const std::vector<Operation>& VlanPortOperations();
const std::vector<Operation>& IgmpOperations();
const std::vector<Operation>& PortOperations();
const std::vector<Operation>& PortStatisticsOperations();
const std::vector<Operation>& QosOperations();
const std::vector<Operation>& MacOperations();

}  // namespace onu
