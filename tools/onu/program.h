/// @file
/// The program as a function: from the command line to the exit status.
#pragma once

namespace onu {

/// Returns the exit status: 0 done, 1 the work failed, 2 wrong use.
int RunProgram(int argc, const char* const* argv);

}  // namespace onu
