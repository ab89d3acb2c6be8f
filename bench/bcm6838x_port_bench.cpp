/// @file
/// Reading a port's media type against the bare sequence of requests that it must make.
#include <array>
#include <benchmark/benchmark.h>
#include <cstdint>
#include <cstring>
#include <linux/mii.h>
#include <linux/sockios.h>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <bcm6838x_port.h>

#include "ratio_reporter.h"
#include "unit/unit.h"

namespace {

constexpr char kInterface[] = "eth0";

/// Registers in the order in which an auto-negotiated link is read.
constexpr std::array<std::uint16_t, 8> kRegisters = {0, 1, 4, 5, 9, 10, 1, 1};

std::uint16_t ReadRegister(int socket, ifreq& request, std::uint16_t phy, std::uint16_t reg) {
  const mii_ioctl_data ask = {phy, reg, 0, 0};
  std::memcpy(&request.ifr_ifru, &ask, sizeof(ask));
  ioctl(socket, SIOCGMIIREG, &request);
  mii_ioctl_data answer;
  std::memcpy(&answer, &request.ifr_ifru, sizeof(answer));
  return answer.val_out;
}

void MediaTypeBare(benchmark::State& state) {
  virtual_onu::Unit unit;
  unit.trace().setRecording(false);
  for ([[maybe_unused]] auto _ : state) {
    ifreq request = {};
    std::memcpy(&request.ifr_name, kInterface, sizeof(kInterface));
    const int fd = socket(AF_INET, SOCK_DGRAM, 0);
    ioctl(fd, SIOCGIFINDEX, &request);
    ioctl(fd, SIOCGMIIPHY, &request);
    mii_ioctl_data answer;
    std::memcpy(&answer, &request.ifr_ifru, sizeof(answer));
    for (const std::uint16_t reg : kRegisters) {
      benchmark::DoNotOptimize(ReadRegister(fd, request, answer.phy_id, reg));
    }
    close(fd);
  }
}

void MediaTypeByLibrary(benchmark::State& state) {
  virtual_onu::Unit unit;
  unit.trace().setRecording(false);
  std::uint32_t type = 0;
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(BCM6838X_GetMediaType(1, &type));
  }
}

}  // namespace

BENCHMARK(MediaTypeBare)->Name("media type/bare");
BENCHMARK(MediaTypeByLibrary)->Name("media type/BCM6838X_GetMediaType");

int main(int argc, char** argv) {
  return RunComparisons(argc, argv);
}
