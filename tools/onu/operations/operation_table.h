/// @file
/// The table of the library's exported operations.
#pragma once

#include <string_view>
#include <vector>

#include "operations/operation.h"

namespace onu {

/// Operations that belong together.
struct OperationGroup {
  std::string_view title;
  const std::vector<Operation>& operations;
};

/// All operations, in the order of the library's headers.
const std::vector<OperationGroup>& OperationTable();

}  // namespace onu
