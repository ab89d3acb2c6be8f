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

[[noreturn]] void BecomeProgram(const std::filesystem::path& directory, Words arguments,
                                const std::vector<FILE*>& files) {
  std::string name = "onu";
  std::vector<char*> argv = {name.data()};
  for (std::string& argument : arguments) {
    argv.push_back(argument.data());
  }
  argv.push_back(nullptr);
  for (int descriptor = 0; descriptor < static_cast<int>(files.size()); ++descriptor) {
    dup2(fileno(files[static_cast<std::size_t>(descriptor)]), descriptor);
  }
  if (chdir(directory.c_str()) == 0) {
    execv(ONU_PROGRAM, argv.data());
  }
  _exit(127);
}

}  // namespace

Finished RunProgramIn(const std::filesystem::path& directory, const Words& arguments,
                      const std::string& input) {
  const std::vector<FILE*> files = {MakeFile(input), MakeFile({}), MakeFile({})};
  const pid_t child = fork();
  if (child == 0) {
    BecomeProgram(directory, arguments, files);
  }
  int status = 0;
  waitpid(child, &status, 0);
  std::fclose(files[0]);
  Finished finished;
  finished.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  finished.out = TakeFile(files[1]);
  finished.errors = TakeFile(files[2]);
  return finished;
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
