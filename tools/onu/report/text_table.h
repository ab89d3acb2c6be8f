/// @file
/// Tables of text for people.
#pragma once

#include <string>
#include <vector>

#include "language/words.h"

namespace onu {

/// The lines, which have equally many words, with columns as wide as their longest word and without
/// blanks at line ends.
std::string AlignColumns(const std::vector<Words>& lines);

}  // namespace onu
