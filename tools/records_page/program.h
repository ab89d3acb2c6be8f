/// @file
/// What the program does with its arguments, apart from the process around it.
#pragma once

#include <iosfwd>
#include <span>

namespace records_page {

/// Without arguments, writes the page to `out`. With "--check FILE", compares the file with it and
/// says on `err` where they part and how to make the file again.
/// @return the exit status: 0 done, 1 the file differs or cannot be read, 2 wrong use
int Run(std::span<const char* const> arguments, std::ostream& out, std::ostream& err);

}  // namespace records_page
