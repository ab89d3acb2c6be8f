/// @file
/// The table of the library's exported operations.
#pragma once

#include <cstdint>
#include <vector>

#include "binding.h"
#include "entry.h"

namespace onu {

/// What an operation's result says.
enum class ResultKind : std::uint8_t {
  Status,  ///< 0 is success, other values have names
  Number,
  Nothing
};

struct Operation : Entry {
  ResultKind result = ResultKind::Status;
  Binding binding;
};

constexpr std::string_view kOperationPrefix = "BCM6838X_";

/// All operations, in the order of the library's headers.
const std::vector<Operation>& OperationTable();

}  // namespace onu
