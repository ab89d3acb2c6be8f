/// @file
/// An operation of the library as a row.
#pragma once

#include <cstdint>
#include <string_view>

#include "language/entry.h"
#include "operations/binding.h"

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

}  // namespace onu
