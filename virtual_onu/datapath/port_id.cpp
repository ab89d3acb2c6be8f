/// @file
/// Port names.
#include "datapath/port_id.h"

#include "base/text.h"

namespace virtual_onu {
namespace {

constexpr std::string_view kWan = "wan";
constexpr std::string_view kUni = "uni";

}  // namespace

std::string PortId::name() const {
  return isWan() ? std::string(kWan) : std::string(kUni) + std::to_string(uni);
}

std::optional<PortId> ParsePort(std::string_view text) {
  if (text == kWan) {
    return PortId::Wan();
  }
  if (!text.starts_with(kUni)) {
    return std::nullopt;
  }
  text.remove_prefix(kUni.size());
  const std::optional<std::uint32_t> number = ParseDecimal(text, kMaxUniPorts);
  // A leading zero would give one port two names.
  if (!number || text.front() == '0') {
    return std::nullopt;
  }
  return PortId::Uni(*number);
}

}  // namespace virtual_onu
