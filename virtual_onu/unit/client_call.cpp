/// @file
/// Names of the protocol clients.
#include "unit/client_call.h"

#include <array>
#include <cstddef>

namespace virtual_onu {

std::string_view Name(Client client) {
  constexpr std::array<std::string_view, 5> kNames = {"IGMP_DispatchPacket", "MLD_DispatchPacket",
                                                      "STP", "DHCPRELAY_HandlePacket",
                                                      "PPPOERELAY_HandlePacket"};
  return kNames.at(static_cast<std::size_t>(client));
}

}  // namespace virtual_onu
