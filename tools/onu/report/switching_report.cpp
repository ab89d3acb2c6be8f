/// @file
/// Rendering of what the tables of addresses decided.
#include "report/switching_report.h"

#include <string>

#include "base/text.h"
#include "language/words.h"

namespace onu {

namespace {

using virtual_onu::MacDecision;
using virtual_onu::MacRule;

std::string RuleToText(const MacDecision& decision) {
  const std::string port = decision.port.name();
  switch (decision.rule) {
    case MacRule::Filter:
      return "is blocked at " + port;
    case MacRule::Bind:
      return "is bound to " + port;
    case MacRule::Limit:
      return "is new, and " + port + " has as many addresses as it may";
    case MacRule::Dynamic:
    case MacRule::Static:
      break;
  }
  return "is at " + port + " (" + std::string(Name(decision.rule)) + ")";
}

}  // namespace

Result ReportMacDecision(const virtual_onu::Verdict& verdict) {
  if (!verdict.macDecision) {
    return {nullptr};
  }
  const MacDecision& decision = *verdict.macDecision;
  const std::string mac = virtual_onu::FormatMac(decision.key.mac);
  return {{{"rule", Name(decision.rule)},
           {"mac", mac},
           {"vlan", decision.key.vid},
           {"port", decision.port.name()}},
          "MAC table: " + mac + " in VLAN " + std::to_string(decision.key.vid) + " " +
              RuleToText(decision) + "\n"};
}

Result ReportGroupDecision(const virtual_onu::Verdict& verdict) {
  if (!verdict.groupDecision) {
    return {nullptr};
  }
  const virtual_onu::GroupDecision& decision = *verdict.groupDecision;
  Words entries;
  for (const std::uint32_t entry : decision.entries) {
    entries.push_back(std::to_string(entry));
  }
  return {{{"address", virtual_onu::FormatIp(decision.group.address)},
           {"vlan", decision.group.vid},
           {"entries", decision.entries}},
          "multicast group: " + decision.group.text() + ", " +
              (entries.empty() ? "no group entries" : "group entries " + Join(entries, ", ")) +
              "\n"};
}

}  // namespace onu
