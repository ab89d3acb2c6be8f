/// @file
/// Runs the program itself as a process, for tests.
#pragma once

#include <filesystem>
#include <string>

#include "words.h"

namespace onu::test {

struct Finished {
  int status = -1;  ///< exit status, or -1 when the process ended by a signal
  std::string out;
  std::string errors;
};

/// Runs the program with the arguments and that standard input, in a directory.
Finished RunProgramIn(const std::filesystem::path& directory, const Words& arguments,
                      const std::string& input = {});

/// Runs it at the root of the sources.
Finished RunProgramHere(const Words& arguments, const std::string& input = {});

/// The root of the sources.
std::filesystem::path Sources();

/// The program's path.
std::filesystem::path ProgramPath();

/// A file's content; fails the test when it cannot be read.
std::string ReadFile(const std::filesystem::path& path);

}  // namespace onu::test
