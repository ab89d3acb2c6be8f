/// @file
/// The command that shows one UNI port: its configuration as the driver was told, and the objects
/// that the library made of it.
#include "commands/show_port.h"

#include <set>
#include <string>
#include <vector>

#include "commands/command_rows.h"
#include "consistency/consistency.h"
#include "consistency/read_library_tables.h"
#include "report/chip_report.h"
#include "report/report_table.h"
#include "report/vlan_config_report.h"
#include "session/port_argument.h"
#include "session/session.h"

namespace onu {

namespace {

using virtual_onu::ChipTables;
using virtual_onu::IngressClass;
using virtual_onu::LanVlan;
using virtual_onu::LibraryTables;
using virtual_onu::SharedFlowKey;

/// A flow with its class, and with its values in words.
struct UpstreamRow {
  const IngressClass* ingressClass;
  const IngressFlowRule* flow;
  FieldTexts fields;
};

const Columns<UpstreamRow> kUpstream = {
    {"icIndex", "class",
     [](const auto& row) { return Cell(row.flow->icIndex, row.fields["icIndex"]); }},
    {"flowIndex", "flow",
     [](const auto& row) { return Cell(row.flow->flowIndex, row.fields["flowIndex"]); }},
    {"queue", "queue", [](const auto& row) { return Cell(row.flow->queue, row.fields["queue"]); }},
    {"vlanAction", "action", [](const auto& row) { return row.fields["vlanActionIndex"]; }},
    {"keys", "keys", [](const auto& row) { return KeysOf(*row.ingressClass, row.fields); }},
};

/// The upstream flows of the port that belong to its VLAN mode, in the order of matching.
Table UpstreamFlows(const ChipTables& chip, std::uint32_t uni) {
  std::vector<UpstreamRow> rows;
  for (const IngressClass* ingressClass : ClassesAsTried(chip.upstream)) {
    for (const auto& [index, flow] : ingressClass->flows) {
      if (flow.ingressPort == virtual_onu::DevicePortOf(uni)) {
        rows.push_back({ingressClass, &flow, FieldTexts("IngressFlowRule", BytesOf(flow))});
      }
    }
  }
  return {kUpstream, rows};
}

/// The port's own action on a downstream flow, or "none".
std::string PortActionOf(const ChipTables& chip, const IngressFlowRule& flow, std::uint32_t uni) {
  const auto ingressClass = chip.downstream.classes.find(flow.icIndex);
  if (ingressClass == chip.downstream.classes.end()) {
    return "none";
  }
  const auto& actions = ingressClass->second.portActions;
  const auto found = actions.find({flow.flowIndex, uni});
  return found == actions.end() ? "none" : std::to_string(found->second);
}

/// A shared downstream flow, and what the port does with it.
struct DownstreamRow {
  const IngressFlowRule* flow;
  std::string action;
};

const Columns<DownstreamRow> kDownstream = {
    {"icIndex", "class", [](const auto& row) { return row.flow->icIndex; }},
    {"flowIndex", "flow", [](const auto& row) { return row.flow->flowIndex; }},
    {"vid", "vid",
     [](const auto& row) {
       return row.flow->outerVid == 4096 ? "any" : std::to_string(row.flow->outerVid);
     }},
    {"vlanNum", "tags", [](const auto& row) { return row.flow->vlanNum; }},
    {"references", "references", [](const auto& row) { return row.flow->refCount; }},
    {"portAction", "port action", &DownstreamRow::action},
};

/// The shared downstream flows that the port's upstream flows lead to.
Table DownstreamFlows(const LibraryTables& library, const ChipTables& chip, std::uint32_t uni) {
  std::set<SharedFlowKey> used;
  for (const virtual_onu::UpstreamFlow& recorded : library.upstreamFlows) {
    if (recorded.uni == uni) {
      used.insert(virtual_onu::SharedFlowOf(library, recorded.flow));
    }
  }
  std::vector<DownstreamRow> rows;
  for (const IngressFlowRule& flow : library.downstreamFlows) {
    if (used.contains({flow.outerVid, flow.vlanNum})) {
      rows.push_back({&flow, PortActionOf(chip, flow, uni)});
    }
  }
  return {kDownstream, rows};
}

const Columns<LanVlan> kLanVlans = {
    {"vid", "vid", &LanVlan::vid},
    {"references", "references", &LanVlan::references},
};

/// The configuration as the driver was told, and how the flows differ from it.
Result ReportConfiguration(Session& session, std::uint32_t uni) {
  Result result;
  result.add("port", uni);
  const auto& told = session.unit().device().portTables().vlans;
  if (told.empty()) {
    return result.add("config", nullptr, "the driver was not told a VLAN configuration\n")
        .add("differences", Json::array());
  }
  const PortVlanInfo& info = told.at(uni - 1);
  const std::vector<std::string> differences =
      virtual_onu::CompareWithConfiguration(info, uni, session.unit().device().tables());
  return result.add("config", ReportVlanConfig(info))
      .add("differences", ListedLines(differences, "difference: "));
}

Result ShowPort(Session& session, const Arguments& arguments) {
  const std::uint32_t uni = UniNumberArgument(session, arguments);
  const ChipTables& chip = session.unit().device().tables();
  const LibraryTables library = virtual_onu::ReadLibraryTables();
  std::vector<LanVlan> objects = library.lanVlans;
  std::erase_if(objects, [uni](const LanVlan& lan) { return lan.uni != uni; });
  return ReportConfiguration(session, uni)
      .addText("upstream flows, in the order of matching\n")
      .add("upstreamFlows", UpstreamFlows(chip, uni), "none")
      .addText("downstream flows\n")
      .add("downstreamFlows", DownstreamFlows(library, chip, uni), "none")
      .addText("LAN VLAN objects\n")
      .add("lanVlans", Table(kLanVlans, objects), "none");
}

}  // namespace

Result ShowVlanConfig(Session& session, const Arguments& arguments) {
  return ReportConfiguration(session, UniNumberArgument(session, arguments));
}

const Command kShowPort = {
    {"show port",
     {{"N", ArgumentType::Number, "UNI port, from 1"}},
     "shows the VLAN configuration of a port as the driver was told it, "
     "how its flows differ from that, and the flows and VLAN objects that the library made of it",
     {"Init\nSetPortPvid 1 100\nSetVlanTag 1\nshow port 1"}},
    ShowPort};

}  // namespace onu
