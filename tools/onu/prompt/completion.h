/// @file
/// What may stand at the end of a line: names, choices, fields, files.
#pragma once

#include <string_view>

#include "language/words.h"
#include "session/session.h"

namespace onu {

/// The end of a line completed.
struct Completion {
  std::string word;  ///< what is typed of the last word; empty behind a blank
  Words candidates;  ///< whole words that begin with it, in order
};

Completion Complete(Session& session, std::string_view line);

}  // namespace onu
