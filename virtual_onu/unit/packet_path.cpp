/// @file
/// Events and transmissions.
#include "unit/packet_path.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>

#include <brmgr_cmd.h>
#include <brmgr_record.h>

#include "datapath/traps.h"
#include "device/event_record.h"
#include "frame/frame.h"
#include "frame/ip_headers.h"

namespace virtual_onu {
namespace {

constexpr std::size_t kMaxStations = 4096;

bool IsTrap(const Verdict& verdict) {
  return Describe(verdict.outcome).disposition == Disposition::Trap;
}

bool IsRelayEvent(std::uint32_t type) {
  return type == BRMGR_EVENT_DHCP || type == BRMGR_EVENT_PPPOE;
}

std::string DescribeEvent(PortId port, std::uint32_t type, std::size_t length) {
  return "event(" + EventName(type) + ", port " + std::to_string(port.uni) + ", length " +
         std::to_string(length) + ")";
}

/// Source address of a frame, which has a whole Ethernet header.
Bytes SourceOf(ByteView frame) {
  const ByteView source = frame.subspan(kMacSize, kMacSize);
  return {source.begin(), source.end()};
}

/// Which side a frame of a relay protocol is for.
enum class Side : std::uint8_t { Network, Subscriber, Unknown };

/// PPPoE discovery by its code (RFC 2516); a termination and a session frame may be for both sides.
Side SideOfPppoe(ByteView frame, const FrameHeaders& headers) {
  struct Code {
    std::uint8_t code;
    Side side;
  };
  constexpr std::array<Code, 4> kCodes = {{{0x09, Side::Network},
                                           {0x19, Side::Network},
                                           {0x07, Side::Subscriber},
                                           {0x65, Side::Subscriber}}};
  const std::size_t offset = headers.payloadOffset + 1;
  if (headers.etherType != kEtherTypePppoeDiscovery || offset >= frame.size()) {
    return Side::Unknown;
  }
  const auto* const found = std::ranges::find(kCodes, frame[offset], &Code::code);
  return found == kCodes.end() ? Side::Unknown : found->side;
}

/// DHCP by the ports of clients and servers.
Side SideOfDhcp(const FrameHeaders& headers) {
  if (headers.ipProtocol != kProtocolUdp) {
    return Side::Unknown;
  }
  return IsToDhcpServer(headers) ? Side::Network : Side::Subscriber;
}

}  // namespace

PacketPath::PacketPath(Device& device, DataPath& dataPath, Trace& trace,
                       std::function<std::uint32_t()> uplinkPort)
    : device_(device), dataPath_(dataPath), trace_(trace), uplinkPort_(std::move(uplinkPort)) {
  device_.setSender([this](const OutgoingFrame& frame) { return send(frame); });
}

Verdict PacketPath::receive(PortId port, ByteView frame) {
  Verdict verdict;
  {
    const auto held = device_.hold();
    verdict = dataPath_.offer(port, frame);
  }
  if (!IsTrap(verdict)) {
    return verdict;
  }
  verdict.eventLoss = deliverEvent(port, verdict);
  const std::string event = DescribeEvent(port, *verdict.eventType, frame.size());
  if (verdict.eventLoss) {
    trace_.add(CallEvent{event + ": " + std::string(Describe(*verdict.eventLoss).name), -1});
    const auto held = device_.hold();
    dataPath_.countEvent(port, *verdict.eventLoss, frame.size());
  } else {
    trace_.add(CallEvent{event, 0});
  }
  return verdict;
}

std::optional<Outcome> PacketPath::deliverEvent(PortId port, const Verdict& verdict) {
  const std::uint32_t type = *verdict.eventType;
  if (verdict.frame.size() > EventFrameCapacity(type)) {
    return Outcome::EventTooLong;
  }
  if (!device_.isOpen()) {
    return Outcome::EventNoReader;
  }
  if (IsRelayEvent(type)) {
    const std::lock_guard lock(mutex_);
    if (relayed_.size() >= kMaxStations) {
      relayed_.clear();
    }
    relayed_.emplace(port.uni, SourceOf(verdict.frame));
  }
  const BrmgrEvent event = MakeEvent(type, port.uni, verdict.flowIndex.value_or(0), verdict.frame);
  const auto* const first = reinterpret_cast<const std::uint8_t*>(&event);
  return device_.sendEvent({first, sizeof(event)}) ? std::nullopt
                                                   : std::optional(Outcome::EventQueueFull);
}

void PacketPath::onTransmit(FrameTaker taker) {
  const std::lock_guard lock(mutex_);
  taker_ = std::move(taker);
}

std::vector<Transmission> PacketPath::transmissions(std::uint64_t from) const {
  const std::lock_guard lock(mutex_);
  std::vector<Transmission> found;
  std::ranges::copy_if(transmissions_, std::back_inserter(found),
                       [from](const Transmission& one) { return one.number >= from; });
  return found;
}

SentFrame PacketPath::send(const OutgoingFrame& frame) {
  const PortId port = wayOf(frame);
  Transmittal transmittal = dataPath_.transmit(port, frame.bytes);
  const std::lock_guard lock(mutex_);
  const Transmission sent = {next_++,     frame.command,
                             port,        transmittal.outcome,
                             frame.bytes, std::move(transmittal.copies)};
  transmissions_.push_back(sent);
  if (transmissions_.size() > kKeptTransmissions) {
    transmissions_.pop_front();
  }
  if (sent.outcome != Outcome::Transmitted) {
    return {"not sent at " + port.name() + ": " + std::string(Describe(sent.outcome).name), {}};
  }
  if (!taker_) {
    return {};
  }
  return {{}, [taker = taker_, sent] {
            taker(sent.port, sent.frame);
            for (const MirrorCopy& copy : sent.copies) {
              if (copy.outcome == Outcome::Mirrored) {
                taker(copy.port, copy.frame);
              }
            }
          }};
}

PortId PacketPath::wayOf(const OutgoingFrame& frame) const {
  const bool isUni = frame.desPort >= 1 && frame.desPort <= dataPath_.uniPorts();
  const bool isUplink = frame.desPort == 0 || frame.desPort == uplinkPort_();
  if ((!isUni && isUplink) || goesToNetwork(frame)) {
    return PortId::Wan();
  }
  return PortId::Uni(frame.desPort);
}

/// The relays' commands name the UNI port that a frame concerns, in whichever direction it goes.
bool PacketPath::goesToNetwork(const OutgoingFrame& frame) const {
  FrameHeaders headers;
  const bool relay = frame.command == BRMGR_CMD_SEND_DHCP || frame.command == BRMGR_CMD_SEND_PPPOE;
  if (!relay || ParseFrame(frame.bytes, headers) != FrameFault::None) {
    return false;
  }
  const Side side = frame.command == BRMGR_CMD_SEND_DHCP ? SideOfDhcp(headers)
                                                         : SideOfPppoe(frame.bytes, headers);
  if (side != Side::Unknown) {
    return side == Side::Network;
  }
  const std::lock_guard lock(mutex_);
  return relayed_.contains({frame.desPort, SourceOf(frame.bytes)});
}

}  // namespace virtual_onu
