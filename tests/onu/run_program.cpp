/// @file
/// Processes for tests.
#include "run_program.h"

#include <cstdio>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace onu::test {

namespace {

/// A file without a name that holds a text and can be given to a process.
FILE* MakeFile(const std::string& text) {
  FILE* file = std::tmpfile();
  if (file == nullptr || std::fwrite(text.data(), 1, text.size(), file) != text.size()) {
    throw std::runtime_error("cannot make a temporary file");
  }
  std::rewind(file);
  return file;
}

/// The content of such a file; closes it.
std::string TakeFile(FILE* file) {
  std::rewind(file);
  std::string text;
  for (int character = std::fgetc(file); character != EOF; character = std::fgetc(file)) {
    text += static_cast<char>(character);
  }
  std::fclose(file);
  return text;
}

/// The process's standard streams as files.
struct Streams {
  FILE* input;
  FILE* output;
  FILE* errors;
};

Streams OpenStreams(const Surroundings& surroundings) {
  const bool full = surroundings.output == Output::kFull;
  const Streams streams = {MakeFile(surroundings.input),
                           full ? std::fopen("/dev/full", "r+") : MakeFile({}), MakeFile({})};
  if (streams.output == nullptr) {
    throw std::runtime_error("cannot open /dev/full");
  }
  return streams;
}

/// Gives the process its streams, its directory and its variables; false when that fails.
bool Prepare(const Surroundings& surroundings, const Streams& streams) {
  const std::string& temporary = surroundings.temporary_directory;
  return dup2(fileno(streams.input), STDIN_FILENO) >= 0 &&
         dup2(fileno(streams.output), STDOUT_FILENO) >= 0 &&
         dup2(fileno(streams.errors), STDERR_FILENO) >= 0 &&
         (surroundings.output != Output::kClosed || close(STDOUT_FILENO) == 0) &&
         (temporary.empty() || setenv("TMPDIR", temporary.c_str(), 1) == 0) &&
         chdir(surroundings.directory.c_str()) == 0;
}

[[noreturn]] void BecomeProgram(Words arguments, const Surroundings& surroundings,
                                const Streams& streams) {
  std::string name = surroundings.program.empty() ? ONU_PROGRAM : surroundings.program;
  std::vector<char*> argv = {name.data()};
  for (std::string& argument : arguments) {
    argv.push_back(argument.data());
  }
  argv.push_back(nullptr);
  if (Prepare(surroundings, streams)) {
    execvp(name.c_str(), argv.data());
  }
  _exit(127);
}

}  // namespace

Finished RunProgram(const Words& arguments, const Surroundings& surroundings) {
  const Streams streams = OpenStreams(surroundings);
  const pid_t child = fork();
  if (child == 0) {
    BecomeProgram(arguments, surroundings, streams);
  }
  int status = 0;
  waitpid(child, &status, 0);
  std::fclose(streams.input);
  Finished finished;
  finished.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  if (surroundings.output == Output::kFull) {
    std::fclose(streams.output);
  } else {
    finished.out = TakeFile(streams.output);
  }
  finished.errors = TakeFile(streams.errors);
  return finished;
}

Finished RunProgramIn(const std::filesystem::path& directory, const Words& arguments,
                      const std::string& input) {
  Surroundings surroundings;
  surroundings.directory = directory;
  surroundings.input = input;
  return RunProgram(arguments, surroundings);
}

Finished RunProgramHere(const Words& arguments, const std::string& input) {
  return RunProgramIn(Sources(), arguments, input);
}

std::filesystem::path Sources() {
  return ONU_SOURCES;
}

std::filesystem::path ProgramPath() {
  return ONU_PROGRAM;
}

std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  if (!file || !(text << file.rdbuf())) {
    throw std::runtime_error("cannot read " + path.string());
  }
  return text.str();
}

}  // namespace onu::test
