/// @file
/// The columns of links.
#include "report/link_report.h"

#include "report/report_table.h"

namespace onu {

namespace {

using virtual_onu::Link;

std::string_view PauseText(const Link& link) {
  if (link.pause.transmit && link.pause.receive) {
    return "both";
  }
  if (link.pause.transmit) {
    return "transmit";
  }
  return link.pause.receive ? "receive" : "none";
}

}  // namespace

const Columns<Link>& LinkColumns() {
  static const Columns<Link> columns = {
      {"speed", "speed", [](const auto& link) { return link.mode.speed; }},
      {"duplex", "duplex", [](const auto& link) { return link.mode.fullDuplex ? "full" : "half"; }},
      {"pause", "pause", PauseText},
  };
  return columns;
}

Json LinkToJson(const std::optional<Link>& link) {
  return link ? ToJson(LinkColumns(), *link) : Json();
}

}  // namespace onu
