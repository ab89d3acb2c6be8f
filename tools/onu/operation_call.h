/// @file
/// Calling of operations, and the reports on the calls.
#pragma once

#include "operation_table.h"
#include "session.h"

namespace onu {

/// Calls an operation, notes it in the journal, and reports it.
Result CallOperation(Session& session, const Operation& operation, const Arguments& arguments);

/// "ok", "failed", ...: the name of a status, or "unknown".
std::string_view StatusName(std::int64_t status);

}  // namespace onu
