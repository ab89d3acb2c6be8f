/// @file
/// Forking, and reading what is left when the process has ended.
#include "runner/case_process.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <new>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <system_error>
#include <utility>

namespace test_runner {

namespace {

[[noreturn]] void Fail(const char* what) {
  throw std::system_error(errno, std::generic_category(), what);
}

FILE* MakeFile() {
  FILE* file = std::tmpfile();
  if (file == nullptr) {
    Fail("cannot make a temporary file");
  }
  return file;
}

/// A report that a process forked later shares with this one.
CaseReport* MakeReport() {
  void* memory =
      mmap(nullptr, sizeof(CaseReport), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) {
    Fail("cannot make shared memory");
  }
  return new (memory) CaseReport;
}

void FreeReport(CaseReport* report) {
  munmap(report, sizeof(CaseReport));
}

std::string Content(FILE* file) {
  std::rewind(file);
  std::string text;
  std::array<char, 4096> part = {};
  for (std::size_t got = 0; (got = std::fread(part.data(), 1, part.size(), file)) > 0;) {
    text.append(part.data(), got);
  }
  return text;
}

}  // namespace

CaseProcess::CaseProcess(std::string name, const std::function<void()>& prepare)
    : name_(std::move(name)), output_(MakeFile(), std::fclose), report_(MakeReport(), FreeReport) {
  static_cast<void>(std::fflush(nullptr));
  process_ = fork();
  if (process_ < 0) {
    Fail("cannot make a process");
  }
  if (process_ == 0) {
    prepare();
    run();
  }
}

/// Ends by exit(), so that what looks for leaks at the end of a process does.
void CaseProcess::run() noexcept {
  setpgid(0, 0);
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  const int output = fileno(output_.get());
  const int nothing = open("/dev/null", O_RDONLY | O_CLOEXEC);
  if (dup2(nothing, STDIN_FILENO) < 0 || dup2(output, STDOUT_FILENO) < 0 ||
      dup2(output, STDERR_FILENO) < 0) {
    _exit(EXIT_FAILURE);
  }
  close(nothing);
  close(output);
  std::exit(RunCase(name_, *report_));
}

bool CaseProcess::ended() const {
  siginfo_t info = {};
  return waitid(P_PID, static_cast<id_t>(process_), &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
         info.si_pid == process_;
}

std::chrono::milliseconds CaseProcess::age() const {
  return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start_);
}

void CaseProcess::stop() {
  stopped_ = true;
  kill(-process_, SIGKILL);
}

Outcome CaseProcess::finish() {
  const std::chrono::milliseconds took = age();
  // As long as the process is not waited for, its number means nobody else's group.
  kill(-process_, SIGKILL);
  int status = 0;
  waitpid(process_, &status, 0);
  auto [verdict, reason] = judge(status);
  return {name_, verdict, std::move(reason), Content(output_.get()), took};
}

std::pair<Verdict, std::string> CaseProcess::judge(int status) const {
  if (WIFSIGNALED(status)) {
    const int signal = WTERMSIG(status);
    return {Verdict::kFailed,
            stopped_ ? "timed out" : "signal " + std::to_string(signal) + ", " + strsignal(signal)};
  }
  const std::string code = "exit status " + std::to_string(WEXITSTATUS(status));
  switch (report_->end) {
    case CaseReport::End::kNone:
      return {Verdict::kFailed, "ended in the middle, " + code};
    case CaseReport::End::kFailed:
      return {Verdict::kFailed, "expectations not met"};
    case CaseReport::End::kPassed:
    case CaseReport::End::kSkipped:
      break;
  }
  if (WEXITSTATUS(status) != EXIT_SUCCESS) {
    return {Verdict::kFailed, "failed at the end of its process, " + code};
  }
  return {report_->end == CaseReport::End::kPassed ? Verdict::kPassed : Verdict::kSkipped,
          report_->reason.data()};
}

}  // namespace test_runner
