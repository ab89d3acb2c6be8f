/// @file
/// JSON as the program writes it: members in the order in which they were made, one document a
/// line.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace onu {

using Json = nlohmann::ordered_json;

/// Version of every document's layout and of the journal's. A reader refuses what it does not know.
constexpr int kJsonVersion = 1;

/// The document as one line. Text that is not UTF-8 is written with replacement characters.
std::string Dump(const Json& document);

/// The document on several lines, for files that people read.
std::string DumpIndented(const Json& document);

}  // namespace onu
