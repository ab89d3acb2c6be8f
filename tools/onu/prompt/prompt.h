/// @file
/// The interactive prompt as a whole: line for line until the input or the session ends.
#pragma once

#include <cstdio>

#include "session/session.h"

namespace onu {

/// Reads lines and runs them. Errors are printed and do not end it.
/// @param[in] terminal  where the prompt is shown
void RunPrompt(Session& session, FILE* terminal, const Sink& errors);

}  // namespace onu
