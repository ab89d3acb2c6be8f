/// @file
/// Redirection of standard output into memory.
#include "session/console.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/mman.h>
#include <system_error>
#include <unistd.h>

namespace onu {

namespace {

/// The result of a system call; throws when it failed.
int Checked(int result, const char* what) {
  if (result < 0) {
    throw std::system_error(errno, std::generic_category(), what);
  }
  return result;
}

/// Another stream to where standard output leads. It is made first, so that no other file takes the
/// place of a standard output that is closed.
FILE* DuplicateOutput() {
  constexpr int kFirstFree = 3;
  std::fflush(stdout);
  FILE* stream =
      fdopen(Checked(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, kFirstFree), "standard output"), "w");
  Checked(stream == nullptr ? -1 : 0, "standard output");
  return stream;
}

}  // namespace

Console::Console()
    : terminal_(DuplicateOutput()),
      memory_(Checked(memfd_create("console", MFD_CLOEXEC), "memory for standard output")) {
  // Appending, so that the position belongs to nobody and the reader cannot disturb a writer.
  Checked(fcntl(memory_, F_SETFL, O_APPEND), "memory for standard output");
  Checked(dup2(memory_, STDOUT_FILENO), "standard output");
}

Console::~Console() {
  std::fflush(stdout);
  dup2(fileno(terminal_), STDOUT_FILENO);
  std::fclose(terminal_);
  close(memory_);
}

std::string Console::take() {
  std::fflush(stdout);
  std::string text;
  std::array<char, 4096> part = {};
  ssize_t length = 0;
  while ((length = pread(memory_, part.data(), part.size(), taken_)) > 0) {
    text.append(part.data(), static_cast<std::size_t>(length));
    taken_ += length;
  }
  return text;
}

}  // namespace onu
