/// @file
/// Rendering of links.
#include "report/link_report.h"

namespace onu {

namespace {

using virtual_onu::Link;
using virtual_onu::PauseUse;

std::string PauseText(const PauseUse& pause) {
  if (pause.transmit && pause.receive) {
    return "both";
  }
  if (pause.transmit) {
    return "transmit";
  }
  return pause.receive ? "receive" : "none";
}

}  // namespace

Json LinkToJson(const std::optional<Link>& link) {
  if (!link) {
    return nullptr;
  }
  return {{"speed", link->mode.speed},
          {"duplex", link->mode.fullDuplex ? "full" : "half"},
          {"pause", PauseText(link->pause)}};
}

Words LinkWords(const std::optional<Link>& link) {
  if (!link) {
    return {"down", "-", "-", "-"};
  }
  return {"up", std::to_string(link->mode.speed), link->mode.fullDuplex ? "full" : "half",
          PauseText(link->pause)};
}

}  // namespace onu
