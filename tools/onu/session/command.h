/// @file
/// A row of the language with what carries it out.
#pragma once

#include <functional>
#include <string_view>

#include "language/entry.h"
#include "report/result.h"

namespace onu {

class Session;

struct Command : Entry {
  /// Yields the result; throws a Failure when it cannot.
  std::function<Result(Session& session, const Arguments& arguments)> run;
  bool changes = false;  ///< changes the unit: noted in the journal, and replayed from one
  std::string_view document = {};  ///< what its JSON documents are called; without it, the name
};

}  // namespace onu
