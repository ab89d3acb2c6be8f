/// @file
/// Fork, run, and bring the lines back through a pipe.
#include "support/in_child.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>

namespace hal_test {

namespace {

/// Writes everything; the reader is the parent, which reads to the end.
bool WriteAll(int fd, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = write(fd, text.data(), text.size());
    if (written <= 0) {
      return false;
    }
    text.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

[[noreturn]] void RunChild(int out, const std::function<std::vector<std::string>()>& work) {
  std::string text;
  for (const std::string& line : work()) {
    text += line + "\n";
  }
  static_cast<void>(std::fflush(nullptr));
  _exit(WriteAll(out, text) ? EXIT_SUCCESS : EXIT_FAILURE);
}

std::string ReadAll(int fd) {
  std::string text;
  std::array<char, 4096> buffer = {};
  for (ssize_t got = 0; (got = read(fd, buffer.data(), buffer.size())) > 0;) {
    text.append(buffer.data(), static_cast<std::size_t>(got));
  }
  return text;
}

}  // namespace

ChildReport InChild(const std::function<std::vector<std::string>()>& work) {
  std::array<int, 2> ends = {};
  if (pipe(ends.data()) != 0) {
    return {};
  }
  static_cast<void>(std::fflush(nullptr));
  const pid_t child = fork();
  if (child == 0) {
    close(ends[0]);
    RunChild(ends[1], work);
  }
  close(ends[1]);
  std::istringstream text(ReadAll(ends[0]));
  close(ends[0]);
  int status = 0;
  ChildReport report;
  report.finished = child > 0 && waitpid(child, &status, 0) == child && WIFEXITED(status) &&
                    WEXITSTATUS(status) == EXIT_SUCCESS;
  for (std::string line; std::getline(text, line);) {
    report.lines.push_back(line);
  }
  return report;
}

}  // namespace hal_test
