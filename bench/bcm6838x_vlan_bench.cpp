/// @file
/// The VLAN tables when they are full against the same operations when they are empty or hit at
/// once. Shell lines and commands are served by the virtual unit, with its trace switched off.
#include <benchmark/benchmark.h>
#include <cstdint>

#include <bcm6838x_vlan.h>
#include <brmgr_record.h>
#include <hal_bcm6838x.h>

#include "ratio_reporter.h"
#include "unit/unit.h"

namespace {

constexpr std::uint32_t kEntries = 256;
constexpr std::uint32_t kMissing = 4000;
constexpr std::uint32_t kPort = 1;
constexpr std::uint32_t kLanVid = 10;

/// A fresh unit with its classes; the library's tables outlive it, so each benchmark empties what
/// it filled.
class Bench {
 public:
  Bench() {
    unit_.trace().setRecording(false);
    BCM6838X_InitDrv();
    BCM6838X_RdpaIcInit();
  }

 private:
  virtual_onu::Unit unit_;
};

VlanActionRule PushTag(std::uint32_t vid) {
  return {0x101, {{static_cast<std::uint16_t>(vid), 0, 0, 0x8100}, {}}, BRMGR_DIR_UPSTREAM, 0};
}

/// The pool with all its entries in use, for VIDs from 1.
class FullPool : public Bench {
 public:
  FullPool() {
    for (std::uint32_t vid = 1; vid <= kEntries; ++vid) {
      BCM6838X_AddVlanAction(PushTag(vid), 1);
    }
  }
  ~FullPool() {
    for (std::uint32_t index = 0; index < kEntries; ++index) {
      BCM6838X_DelVlanAction({0, {}, BRMGR_DIR_UPSTREAM, index});
    }
  }
  FullPool(const FullPool&) = delete;
  FullPool& operator=(const FullPool&) = delete;
};

/// The table of downstream flows with all its entries in use, for VIDs from 1.
class FullFlowTable : public Bench {
 public:
  FullFlowTable() {
    for (std::uint32_t vid = 1; vid <= kEntries; ++vid) {
      BCM6838X_AddDsIngressClass(vid, 1, 1);
    }
  }
  ~FullFlowTable() {
    for (std::uint32_t vid = 1; vid <= kEntries; ++vid) {
      BCM6838X_DelDsIngressClass(vid, 1);
    }
  }
  FullFlowTable(const FullFlowTable&) = delete;
  FullFlowTable& operator=(const FullFlowTable&) = delete;
};

/// WAN objects of VIDs from 1, each with one LAN VID of one port.
class WanObjects : public Bench {
 public:
  explicit WanObjects(std::uint32_t count) : count_(count) {
    for (std::uint32_t vid = 1; vid <= count_; ++vid) {
      BCM6838X_AddWanVlan(kPort, vid, kLanVid);
    }
  }
  ~WanObjects() {
    for (std::uint32_t vid = 1; vid <= count_; ++vid) {
      BCM6838X_DelWanVlan(kPort, vid, kLanVid);
    }
  }
  WanObjects(const WanObjects&) = delete;
  WanObjects& operator=(const WanObjects&) = delete;

 private:
  std::uint32_t count_;
};

void GetAction(benchmark::State& state, std::uint32_t vid) {
  const FullPool pool;
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(BCM6838X_GetVlanAction(PushTag(vid)));
  }
}

void GetFlow(benchmark::State& state, std::uint32_t vid) {
  const FullFlowTable table;
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(BCM6838X_GetDsIngressClass(vid, 1));
  }
}

/// Makes and destroys one object beside the others: four shell lines.
void MakeAndDestroyWan(benchmark::State& state, std::uint32_t others) {
  const WanObjects objects(others);
  for ([[maybe_unused]] auto _ : state) {
    BCM6838X_AddWanVlan(kPort, kMissing, kLanVid);
    benchmark::DoNotOptimize(BCM6838X_DelWanVlan(kPort, kMissing, kLanVid));
  }
}

/// Adds a LAN VID to the last object and takes it away: two shell lines.
void ExtendLastWan(benchmark::State& state, std::uint32_t count) {
  const WanObjects objects(count);
  for ([[maybe_unused]] auto _ : state) {
    BCM6838X_AddWanVlan(kPort, count, kLanVid + 1);
    benchmark::DoNotOptimize(BCM6838X_DelWanVlan(kPort, count, kLanVid + 1));
  }
}

/// Adds what the last object has already: the search alone.
void AddToLastWanAgain(benchmark::State& state, std::uint32_t count) {
  const WanObjects objects(count);
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(BCM6838X_AddWanVlan(kPort, count, kLanVid));
  }
}

/// Deletes from an object that does not exist: the search alone.
void DeleteUnknownWan(benchmark::State& state, std::uint32_t count) {
  const WanObjects objects(count);
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(BCM6838X_DelWanVlan(kPort, kMissing, kLanVid));
  }
}

}  // namespace

BENCHMARK_CAPTURE(GetAction, First, 1)->Name("action of 256/first");
BENCHMARK_CAPTURE(GetAction, Last, kEntries)->Name("action of 256/last");
BENCHMARK_CAPTURE(GetAction, Miss, kMissing)->Name("action of 256/miss");
BENCHMARK_CAPTURE(GetFlow, First, 1)->Name("downstream flow of 256/first");
BENCHMARK_CAPTURE(GetFlow, Last, kEntries)->Name("downstream flow of 256/last");
BENCHMARK_CAPTURE(GetFlow, Miss, kMissing)->Name("downstream flow of 256/miss");
BENCHMARK_CAPTURE(MakeAndDestroyWan, Empty, 0)->Name("WAN make and destroy/alone");
BENCHMARK_CAPTURE(MakeAndDestroyWan, Full, kEntries - 1)->Name("WAN make and destroy/as 256th");
BENCHMARK_CAPTURE(ExtendLastWan, One, 1)->Name("WAN extend and shrink/of 1");
BENCHMARK_CAPTURE(ExtendLastWan, Full, kEntries)->Name("WAN extend and shrink/last of 256");
BENCHMARK_CAPTURE(AddToLastWanAgain, One, 1)->Name("WAN add again/of 1");
BENCHMARK_CAPTURE(AddToLastWanAgain, Full, kEntries)->Name("WAN add again/last of 256");
BENCHMARK_CAPTURE(DeleteUnknownWan, Empty, 0)->Name("WAN delete unknown/of 0");
BENCHMARK_CAPTURE(DeleteUnknownWan, Full, kEntries)->Name("WAN delete unknown/of 256");

int main(int argc, char** argv) {
  return RunComparisons(argc, argv);
}
