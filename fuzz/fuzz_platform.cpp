/// @file
/// The device's descriptor as a pipe, and the calls through which the kernel event task waits.
#include "fuzz_platform.h"

#include <array>
#include <cerrno>
#include <csetjmp>
#include <cstdlib>
#include <cstring>
#include <sys/select.h>
#include <sys/socket.h>
#include <unistd.h>

#include <bcm6838x_vlan_port.h>
#include <hal_bcm6838x.h>

#include "support/library_tables.h"

extern "C" {
#include <c_platform.h>
}

namespace fuzz {

namespace {

std::jmp_buf monitorEnd;
const std::vector<Bytes>* monitorDatagrams = nullptr;
std::size_t monitorNext = 0;

/// The writing end of the pipe whose reading end the library has opened.
int DeviceEnd() {
  static const int end = [] {
    std::array<int, 2> ends = {};
    Require(pipe(ends.data()) == 0);
    g_platform.descriptor = ends[0];
    g_platform.features = 1;
    Require(BCM6838X_InitDrv() == BCM6838X_OK);
    return ends[1];
  }();
  return end;
}

std::uint16_t Vid(Input& input) {
  return static_cast<std::uint16_t>(input.number(2) & 0x0FFF);
}

}  // namespace

void Require(bool condition) {
  if (!condition) {
    std::abort();
  }
}

void ConfigurePorts(Input& input) {
#define TAKE_CODE(code, name, text) code,
  constexpr std::array<std::uint32_t, 12> kModes = {BCM6838X_VLAN_MODE_LIST(TAKE_CODE) 7, 256};
#undef TAKE_CODE
  constexpr std::array<std::size_t, 4> kPlaces = {0, 63, 64, 511};
  std::memset(g_PortVlanInfo, 0, sizeof(g_PortVlanInfo));
  for (std::size_t port = 0; port < PLATFORM_ETH_PORTS; ++port) {
    PortVlanInfo& info = g_PortVlanInfo[port];
    info.vlanMode = kModes[input.byte() % kModes.size()];
    info.pvid = Vid(input);
    info.priority = input.byte();
    const std::size_t place = kPlaces[input.byte() % kPlaces.size()];
    info.trunkList[place].vid = Vid(input);
    info.translationList[place] = {1, 0, input.byte(), Vid(input), input.byte(), Vid(input)};
    info.stackingList[place] = {1, {}, 2, Vid(input), 0, Vid(input)};
  }
}

void PutEvent(const BrmgrEvent& event) {
  Require(write(DeviceEnd(), &event, sizeof(event)) == sizeof(event));
}

void RunMonitor(const std::vector<Bytes>& datagrams) {
  monitorDatagrams = &datagrams;
  monitorNext = 0;
  g_platform.monitorSocket = PLATFORM_SOCKET;
  g_platform.journal[0] = 0;
  // No exception finds its way through the library. NOLINTNEXTLINE(cert-err52-cpp)
  if (setjmp(monitorEnd) == 0) {
    BCM6838X_kernelEvent();
  }
  monitorDatagrams = nullptr;
}

}  // namespace fuzz

extern "C" {

int select(int /*count*/, fd_set* /*read*/, fd_set* /*write*/, fd_set* /*except*/,
           timeval* /*timeout*/) {
  fuzz::Require(fuzz::monitorDatagrams != nullptr);
  if (fuzz::monitorNext == fuzz::monitorDatagrams->size()) {
    // NOLINTNEXTLINE(cert-err52-cpp)
    std::longjmp(fuzz::monitorEnd, 1);
  }
  return 1;
}

ssize_t recvmsg(int fd, msghdr* message, int /*flags*/) {
  fuzz::Require(fd == PLATFORM_SOCKET && message->msg_iovlen == 1);
  const fuzz::Bytes& datagram = fuzz::monitorDatagrams->at(fuzz::monitorNext++);
  const std::size_t size = std::min(datagram.size(), message->msg_iov->iov_len);
  std::copy_n(datagram.begin(), size, static_cast<std::uint8_t*>(message->msg_iov->iov_base));
  return static_cast<ssize_t>(size);
}

}  // extern "C"
