/// @file
/// The process's standard output, divided: what the library prints is caught and handed over on
/// request; what the program prints goes to where standard output led before.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace onu {

/// From construction to destruction, descriptor 1 leads into memory. There is one at a time.
class Console {
 public:
  Console();
  ~Console();
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;

  /// What was printed on standard output since the last call, from whichever thread.
  std::string take();

  /// Where standard output led before.
  [[nodiscard]] FILE* terminal() const { return terminal_; }

 private:
  FILE* terminal_;
  int memory_;
  off_t taken_ = 0;
};

}  // namespace onu
