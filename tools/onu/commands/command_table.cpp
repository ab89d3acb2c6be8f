/// @file
/// The order of the commands. A new command is one more row here.
#include "commands/command_table.h"

#include <algorithm>
#include <iterator>

#include "commands/command_rows.h"
#include "operations/operation_call.h"
#include "operations/operation_table.h"

namespace onu {

namespace {

std::vector<CommandGroup> ProgramCommands() {
  return {
      {"Tables and ports",
       {kShowClasses, kShowFlows, kShowActions, kShowVlans, kShowPort, kShowPorts, kShowPhy}},
      {"QoS", {kShowQos, kShowQueues, kDrain}},
      {"Counters of the ports", {kShowStats, kClearStats}},
      {"Trace, configuration, consistency",
       {kShowTrace, kShowLog, kShowConfig, kCheck, kShowCounters}},
      {"MAC table, multicast, time", {kShowMac, kShowMulticast, kClock}},
      {"Frames", {kSend, kExplain, kCapture, kShowTransmitted, kClients}},
      {"Links and the reset button", {kLink, kButtonPress}},
      {"Faults", {kFaultNth, kFaultFrom, kFaultFraction, kFaultClear, kFaultShow}},
      {"Changing the configuration, journals",
       {kConfig, kJournalSave, kJournalReplay, kClearCounters, kClearTrace}},
      {"The program itself", {kEcho, kLog, kHelp, kQuit}},
  };
}

std::vector<CommandGroup> OperationCommands() {
  std::vector<CommandGroup> groups;
  for (const OperationGroup& operations : OperationTable()) {
    CommandGroup& group = groups.emplace_back(CommandGroup{operations.title, {}});
    std::ranges::transform(operations.operations, std::back_inserter(group.commands), CommandOf);
  }
  return groups;
}

}  // namespace

const CommandSet& AllCommands() {
  static const CommandSet commands(ProgramCommands(), OperationCommands());
  return commands;
}

}  // namespace onu
