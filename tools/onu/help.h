/// @file
/// Help and reference, made from the tables.
#pragma once

#include <string>

#include "entry.h"

namespace onu {

/// One line for each command and operation.
std::string HelpOverview();

/// All about one command or operation: usage, arguments with the words to choose from, examples.
std::string HelpOn(const Entry& entry);

/// The reference of all commands and operations in Markdown.
std::string HelpMarkdown();

}  // namespace onu
