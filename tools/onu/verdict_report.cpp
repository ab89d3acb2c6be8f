/// @file
/// Rendering of verdicts.
#include "verdict_report.h"

#include "datapath/frame.h"
#include "datapath/outcome.h"
#include "words.h"

namespace onu {

namespace {

using virtual_onu::Disposition;
using virtual_onu::Verdict;

Json OrNull(const std::optional<std::uint32_t>& index) {
  return index ? Json(*index) : Json(nullptr);
}

}  // namespace

Json VerdictToJson(const Verdict& verdict) {
  const virtual_onu::OutcomeInfo& outcome = virtual_onu::Describe(verdict.outcome);
  Json egress = Json::array();
  for (const virtual_onu::PortId port : verdict.egress) {
    egress.push_back(port.name());
  }
  return {{"dir", verdict.dir == 0 ? "ds" : "us"},
          {"disposition", std::string(virtual_onu::Name(outcome.disposition))},
          {"outcome", std::string(outcome.name)},
          {"icIndex", OrNull(verdict.icIndex)},
          {"flowIndex", OrNull(verdict.flowIndex)},
          {"vlanActionIndex", OrNull(verdict.vlanActionIndex)},
          {"queue", OrNull(verdict.queue)},
          {"egress", egress}};
}

Json FrameToJson(const virtual_onu::Bytes& frame) {
  return {{"length", frame.size()},
          {"summary", virtual_onu::SummarizeFrame(frame)},
          {"bytes", virtual_onu::ToHex(frame)}};
}

std::string DestinationOf(const Verdict& verdict) {
  switch (virtual_onu::Describe(verdict.outcome).disposition) {
    case Disposition::Trap:
      return "unit";
    case Disposition::Drop:
      return "-";
    case Disposition::Forward:
      break;
  }
  Words ports;
  for (const virtual_onu::PortId port : verdict.egress) {
    ports.push_back(port.name());
  }
  return Join(ports, ",");
}

std::string_view DispositionDone(Disposition disposition) {
  switch (disposition) {
    case Disposition::Forward:
      return "forwarded";
    case Disposition::Trap:
      return "trapped";
    case Disposition::Drop:
      break;
  }
  return "dropped";
}

}  // namespace onu
