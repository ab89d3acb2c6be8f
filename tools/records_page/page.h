/// @file
/// The reference page of commands and records, docs/records.md, as text.
#pragma once

#include <string>

namespace records_page {

/// The whole page in Markdown, made from the tables of commands and records.
std::string Page();

}  // namespace records_page
