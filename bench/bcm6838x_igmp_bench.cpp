/// @file
/// The channel table when all its slots are used against the same operations when it is empty or
/// hit at once. Commands are served by the virtual unit, with its trace switched off.
#include <benchmark/benchmark.h>
#include <cstdint>

#include <bcm6838x_igmp.h>
#include <hal_bcm6838x.h>

#include "ratio_reporter.h"
#include "unit/unit.h"

namespace {

constexpr std::uint32_t kSlots = 1024;
constexpr std::uint32_t kPort = 1;

/// The group that slot `number` of a full table holds; any higher number is in none.
McastGroupRequest GroupOf(std::uint32_t number, bool ipv6) {
  McastGroupRequest request = {};
  request.vlan = 100;
  request.portMask = 1U << (kPort - 1);
  std::uint8_t* const last = ipv6 ? request.groupIpv6 + 14 : request.groupIpv4 + 2;
  (ipv6 ? request.groupIpv6 : request.groupIpv4)[0] = ipv6 ? 0xFF : 239;
  last[0] = static_cast<std::uint8_t>(number >> 8U);
  last[1] = static_cast<std::uint8_t>(number);
  return request;
}

/// A fresh unit with the first slots of the table in use; InitIgmp empties the table.
class Channels {
 public:
  explicit Channels(std::uint32_t used, bool ipv6 = false) {
    unit_.trace().setRecording(false);
    BCM6838X_InitDrv();
    BCM6838X_InitIgmp();
    for (std::uint32_t number = 0; number < used; ++number) {
      const McastGroupRequest request = GroupOf(number, ipv6);
      BCM6838X_AddMulticastMacAddr(&request);
    }
  }

 private:
  virtual_onu::Unit unit_;
};

void FindChannel(benchmark::State& state, std::uint32_t number, bool ipv6) {
  const Channels channels(kSlots, ipv6);
  const McastGroupRequest request = GroupOf(number, ipv6);
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(
        BCM6838X_FindTargetMcastChanSlot(request.groupIpv4, request.groupIpv6, kPort));
  }
}

void FindRoom(benchmark::State& state, std::uint32_t used) {
  const Channels channels(used);
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(BCM6838X_FindUnuseMcastChanSlot());
  }
}

/// A join and a leave beside other channels: two commands.
void JoinAndLeave(benchmark::State& state, std::uint32_t others) {
  const Channels channels(others);
  const McastGroupRequest request = GroupOf(kSlots, false);
  for ([[maybe_unused]] auto _ : state) {
    BCM6838X_AddMulticastMacAddr(&request);
    benchmark::DoNotOptimize(BCM6838X_DelMulticastMacAddr(&request));
  }
}

}  // namespace

BENCHMARK_CAPTURE(FindChannel, First, 0, false)->Name("channel of 1024, IPv4/first");
BENCHMARK_CAPTURE(FindChannel, Last, kSlots - 1, false)->Name("channel of 1024, IPv4/last");
BENCHMARK_CAPTURE(FindChannel, Miss, kSlots, false)->Name("channel of 1024, IPv4/miss");
BENCHMARK_CAPTURE(FindChannel, FirstIpv6, 0, true)->Name("channel of 1024, IPv6/first");
BENCHMARK_CAPTURE(FindChannel, LastIpv6, kSlots - 1, true)->Name("channel of 1024, IPv6/last");
BENCHMARK_CAPTURE(FindRoom, Empty, 0)->Name("free slot/of an empty table");
BENCHMARK_CAPTURE(FindRoom, Full, kSlots)->Name("free slot/of a full table");
BENCHMARK_CAPTURE(JoinAndLeave, Alone, 0)->Name("join and leave/alone");
BENCHMARK_CAPTURE(JoinAndLeave, Last, kSlots - 1)->Name("join and leave/as 1024th");

int main(int argc, char** argv) {
  return RunComparisons(argc, argv);
}
