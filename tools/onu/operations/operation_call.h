/// @file
/// Operations as commands of a session: their calls, and the reports on these.
#pragma once

#include "operations/operation.h"
#include "report/result.h"
#include "session/command.h"

namespace onu {

/// The command that calls an operation, notes the call in the journal, and reports it. The operation
/// has to stay as long as the command.
Command CommandOf(const Operation& operation);

/// "ok", "failed", ...: the name of a status, or "unknown".
std::string_view StatusName(std::int64_t status);

}  // namespace onu
