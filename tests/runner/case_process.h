/// @file
/// The process of one case, from its fork to the verdict.
#pragma once

#include <chrono>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <sys/types.h>
#include <unistd.h>
#include <utility>

#include "runner/cases.h"

namespace test_runner {

enum class Verdict { kPassed, kFailed, kSkipped };

/// What came of a case.
struct Outcome {
  std::string name;
  Verdict verdict = Verdict::kFailed;
  std::string reason;  ///< why it failed or was skipped
  std::string output;  ///< what it wrote on both streams
  std::chrono::milliseconds took{};
};

/// A forked process that runs a case. It leads a process group, writes into a file of its own and
/// reads nothing.
class CaseProcess {
 public:
  /// Starts it.
  /// @param[in] prepare called first of all in the new process
  /// @throw std::system_error there is no process, file or memory left
  CaseProcess(std::string name, const std::function<void()>& prepare);

  /// Closes what a new process has inherited of this one.
  void forget() const { close(fileno(output_.get())); }

  [[nodiscard]] bool ended() const;
  [[nodiscard]] std::chrono::milliseconds age() const;

  /// Kills its whole group because it took too long.
  void stop();

  /// Kills what it left running and tells what came of it, once it has ended.
  Outcome finish();

 private:
  using Clock = std::chrono::steady_clock;
  using File = std::unique_ptr<FILE, int (*)(FILE*)>;
  using Report = std::unique_ptr<CaseReport, void (*)(CaseReport*)>;

  [[noreturn]] void run() noexcept;
  /// The verdict and its reason.
  [[nodiscard]] std::pair<Verdict, std::string> judge(int status) const;

  std::string name_;
  File output_;
  Report report_;
  Clock::time_point start_ = Clock::now();
  bool stopped_ = false;
  pid_t process_;
};

}  // namespace test_runner
