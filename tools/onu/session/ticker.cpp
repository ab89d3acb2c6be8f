/// @file
/// Real seconds, and the interrupt that ends them.
#include "session/ticker.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <poll.h>
#include <sys/eventfd.h>
#include <system_error>
#include <unistd.h>

namespace onu {

namespace {

/// Where the handler finds the descriptor that it makes readable.
volatile std::sig_atomic_t interruptFd = -1;

extern "C" void NoteInterrupt(int /*signal*/) {
  const int error = errno;
  const std::uint64_t one = 1;
  // Nothing is left to do when it fails: the user will interrupt again.
  [[maybe_unused]] const ssize_t written = write(interruptFd, &one, sizeof(one));
  errno = error;
}

class RealTicker : public Ticker {
 public:
  RealTicker() : fd_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    if (fd_ < 0) {
      throw std::system_error(errno, std::generic_category(), "cannot wait for an interrupt");
    }
    interruptFd = fd_;
    struct sigaction action = {};
    action.sa_handler = NoteInterrupt;
    sigaction(SIGINT, &action, &before_);
  }

  ~RealTicker() override {
    sigaction(SIGINT, &before_, nullptr);
    interruptFd = -1;
    close(fd_);
  }

  bool second() override {
    using std::chrono::milliseconds;
    using std::chrono::steady_clock;
    const auto end = steady_clock::now() + std::chrono::seconds(1);
    std::array<pollfd, 1> fds = {{{.fd = fd_, .events = POLLIN, .revents = 0}}};
    for (auto left = milliseconds(1000); left.count() > 0;
         left = std::chrono::ceil<milliseconds>(end - steady_clock::now())) {
      if (poll(fds.data(), fds.size(), static_cast<int>(left.count())) > 0) {
        return false;
      }
    }
    return true;
  }

 private:
  int fd_;
  struct sigaction before_ = {};
};

}  // namespace

std::unique_ptr<Ticker> MakeRealTicker() {
  return std::make_unique<RealTicker>();
}

}  // namespace onu
