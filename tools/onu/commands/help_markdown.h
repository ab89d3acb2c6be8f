/// @file
/// The reference of all commands and operations.
#pragma once

#include <string>

#include "session/command_set.h"

namespace onu {

/// The reference in Markdown, with a table of contents.
std::string HelpMarkdown(const CommandSet& commands);

}  // namespace onu
