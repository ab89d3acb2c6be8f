/// @file
/// Scripts that lie in files.
#pragma once

#include <string>

#include "runner.h"

namespace onu {

/// Runs a script; throws a Failure when it cannot be read.
/// @param[in] path  of the script, or "-" for standard input
void RunScriptFile(Runner& runner, const std::string& path);

}  // namespace onu
