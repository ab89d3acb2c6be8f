/// @file
/// Rendering of policer, re-mark and queue.
#include "report/qos_report.h"

#include <string>

#include "datapath/outcome.h"

namespace onu {

namespace {

using virtual_onu::PortId;
using virtual_onu::Remark;
using virtual_onu::Verdict;

}  // namespace

Result ReportPolicer(const Verdict& verdict) {
  if (!verdict.policer) {
    return {nullptr, "policer: none\n"};
  }
  const std::string port = PortId::Uni(*verdict.policer).name();
  const bool exists = verdict.policerTokens.has_value();
  const bool passed = verdict.outcome != virtual_onu::Outcome::Policed;
  return {{{"port", port},
           {"exists", exists},
           {"passed", passed},
           {"tokensLeft", OrNull(verdict.policerTokens)}},
          "policer of " + port + ": " +
              (exists ? (passed ? "passed, " : "policed, ") +
                            std::to_string(*verdict.policerTokens) + " octets left\n"
                      : "the port has none, passed\n")};
}

Result ReportRemark(const Verdict& verdict) {
  if (!verdict.remark) {
    return {nullptr, "re-mark: none\n"};
  }
  const Remark& remark = *verdict.remark;
  return {{{"pcpFrom", remark.pcpFrom}, {"pcpTo", remark.pcpTo}, {"dscp", OrNull(remark.dscp)}},
          "re-mark: pcp " + std::to_string(remark.pcpFrom) + " to " + std::to_string(remark.pcpTo) +
              (remark.dscp ? ", dscp " + std::to_string(*remark.dscp) + " stays\n" : "\n")};
}

}  // namespace onu
