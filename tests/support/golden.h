/// @file
/// Expected sequences from files that a person wrote and can check line by line.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace hal_test {

using GoldenNumbers = std::map<std::string, std::int64_t>;

/// The lines of one section of a file, loops unrolled and numbers put in.
///
///   # ...               a comment; empty lines are skipped, indentation is
///   == NAME             begins a section
///   repeat NAME COUNT   repeats the lines up to its `end` with NAME = 0, 1, ...
///   end
///   <100+8*v-p>         within a line, and as COUNT without the brackets: the sum, in which a name
///                       is a loop's or one of `numbers`
///
/// "<line>" is left as it is. Throws std::runtime_error, with the place, when the file cannot be
/// read that way.
std::vector<std::string> GoldenLines(const std::filesystem::path& file, const std::string& section,
                                     const GoldenNumbers& numbers = {});

}  // namespace hal_test
