/// @file
/// Runs the program itself as a process, for tests.
#pragma once

#include <filesystem>
#include <string>

#include "language/words.h"

namespace onu::test {

struct Finished {
  int status = -1;  ///< exit status, or -1 when the process ended by a signal
  std::string out;
  std::string errors;
};

/// What becomes of the process's standard output.
enum class Output {
  kRead,    ///< is handed back
  kFull,    ///< every write fails: the device is full
  kClosed,  ///< is closed before the program starts
};

/// What the process finds when it starts.
struct Surroundings {
  std::filesystem::path directory;
  std::string input;  ///< on standard input
  Output output = Output::kRead;
  std::string temporary_directory;  ///< of temporary files; empty: that of the test
  std::string program;              ///< another program, found by PATH; empty: onu
};

/// Runs the program with the arguments.
Finished RunProgram(const Words& arguments, const Surroundings& surroundings);

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
