/// @file
/// All that a line may name.
#pragma once

#include "session/command_set.h"

namespace onu {

/// The program's commands and the library's operations, in the order of their explanation.
const CommandSet& AllCommands();

}  // namespace onu
