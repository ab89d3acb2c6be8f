/// @file
/// Tests of the interactive prompt on a terminal of its own.
#include <array>
#include <gmock/gmock.h>
#include <poll.h>
#include <pty.h>
#include <string>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include "run_program.h"

namespace onu {
namespace {

using testing::HasSubstr;

/// The program on a terminal, which types and reads like a person.
class Prompt {
 public:
  Prompt() : child_(forkpty(&terminal_, nullptr, nullptr, nullptr)) {
    if (child_ == 0) {
      setenv("TERM", "dumb", 1);
      const std::string program = test::ProgramPath();
      execl(program.c_str(), "onu", nullptr);
      _exit(127);
    }
  }

  ~Prompt() {
    close(terminal_);
    if (!ended_) {
      waitpid(child_, nullptr, 0);
    }
  }

  Prompt(const Prompt&) = delete;
  Prompt& operator=(const Prompt&) = delete;

  void type(const std::string& text) const {
    ASSERT_EQ(write(terminal_, text.data(), text.size()), static_cast<ssize_t>(text.size()));
  }

  /// Reads what is shown up to and including `end`; fails the test when it does not come.
  void readUntil(const std::string& end) {
    while (shown_.find(end) == std::string::npos && readMore()) {
    }
    ASSERT_THAT(shown_, HasSubstr(end));
    shown_.erase(0, shown_.find(end) + end.size());
  }

  /// Waits until the program is ready for what is typed. The prompt stands before the terminal is
  /// switched to single characters.
  void awaitPrompt() {
    readUntil("onu> ");
    termios mode = {};
    int waited = 0;
    do {
      poll(nullptr, 0, 1);
      ASSERT_EQ(tcgetattr(terminal_, &mode), 0);
      ASSERT_LT(++waited, kPatience);
    } while ((mode.c_lflag & static_cast<tcflag_t>(ICANON)) != 0);
  }

  /// The exit status, once the program ends by itself.
  int end() {
    while (readMore()) {
    }
    int status = 0;
    waitpid(child_, &status, 0);
    ended_ = true;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

 private:
  static constexpr int kPatience = 20'000;  ///< milliseconds

  bool readMore() {
    pollfd waiting = {terminal_, POLLIN, 0};
    std::array<char, 1024> part = {};
    if (poll(&waiting, 1, kPatience) != 1) {
      return false;
    }
    const ssize_t length = read(terminal_, part.data(), part.size());
    if (length <= 0) {
      return false;
    }
    shown_.append(part.data(), static_cast<std::size_t>(length));
    return true;
  }

  std::string shown_;  ///< what was shown and not yet read
  int terminal_ = -1;
  pid_t child_;
  bool ended_ = false;
};

TEST(Prompt, Commands_RunAndErrorsDoNotEndIt) {
  Prompt prompt;
  prompt.awaitPrompt();
  prompt.type("nonsense\n");
  prompt.readUntil("onu: unknown command \"nonsense\"");
  prompt.awaitPrompt();
  prompt.type("InitDrv\n");
  prompt.readUntil("BCM6838X_InitDrv() = 0 (ok)");
  prompt.awaitPrompt();
  prompt.type("quit\n");
  EXPECT_EQ(prompt.end(), 0);
}

TEST(Prompt, Tab_CompletesTheWord) {
  Prompt prompt;
  prompt.awaitPrompt();
  prompt.type("ec\tdone\n");
  prompt.readUntil("\ndone");
  prompt.awaitPrompt();
  prompt.type("quit\n");
  EXPECT_EQ(prompt.end(), 0);
}

TEST(Prompt, Tab_ListsTheChoices) {
  Prompt prompt;
  prompt.awaitPrompt();
  prompt.type("journal \t");
  prompt.readUntil("replay  save");
  prompt.type("\x15quit\n");
  EXPECT_EQ(prompt.end(), 0);
}

TEST(Prompt, Up_BringsTheLastLineBack) {
  Prompt prompt;
  prompt.awaitPrompt();
  prompt.type("echo a\"b\"c\n");
  prompt.readUntil("\nabc");
  prompt.awaitPrompt();
  prompt.type("\x10\n");
  prompt.readUntil("\nabc");
  prompt.awaitPrompt();
  prompt.type("quit\n");
  EXPECT_EQ(prompt.end(), 0);
}

TEST(Prompt, EndOfInput_EndsIt) {
  Prompt prompt;
  prompt.awaitPrompt();
  prompt.type("\x04");
  EXPECT_EQ(prompt.end(), 0);
}

}  // namespace
}  // namespace onu
