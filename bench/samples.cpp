/// @file
/// The frames that the recognisers are tried on.
#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "base/bytes.h"
#include "frame/words.h"
#include "recognisers.h"

namespace {

using Words = std::vector<std::string>;

constexpr std::uint32_t kReadableBytes = 2048;

Sample MakeSample(std::string_view name, Client client, const Words& words) {
  const virtual_onu::FrameOrError built = virtual_onu::BuildFrame(words);
  if (const auto* error = std::get_if<std::string>(&built)) {
    throw std::invalid_argument(*error);
  }
  Sample sample = {name, client, std::get<virtual_onu::Bytes>(built), 0};
  sample.length = static_cast<std::uint32_t>(sample.bytes.size());
  sample.bytes.resize(kReadableBytes);
  return sample;
}

std::vector<Sample> MakeSamples() {
  return {
      MakeSample("DHCP", Client::Dhcp, {"dhcp"}),
      MakeSample("DHCP, 1 tag", Client::Dhcp, {"dhcp", "vlan", "100"}),
      MakeSample("DHCP, 2 tags", Client::Dhcp, {"dhcp", "vlan", "100", "vlan", "200"}),
      MakeSample("DHCPv6", Client::Dhcp, {"udp", "ip6", "dport", "547"}),
      MakeSample("DHCPv6, 1 tag", Client::Dhcp, {"udp", "ip6", "dport", "547", "vlan", "100"}),
      MakeSample("PPPoE", Client::Pppoe, {"pppoe"}),
      MakeSample("PPPoE, 1 tag", Client::Pppoe, {"pppoe", "vlan", "100"}),
      MakeSample("MLD", Client::Mld, {"mld"}),
      MakeSample("MLD, 1 tag", Client::Mld, {"mld", "vlan", "100"}),
      MakeSample("MLD, 2 tags", Client::Mld, {"mld", "vlan", "100", "vlan", "200"}),
      MakeSample("UDP", Client::None, {"udp", "vlan", "100"}),
      MakeSample("TCP", Client::None, {"tcp"}),
      MakeSample("ICMPv6", Client::None, {"icmp", "ip6"}),
      MakeSample("ARP", Client::None, {"arp"}),
      MakeSample("BPDU", Client::None, {"stp"}),
  };
}

}  // namespace

std::span<const Sample> Samples() {
  static const std::vector<Sample> samples = MakeSamples();
  return samples;
}
