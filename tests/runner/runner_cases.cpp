/// @file
/// Cases that end in every way that a case can end, for the check of the runner.
#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <gmock/gmock.h>
#include <iostream>
#include <poll.h>
#include <string>
#include <sys/resource.h>
#include <unistd.h>

namespace {

/// The first descriptor that is free, before the runner opens anything.
int FreeDescriptor() {
  const int descriptor = open("/dev/null", O_RDONLY | O_CLOEXEC);
  close(descriptor);
  return descriptor;
}
const int kFreeAtStart = FreeDescriptor();

int environments = 0;

class Environment : public testing::Environment {
  void SetUp() override {
    ++environments;
    if (std::getenv("SKIP_ALL") != nullptr) {
      GTEST_SKIP() << "nothing today";
    }
  }
};
const testing::Environment* const kEnvironment = testing::AddGlobalTestEnvironment(new Environment);

// What one case leaves, the other must not find.
int left = 0;

TEST(Passes, First_LeavesState) {
  EXPECT_EQ(left++, 0);
}

TEST(Passes, Second_LeavesState) {
  EXPECT_EQ(left++, 0);
}

TEST(Passes, Environment_IsSetUpOnce) {
  EXPECT_EQ(environments, 1);
}

TEST(Passes, Signals_AreAsAtTheStart) {
  sigset_t blocked = {};
  ASSERT_EQ(sigprocmask(SIG_BLOCK, nullptr, &blocked), 0);
  EXPECT_EQ(sigismember(&blocked, SIGCHLD), 0);
  struct sigaction action = {};
  ASSERT_EQ(sigaction(SIGCHLD, nullptr, &action), 0);
  EXPECT_EQ(action.sa_handler, SIG_DFL);
}

TEST(Passes, Descriptors_AreAsAtTheStart) {
  EXPECT_EQ(FreeDescriptor(), kFreeAtStart);
}

TEST(Passes, Input_IsEmpty) {
  EXPECT_EQ(std::getchar(), EOF);
}

/// The file by which two cases meet.
std::string MeetingFile() {
  const char* path = std::getenv("MEETING_FILE");
  return path == nullptr ? "" : path;
}

// Both at once: the first waits for the second.
TEST(Meet, First_Waits) {
  constexpr int kRounds = 1000;
  for (int i = 0; i < kRounds && !std::ifstream(MeetingFile()); ++i) {
    poll(nullptr, 0, 10);
  }
  EXPECT_TRUE(std::ifstream(MeetingFile())) << "nobody came";
}

TEST(Meet, Second_HasNoDescriptorOfTheFirst) {
  EXPECT_EQ(FreeDescriptor(), kFreeAtStart);
  EXPECT_TRUE(std::ofstream(MeetingFile()));
}

class Numbers : public testing::TestWithParam<int> {};

TEST_P(Numbers, Parameter_IsPassed) {
  EXPECT_THAT(GetParam(), testing::AnyOf(7, 8));
}

INSTANTIATE_TEST_SUITE_P(Few, Numbers, testing::Values(7, 8));

/// Names that hold what means something else in a filter.
struct OddNames {
  template <typename Type>
  static std::string GetName(int index) {
    return index == 0 ? "odd:name-one*" : "odd:name-two*";
  }
};

template <typename Type>
class Typed : public testing::Test {};

using TwoTypes = testing::Types<char, int>;
TYPED_TEST_SUITE(Typed, TwoTypes, OddNames);

TYPED_TEST(Typed, Size_IsOfTheType) {
  EXPECT_LE(sizeof(TypeParam), sizeof(int));
}

TEST(Fails, Expectation_IsNotMet) {
  std::cout << "said on standard output" << std::endl;
  std::cerr << "said on standard error" << std::endl;
  EXPECT_EQ(left, 1) << "reason of the case";
}

TEST(Fails, Exception_IsNotCaught) {
  throw std::runtime_error("thrown by the case");
}

TEST(Crashes, Signal_EndsTheProcess) {
  const rlimit none = {};
  setrlimit(RLIMIT_CORE, &none);
  std::fputs("about to crash\n", stderr);
  std::abort();
}

TEST(Exits, Zero_InTheMiddle) {
  std::exit(0);
}

TEST(Exits, Zero_InTheMiddleAtOnce) {
  _exit(0);
}

TEST(Exits, Three_InTheMiddle) {
  std::exit(3);
}

TEST(Exits, Seven_AtTheEndOfTheProcess) {
  std::atexit([] { _exit(7); });
}

[[noreturn]] void Stay() {
  while (true) {
    pause();
  }
}

void TellNumber(pid_t process) {
  std::ofstream(MeetingFile()) << process << '\n';
}

/// Starts a process that stays, and tells its number.
void StartOneThatStays() {
  const pid_t process = fork();
  if (process == 0) {
    Stay();
  }
  TellNumber(process);
}

TEST(Stays, Case_AndItsProcess) {
  StartOneThatStays();
  Stay();
}

TEST(Leaves, Process_IsStillRunning) {
  StartOneThatStays();
}

TEST(Waits, Case_TellsItsNumber) {
  TellNumber(getpid());
  Stay();
}

TEST(Leaks, Memory_IsLost) {
  constexpr std::size_t kSize = 4321;
  static char* volatile lost = new char[kSize];
  EXPECT_NE(lost, nullptr);
  lost = nullptr;
}

TEST(Skips, Case_SaysWhy) {
  GTEST_SKIP() << "nothing to test here\nsecond line";
}

class FailedSuite : public testing::Test {
 protected:
  static void SetUpTestSuite() { FAIL() << "no set-up"; }
};

TEST_F(FailedSuite, Case_DoesNotRun) {}

TEST(Off, DISABLED_Case_Fails) {
  FAIL() << "it was disabled";
}

}  // namespace
