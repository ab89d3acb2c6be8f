/// @file
/// The table of the program's own commands.
#pragma once

#include <vector>

#include "entry.h"

namespace onu {

class Session;
struct Result;

struct Command : Entry {
  Result (*run)(Session& session, const Arguments& arguments);
  bool changes = false;  ///< changes the unit: noted in the journal, and replayed from one
};

/// All commands, in the order of their explanation.
const std::vector<Command>& CommandTable();

}  // namespace onu
