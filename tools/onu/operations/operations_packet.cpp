/// @file
/// The rows of the packet path's and the kernel monitor's operations, which hal_bcm6838x.h declares
/// behind those of operations_core.cpp.
#include <hal_bcm6838x.h>

#include "language/failure.h"
#include "operations/operation_rows.h"
#include "operations/packet_call.h"
#include "unit/unit.h"

namespace onu {

namespace {

using enum ResultKind;
using Numbers = std::span<const std::uint32_t>;

constexpr Argument kFrame = {kFrameArgument, ArgumentType::Frame,
                             "a frame of a capture, hexadecimal digits, or words", Presence::Rest};
constexpr Argument kVid = {"vid", ArgumentType::Number, "VID; the low 12 bits count"};
constexpr Argument kPri = {"pri", ArgumentType::Number, "priority; the low 3 bits count"};
constexpr Argument kEnable = {"enable", ArgumentType::Number,
                              "0 off, any other value on; the driver receives it as it is"};

const ArgumentRows kEventArguments = {
    {"TYPE", ArgumentType::Number,
     "type of the event: 1 multicast in, 3 BPDU, 5 multicast out, 6 DHCP, 7 PPPoE"},
    {"PORT", ArgumentType::Number, "UNI port of the event, 0 for none or all"},
    kFrame};

std::uint32_t RemoveTag(RdpaPkt& packet, Numbers /*numbers*/) {
  return BCM6838X_RemoveVlanTag(packet.data, &packet.size);
}

std::uint32_t TranslateTag(RdpaPkt& packet, Numbers numbers) {
  return BCM6838X_TranslateVlanTag(packet.data, numbers[0], numbers[1]);
}

std::uint32_t AddTag(RdpaPkt& packet, Numbers numbers) {
  return BCM6838X_AddVlanTag(packet.data, &packet.size, numbers[0], numbers[1]);
}

std::uint32_t Accord(RdpaPkt& packet, Numbers numbers) {
  return BCM6838X_AccordVlan(packet.data, &packet, numbers[0], numbers[1]);
}

std::uint32_t IsDhcp(const std::uint8_t* frame, std::uint32_t /*length*/) {
  return BCM6838X_IsDHCPProtocol(frame);
}

std::uint32_t IsPppoe(const std::uint8_t* frame, std::uint32_t /*length*/) {
  return BCM6838X_IsPPPoEProtocol(frame);
}

/// The task serves its socket for ever: a line that called it would never end.
Binding BindKernelEvent() {
  Binding binding = Bind(BCM6838X_kernelEvent);
  binding.call = [call = binding.call](const Arguments& given, std::span<const Argument> rows) {
    if (!virtual_onu::Unit::Current()->platform().config().monitorSocketFails) {
      throw WorkFailed("runs for ever; start it as a task: config run-tasks on, then Init");
    }
    return call(given, rows);
  };
  return binding;
}

const std::vector<Operation> kCaptureRows = {
    {{"BCM6838X_GetEvent",
      kEventArguments,
      "reads one event, which the line puts there first",
      {"Init\nGetEvent 3 2 tests/data/stp.pcap#1"}},
     Status,
     BindGetEvent()},
    {{"BCM6838X_CapturePacket",
      kEventArguments,
      "reads one event, which the line puts there first, and hands its frame to its client",
      {"Init\nCapturePacket 1 2 tests/data/igmp-join.pcap#1\nshow trace 1",
       "Init\nCapturePacket 3 2 tests/data/stp.pcap#1\nshow trace 1"}},
     Status,
     BindCapturePacket()},
    {{"BCM6838X_GetTag",
      {kFrame},
      "reads the outer tag: the number of tags, VID and priority",
      {"GetTag udp vlan 100 pcp 5"}},
     Number,
     BindGetTag()},
    {{"BCM6838X_RemoveVlanTag",
      {kFrame},
      "removes the outer tag",
      {"RemoveVlanTag udp vlan 100 pcp 5"}},
     Status,
     BindChange(RemoveTag)},
    {{"BCM6838X_TranslateVlanTag",
      {kVid, kPri, kFrame},
      "rewrites the outer tag",
      {"TranslateVlanTag 200 3 udp vlan 100 pcp 5"}},
     Status,
     BindChange(TranslateTag)},
    {{"BCM6838X_AddVlanTag", {kVid, kPri, kFrame}, "adds an outer tag", {"AddVlanTag 200 3 udp"}},
     Status,
     BindChange(AddTag)},
    {{"BCM6838X_AccordVlan",
      {{"srcPort", ArgumentType::Number, "source UNI port, 0 for none"},
       {"desPort", ArgumentType::Number, "destination UNI port, 0 for none"},
       kFrame},
      "applies a port's VLAN rule to a frame: 0 forward, 1 drop",
      {"AccordVlan 1 0 udp vlan 100"}},
     Number,
     BindChange(Accord)},
    {{"BCM6838X_IsMldPacket",
      {kFrame},
      "1 for an MLD message, else 0",
      {"IsMldPacket tests/data/mld-report.pcap#1"}},
     Number,
     BindPredicate(BCM6838X_IsMldPacket)},
    {{"BCM6838X_IsDHCPProtocol",
      {kFrame},
      "1 for DHCP towards a server, else 0",
      {"IsDHCPProtocol tests/data/dhcp.pcap#1"}},
     Number,
     BindPredicate(IsDhcp)},
    {{"BCM6838X_IsPPPoEProtocol",
      {kFrame},
      "1 for PPPoE, else 0",
      {"IsPPPoEProtocol tests/data/pppoe-discovery.pcap#1"}},
     Number,
     BindPredicate(IsPppoe)},
};

const std::vector<Operation> kTransmitRows = {
    {{"BCM6838X_SendPacket",
      {kUniPort, kFrame},
      "sends a frame by the command of its kind",
      {"Init\nSendPacket 2 tests/data/dhcp.pcap#1"}},
     Status,
     BindSendPacket()},
    {{"BCM6838X_SendBpduPkt",
      {kWholePort, kFrame},
      "sends a BPDU of up to 100 bytes",
      {"Init\nSendBpduPkt 2 tests/data/stp.pcap#1"}},
     Status,
     BindRelay(BCM6838X_SendBpduPkt)},
    {{"BCM6838X_SendDhcpPkt",
      {kWholePort, kFrame},
      "sends a DHCP frame of up to 1700 bytes",
      {"Init\nSendDhcpPkt 2 tests/data/dhcp.pcap#1"}},
     Status,
     BindRelay(BCM6838X_SendDhcpPkt)},
    {{"BCM6838X_SendPPPoEPkt",
      {kWholePort, kFrame},
      "sends a PPPoE frame of up to 1700 bytes",
      {"Init\nSendPPPoEPkt 2 tests/data/pppoe-discovery.pcap#1"}},
     Status,
     BindRelay(BCM6838X_SendPPPoEPkt)},
    {{"BCM6838X_RdpaSendIgmpPkt",
      {kWholePort, kFrame},
      "sends a frame of up to 2046 bytes",
      {"Init\nRdpaSendIgmpPkt 2 tests/data/igmp-join.pcap#1"}},
     Status,
     BindRdpaSendIgmpPkt()},
    {{"BCM6838X_DhcpRelayHandle",
      {kWholePort, kFrame},
      "relays a trapped DHCP frame",
      {"Init\nDhcpRelayHandle 2 tests/data/dhcp.pcap#1"}},
     Status,
     BindEvent(BCM6838X_DhcpRelayHandle, BRMGR_EVENT_DHCP)},
    {{"BCM6838X_PPPoERelayHandle",
      {kWholePort, kFrame},
      "relays a trapped PPPoE frame",
      {"Init\nSetPPPoETrapEnable 1\nPPPoERelayHandle 2 tests/data/pppoe-discovery.pcap#1"}},
     Status,
     BindEvent(BCM6838X_PPPoERelayHandle, BRMGR_EVENT_PPPOE)},
    {{"BCM6838X_SetDhcpTrapEnable",
      {kEnable},
      "switches the DHCP relay and its traps",
      {"Init\nSetDhcpTrapEnable 1"}},
     Status,
     Bind(BCM6838X_SetDhcpTrapEnable)},
    {{"BCM6838X_SetPPPoETrapEnable",
      {kEnable},
      "switches the PPPoE relay and its traps",
      {"Init\nSetPPPoETrapEnable 1"}},
     Status,
     Bind(BCM6838X_SetPPPoETrapEnable)},
};

const std::vector<Operation> kMonitorRows = {
    {{"InitKernelMonitorFd",
      {},
      "opens and registers the kernel monitor's socket",
      {"config fail-socket on\nInitKernelMonitorFd"}},
     Number,
     Bind(InitKernelMonitorFd)},
    {{"BCM6838X_kernelEvent",
      {},
      "runs the kernel event task on the caller's thread, where its socket cannot be opened; "
      "elsewhere it never ends, and runs as a task",
      {"config fail-socket on\nkernelEvent"}},
     Nothing,
     BindKernelEvent()},
    {{"BCM6838X_EventUniStateReport",
      {{"port", ArgumentType::Number,
        "UNI port number, 1..4; any other is reported to the driver as device port 0"},
       {"state", ArgumentType::Number,
        "0 to 5 for 1000 full, 1000 half, 100 full, 100 half, 10 full, 10 half; 6 down; 7 other"}},
      "reports a link change to the driver and to the management process",
      {"Init\nEventUniStateReport 1 2\nshow trace 4"}},
     Status,
     Bind(BCM6838X_EventUniStateReport)},
    {{"BCM6838X_SetEponLaserState",
      {{"on", ArgumentType::Number, "1 on, any other value off; the low 8 bits count"}},
      "switches the EPON laser",
      {"Init\nSetEponLaserState 1"}},
     Status,
     Bind(BCM6838X_SetEponLaserState)},
};

std::vector<Operation> MakeRows() {
  std::vector<Operation> rows;
  for (const auto* part : {&kCaptureRows, &kTransmitRows, &kMonitorRows}) {
    rows.insert(rows.end(), part->begin(), part->end());
  }
  return rows;
}

}  // namespace

const std::vector<Operation>& PacketOperations() {
  static const std::vector<Operation> rows = MakeRows();
  return rows;
}

}  // namespace onu
