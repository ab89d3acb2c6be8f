/// @file
/// The packet path: searches of full VLAN lists against a plain loop, tagging against the bare
/// moves, a packet library and the data-plane development kit, and the capture of an event in each
/// VLAN mode against its read and copies alone. The virtual unit's trace is switched off.
#include <array>
#include <benchmark/benchmark.h>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>
#include <tins/tins.h>
#include <unistd.h>
#include <variant>
#include <vector>

#include <bcm6838x_vlan_port.h>
#include <brmgr_record.h>
#include <hal_bcm6838x.h>
#include <platform_vos.h>

#include "frame/words.h"
#include "ratio_reporter.h"
#include "unit/unit.h"
#ifdef BENCH_WITH_DPDK
#include "dpdk_variants.h"
#endif

namespace {

using virtual_onu::Bytes;
using SetMode = std::uint32_t (*)(std::uint32_t port);

constexpr std::uint32_t kPort = 1;
constexpr std::uint16_t kPvid = 100;
constexpr std::uint16_t kMissing = 7;
constexpr std::uint16_t kFirstVid = 1000;
constexpr std::size_t kEntries = 512;
/// The VID of the last entry of a full list.
constexpr std::uint16_t kLastVid = kFirstVid + kEntries - 1;
constexpr std::uint16_t kServiceVid = 3000;
/// Seconds; filling the queue takes several times as long as what is measured.
constexpr double kShortTime = 0.1;

/// The frame that words describe.
Bytes FrameOf(const std::vector<std::string>& words) {
  const virtual_onu::FrameOrError frame = virtual_onu::BuildFrame(words);
  if (const auto* error = std::get_if<std::string>(&frame)) {
    throw std::invalid_argument(*error);
  }
  return std::get<Bytes>(frame);
}

Bytes TaggedFrame(std::uint16_t vid) {
  return FrameOf({"udp", "vlan", std::to_string(vid)});
}

RdpaPkt PacketOf(const Bytes& frame) {
  RdpaPkt packet = {};
  packet.size = static_cast<std::uint32_t>(frame.size());
  std::memcpy(packet.data, frame.data(), frame.size());
  return packet;
}

/// A started unit whose first port is in a mode, with full lists.
class Bench {
 public:
  explicit Bench(SetMode setMode) {
    unit.trace().setRecording(false);
    BCM6838X_Init();
    BCM6838X_SetPortPvid(kPort, kPvid);
    for (std::uint16_t i = 0; i < kEntries; ++i) {
      const auto vid = static_cast<std::uint16_t>(kFirstVid + i);
      const PortVlanTrunkEntry trunk = {kPort, 0, vid};
      const PortVlanTransEntry pair = {kPort, 0, 1, vid, 2, static_cast<std::uint16_t>(vid + 1000)};
      PortVlanStackRange range = {kPort, {}, 2, vid, vid, kServiceVid};
      BCM6838X_AddVlanTrunk(&trunk);
      BCM6838X_AddVlanTranslation(&pair);
      BCM6838X_AddVlanStacking(&range);
    }
    setMode(kPort);
  }

  virtual_onu::Unit unit;
};

void AccordMissing(benchmark::State& state, SetMode setMode) {
  const Bench bench(setMode);
  RdpaPkt packet = PacketOf(TaggedFrame(kMissing));
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(BCM6838X_AccordVlan(packet.data, &packet, kPort, 0));
  }
}

template <typename Entry>
void PlainLoop(benchmark::State& state, std::uint16_t Entry::*vid) {
  std::array<Entry, kEntries> list = {};
  for (std::size_t i = 0; i < kEntries; ++i) {
    list[i].*vid = static_cast<std::uint16_t>(kFirstVid + i);
  }
  std::uint16_t wanted = kMissing;
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(list.data());
    benchmark::DoNotOptimize(wanted);
    bool found = false;
    for (const Entry& entry : list) {
      if (entry.*vid == wanted) {
        found = true;
        break;
      }
    }
    benchmark::DoNotOptimize(found);
  }
}

void TrunkLoop(benchmark::State& state) {
  PlainLoop(state, &PortVlanTrunkEntry::vid);
}

void TranslationLoop(benchmark::State& state) {
  PlainLoop(state, &PortVlanTransEntry::localVid);
}

/// A tag in and out again, by moving what lies behind it.
void TagBare(benchmark::State& state) {
  RdpaPkt packet = PacketOf(FrameOf({"udp"}));
  for ([[maybe_unused]] auto _ : state) {
    std::memmove(packet.data + 16, packet.data + 12, packet.size - 12);
    benchmark::DoNotOptimize(packet);
    std::memmove(packet.data + 12, packet.data + 16, packet.size - 12);
    benchmark::DoNotOptimize(packet);
  }
}

void TagByLibrary(benchmark::State& state) {
  RdpaPkt packet = PacketOf(FrameOf({"udp"}));
  for ([[maybe_unused]] auto _ : state) {
    BCM6838X_AddVlanTag(packet.data, &packet.size, kPvid, 0);
    BCM6838X_RemoveVlanTag(packet.data, &packet.size);
    benchmark::DoNotOptimize(packet);
  }
}

void TagByRule(benchmark::State& state) {
  const Bench bench(BCM6838X_SetVlanTag);
  RdpaPkt packet = PacketOf(FrameOf({"udp"}));
  for ([[maybe_unused]] auto _ : state) {
    BCM6838X_AccordVlan(packet.data, &packet, kPort, 0);
    BCM6838X_AccordVlan(packet.data, &packet, 0, kPort);
    benchmark::DoNotOptimize(packet);
  }
}

/// Parses, tags, serialises; parses, takes the tag away, serialises.
void TagByTins(benchmark::State& state) {
  Tins::PDU::serialization_type frame = FrameOf({"udp"});
  for ([[maybe_unused]] auto _ : state) {
    Tins::EthernetII untagged(frame.data(), static_cast<std::uint32_t>(frame.size()));
    Tins::Dot1Q tag(kPvid);
    tag.inner_pdu(untagged.release_inner_pdu());
    untagged.inner_pdu(tag);
    const Tins::PDU::serialization_type tagged = untagged.serialize();
    Tins::EthernetII parsed(tagged.data(), static_cast<std::uint32_t>(tagged.size()));
    Tins::PDU* const behind = parsed.rfind_pdu<Tins::Dot1Q>().release_inner_pdu();
    parsed.inner_pdu(behind);
    frame = parsed.serialize();
    benchmark::DoNotOptimize(frame.data());
  }
}

#ifdef BENCH_WITH_DPDK
void TagByDpdk(benchmark::State& state) {
  const Bytes frame = FrameOf({"udp"});
  DpdkFrame buffer(frame);
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(buffer.tagInAndOut());
  }
}
#endif

BrmgrEvent MulticastEvent(const Bytes& frame) {
  BrmgrEvent event = {};
  event.eventType = BRMGR_EVENT_MCAST_IN;
  event.port = kPort;
  event.length = static_cast<std::uint32_t>(frame.size());
  std::memcpy(event.data, frame.data(), frame.size());
  return event;
}

/// Queues events outside the measured time and takes each of them.
template <typename Take>
void TakeEvents(benchmark::State& state, virtual_onu::Unit& unit, const BrmgrEvent& event,
                const Take& take) {
  constexpr benchmark::IterationCount kBatch = 32;
  while (state.KeepRunningBatch(kBatch)) {
    state.PauseTiming();
    for (benchmark::IterationCount i = 0; i < kBatch; ++i) {
      if (!unit.device().sendEvent(
              {reinterpret_cast<const std::uint8_t*>(&event), sizeof(event)})) {
        throw std::runtime_error("the queue of events is too short for a batch");
      }
    }
    state.ResumeTiming();
    for (benchmark::IterationCount i = 0; i < kBatch; ++i) {
      take();
    }
  }
}

/// Clearing, read and copy alone.
void CaptureFloor(benchmark::State& state) {
  virtual_onu::Unit unit;
  unit.trace().setRecording(false);
  const int fd = VOS_OpenDevice("BrmgrDev");
  TakeEvents(state, unit, MulticastEvent(FrameOf({"udp"})), [fd] {
    BrmgrEvent event = {};
    benchmark::DoNotOptimize(read(fd, &event, sizeof(event)));
    RdpaPkt packet = {};
    std::memcpy(packet.data, event.data, event.length);
    benchmark::DoNotOptimize(packet);
  });
}

/// @param[in] vid  of the frame; 0 for one without a tag
void Capture(benchmark::State& state, SetMode setMode, std::uint16_t vid) {
  Bench bench(setMode);
  const Bytes frame = vid == 0 ? FrameOf({"udp"}) : TaggedFrame(vid);
  std::uint32_t dropped = 0;
  TakeEvents(state, bench.unit, MulticastEvent(frame),
             [&dropped] { dropped += BCM6838X_CapturePacket(); });
  state.SetLabel(dropped == 0 ? "forwarded" : "dropped");
}

}  // namespace

BENCHMARK(TrunkLoop)->Name("no hit in 512 trunk VLANs/plain loop");
BENCHMARK_CAPTURE(AccordMissing, trunk, BCM6838X_SetVlanTrunk)
    ->Name("no hit in 512 trunk VLANs/BCM6838X_AccordVlan");
BENCHMARK(TranslationLoop)->Name("no hit in 512 translations/plain loop");
BENCHMARK_CAPTURE(AccordMissing, translation, BCM6838X_SetVlanTranslation)
    ->Name("no hit in 512 translations/BCM6838X_AccordVlan");
BENCHMARK(TagBare)->Name("tag in and out/bare moves");
BENCHMARK(TagByLibrary)->Name("tag in and out/tag helpers");
BENCHMARK(TagByRule)->Name("tag in and out/BCM6838X_AccordVlan");
BENCHMARK(TagByTins)->Name("tag in and out/libtins");
#ifdef BENCH_WITH_DPDK
BENCHMARK(TagByDpdk)->Name("tag in and out/DPDK insert, strip");
#endif
BENCHMARK(CaptureFloor)->Name("capture/read and copies")->MinTime(kShortTime);
BENCHMARK_CAPTURE(Capture, transparent, BCM6838X_SetVlanTransparent, 0)
    ->Name("capture/transparent")
    ->MinTime(kShortTime);
BENCHMARK_CAPTURE(Capture, tag, BCM6838X_SetVlanTag, 0)->Name("capture/tag")->MinTime(kShortTime);
BENCHMARK_CAPTURE(Capture, trunk_first, BCM6838X_SetVlanTrunk, kFirstVid)
    ->Name("capture/trunk, first of 512")
    ->MinTime(kShortTime);
BENCHMARK_CAPTURE(Capture, trunk_last, BCM6838X_SetVlanTrunk, kLastVid)
    ->Name("capture/trunk, last of 512")
    ->MinTime(kShortTime);
BENCHMARK_CAPTURE(Capture, trunk_none, BCM6838X_SetVlanTrunk, kMissing)
    ->Name("capture/trunk, none of 512")
    ->MinTime(kShortTime);
BENCHMARK_CAPTURE(Capture, zte_trunk, BCM6838X_SetZteVlanTrunk, kLastVid)
    ->Name("capture/ZTE trunk, last of 512")
    ->MinTime(kShortTime);
BENCHMARK_CAPTURE(Capture, translation_first, BCM6838X_SetVlanTranslation, kFirstVid)
    ->Name("capture/translation, first of 512")
    ->MinTime(kShortTime);
BENCHMARK_CAPTURE(Capture, translation_last, BCM6838X_SetVlanTranslation, kLastVid)
    ->Name("capture/translation, last of 512")
    ->MinTime(kShortTime);
BENCHMARK_CAPTURE(Capture, zte_stacking, BCM6838X_SetZteStacking, kFirstVid)
    ->Name("capture/ZTE stacking")
    ->MinTime(kShortTime);
BENCHMARK_CAPTURE(Capture, bdcom_first, BCM6838X_SetBdcomStacking, kFirstVid)
    ->Name("capture/BDCOM stacking, first of 512")
    ->MinTime(kShortTime);
BENCHMARK_CAPTURE(Capture, bdcom_last, BCM6838X_SetBdcomStacking, kLastVid)
    ->Name("capture/BDCOM stacking, last of 512")
    ->MinTime(kShortTime);

int main(int argc, char** argv) {
  return RunComparisons(argc, argv);
}
