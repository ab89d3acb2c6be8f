/// @file
/// Rendering of policer, re-mark and queue.
#include "report/qos_report.h"

#include "datapath/outcome.h"

namespace onu {

namespace {

using virtual_onu::PortId;
using virtual_onu::Remark;
using virtual_onu::Verdict;

bool WasPoliced(const Verdict& verdict) {
  return verdict.outcome == virtual_onu::Outcome::Policed;
}

std::string RemarkToText(const Verdict& verdict) {
  if (!verdict.remark) {
    return "re-mark: none\n";
  }
  const Remark& remark = *verdict.remark;
  std::string text =
      "re-mark: pcp " + std::to_string(remark.pcpFrom) + " to " + std::to_string(remark.pcpTo);
  if (remark.dscp) {
    text += ", dscp " + std::to_string(*remark.dscp) + " stays";
  }
  return text + "\n";
}

}  // namespace

Json PolicerToJson(const Verdict& verdict) {
  if (!verdict.policer) {
    return nullptr;
  }
  return {{"port", PortId::Uni(*verdict.policer).name()},
          {"exists", verdict.policerTokens.has_value()},
          {"passed", !WasPoliced(verdict)},
          {"tokensLeft", verdict.policerTokens ? Json(*verdict.policerTokens) : Json(nullptr)}};
}

Json RemarkToJson(const Verdict& verdict) {
  if (!verdict.remark) {
    return nullptr;
  }
  const Remark& remark = *verdict.remark;
  return {{"pcpFrom", remark.pcpFrom},
          {"pcpTo", remark.pcpTo},
          {"dscp", remark.dscp ? Json(*remark.dscp) : Json(nullptr)}};
}

std::string PolicerToText(const Verdict& verdict) {
  if (!verdict.policer) {
    return "policer: none\n";
  }
  const std::string name = "policer of " + PortId::Uni(*verdict.policer).name() + ": ";
  if (!verdict.policerTokens) {
    return name + "the port has none, passed\n";
  }
  return name + (WasPoliced(verdict) ? "policed, " : "passed, ") +
         std::to_string(*verdict.policerTokens) + " octets left\n";
}

std::string QueueToText(const Verdict& verdict) {
  const std::string queue = verdict.queue ? std::to_string(*verdict.queue) : "none";
  return RemarkToText(verdict) + "queue: " + queue + "\n";
}

}  // namespace onu
