/// @file
/// The shell that the platform runs command lines in: it understands the lines of the data-path
/// shell "bs" and of the Ethernet tool "ethctl", and runs nothing on the machine.
#pragma once

#include <mutex>
#include <string>

#include "base/fault_plan.h"
#include "base/trace.h"
#include "shell/board.h"
#include "shell/path_objects.h"

namespace virtual_onu {

/// Lines are carried out one at a time; what objects() and faults() hand out has no lock. Threads:
/// see Unit.
class Shell {
 public:
  explicit Shell(const ShellBoard& board) : board_(board) {}

  /// Carries out a line and returns it as it is to be traced. Refused, with a result other than 0
  /// and the reason, are lines of the two tools that are malformed, that name what does not exist
  /// or create what exists, and lines that a fault rule meets; they change nothing. A line of any
  /// other program is taken and does nothing.
  ShellEvent run(std::string line);

  [[nodiscard]] const PathObjects& objects() const { return objects_; }
  FaultPlan& faults() { return faults_; }

 private:
  ShellBoard board_;
  std::mutex mutex_;
  PathObjects objects_;
  FaultPlan faults_;
};

}  // namespace virtual_onu
