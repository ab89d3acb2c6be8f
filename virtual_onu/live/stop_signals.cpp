/// @file
/// Signals as a descriptor.
#include "live/stop_signals.h"

#include <array>
#include <cerrno>
#include <sys/signalfd.h>
#include <system_error>
#include <unistd.h>

namespace virtual_onu {
namespace {

sigset_t StoppingSignals() {
  sigset_t signals = {};
  sigemptyset(&signals);
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    sigaddset(&signals, number);
  }
  return signals;
}

int OpenSignals() {
  const sigset_t signals = StoppingSignals();
  const int fd = signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
  if (fd < 0) {
    throw std::system_error(errno, std::generic_category(), "cannot wait for signals");
  }
  return fd;
}

}  // namespace

StopSignals::StopSignals() : fd_(OpenSignals()) {
  const sigset_t signals = StoppingSignals();
  pthread_sigmask(SIG_BLOCK, &signals, &before_);
}

/// Signals that came are taken: what they asked for was done.
StopSignals::~StopSignals() {
  signalfd_siginfo taken = {};
  while (read(fd_.get(), &taken, sizeof(taken)) == sizeof(taken)) {
  }
  pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

}  // namespace virtual_onu
