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
#include "report/text_table.h"
#include "report/vlan_config_report.h"
#include "session/port_argument.h"
#include "session/session.h"

namespace onu {

namespace {

using virtual_onu::ChipTables;
using virtual_onu::IngressClass;
using virtual_onu::LibraryTables;
using virtual_onu::SharedFlowKey;

/// One part of the report: its title, its rows for people, its value for programs.
struct Section {
  std::string title;
  TextTable table;
  Json json = Json::array();

  [[nodiscard]] std::string text() const { return title + "\n" + table.text("none"); }
};

/// The upstream flows of the port that belong to its VLAN mode, in the order of matching.
Section UpstreamFlows(const ChipTables& chip, std::uint32_t uni) {
  Section section = {"upstream flows, in the order of matching",
                     TextTable({"class", "flow", "queue", "action", "keys"})};
  for (const IngressClass* ingressClass : ClassesAsTried(chip.upstream)) {
    for (const auto& [index, flow] : ingressClass->flows) {
      if (flow.ingressPort != virtual_onu::DevicePortOf(uni)) {
        continue;
      }
      const FieldTexts fields("IngressFlowRule", BytesOf(flow));
      const std::string keys = KeysOf(*ingressClass, fields);
      section.table.add({fields["icIndex"], fields["flowIndex"], fields["queue"],
                         fields["vlanActionIndex"], keys});
      section.json.push_back({{"icIndex", flow.icIndex},
                              {"flowIndex", flow.flowIndex},
                              {"queue", flow.queue},
                              {"vlanAction", fields["vlanActionIndex"]},
                              {"keys", keys}});
    }
  }
  return section;
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

/// The shared downstream flows that the port's upstream flows lead to.
Section DownstreamFlows(const LibraryTables& library, const ChipTables& chip, std::uint32_t uni) {
  std::set<SharedFlowKey> used;
  for (const virtual_onu::UpstreamFlow& recorded : library.upstreamFlows) {
    if (recorded.uni == uni) {
      used.insert(virtual_onu::SharedFlowOf(library, recorded.flow));
    }
  }
  Section section = {"downstream flows",
                     TextTable({"class", "flow", "vid", "tags", "references", "port action"})};
  for (const IngressFlowRule& flow : library.downstreamFlows) {
    if (!used.contains({flow.outerVid, flow.vlanNum})) {
      continue;
    }
    const std::string vid = flow.outerVid == 4096 ? "any" : std::to_string(flow.outerVid);
    const std::string action = PortActionOf(chip, flow, uni);
    section.table.add({std::to_string(flow.icIndex), std::to_string(flow.flowIndex), vid,
                       std::to_string(flow.vlanNum), std::to_string(flow.refCount), action});
    section.json.push_back({{"icIndex", flow.icIndex},
                            {"flowIndex", flow.flowIndex},
                            {"vid", vid},
                            {"vlanNum", flow.vlanNum},
                            {"references", flow.refCount},
                            {"portAction", action}});
  }
  return section;
}

Section VlanObjects(const LibraryTables& library, std::uint32_t uni) {
  Section section = {"LAN VLAN objects", TextTable({"vid", "references"})};
  for (const virtual_onu::LanVlan& lan : library.lanVlans) {
    if (lan.uni == uni) {
      section.table.add({std::to_string(lan.vid), std::to_string(lan.references)});
      section.json.push_back({{"vid", lan.vid}, {"references", lan.references}});
    }
  }
  return section;
}

/// The configuration as the driver was told, and how the flows differ from it.
void AddConfiguration(Session& session, std::uint32_t uni, Result& result) {
  const auto& told = session.unit().device().portTables().vlans;
  if (told.empty()) {
    result.json["config"] = nullptr;
    result.json["differences"] = Json::array();
    result.text += "the driver was not told a VLAN configuration\n";
    return;
  }
  const PortVlanInfo& info = told.at(uni - 1);
  const std::vector<std::string> differences =
      virtual_onu::CompareWithConfiguration(info, uni, session.unit().device().tables());
  result.json["config"] = VlanConfigToJson(info);
  result.json["differences"] = differences;
  result.text += VlanConfigToText(info);
  for (const std::string& difference : differences) {
    result.text += "difference: " + difference + "\n";
  }
}

Result ShowPort(Session& session, const Arguments& arguments) {
  const std::uint32_t uni = UniNumberArgument(session, arguments);
  const ChipTables& chip = session.unit().device().tables();
  const LibraryTables library = virtual_onu::ReadLibraryTables();
  Result result;
  result.json["port"] = uni;
  AddConfiguration(session, uni, result);
  const Section upstream = UpstreamFlows(chip, uni);
  const Section downstream = DownstreamFlows(library, chip, uni);
  const Section objects = VlanObjects(library, uni);
  result.json["upstreamFlows"] = upstream.json;
  result.json["downstreamFlows"] = downstream.json;
  result.json["lanVlans"] = objects.json;
  result.text += upstream.text() + downstream.text() + objects.text();
  return result;
}

}  // namespace

Result ShowVlanConfig(Session& session, const Arguments& arguments) {
  const std::uint32_t uni = UniNumberArgument(session, arguments);
  Result result;
  result.json["port"] = uni;
  AddConfiguration(session, uni, result);
  return result;
}

const Command kShowPort = {
    {"show port",
     {{"N", ArgumentType::Number, "UNI port, from 1"}},
     "shows the VLAN configuration of a port as the driver was told it, how its flows differ "
     "from that, and the flows and VLAN objects that the library made of it",
     {"Init\nSetPortPvid 1 100\nSetVlanTag 1\nshow port 1"}},
    ShowPort};

}  // namespace onu
