/// @file
/// The rows of the program's commands. A new command is one more row.
#include "command_table.h"

#include "commands.h"
#include "switching_commands.h"

namespace onu {

namespace {

const Argument kPort = {"PORT", ArgumentType::Port, "where the frame comes in"};
const Argument kFrame = {"FRAME", ArgumentType::Frame,
                         "a capture, a frame of a capture, hexadecimal digits, or words",
                         Presence::Rest};
const Argument kCommand = {"CMD", ArgumentType::CommandCode, "counts commands of this code only",
                           Presence::Optional};

std::vector<Command> ShowObjectCommands() {
  return {
      {{"show classes", {}, "lists the ingress classes", {"Init\nshow classes"}}, ShowClasses},
      {{"show flows", {}, "lists the flows with their keys and results", {"Init\nshow flows"}},
       ShowFlows},
      {{"show actions",
        {},
        "lists the VLAN actions",
        {"Init\nIoctl VLAN_ACTION_ADD cmd=pop dir=ds\nshow actions"}},
       ShowActions},
      {{"show vlans",
        {},
        "lists the VLAN objects of the data-path shell, those of the WAN side and of the LAN ports",
        {"AddWanVlan 1 100 4096\nAddLanVlan 1 100\nshow vlans"}},
       ShowVlans},
      {{"show port",
        {{"N", ArgumentType::Number, "UNI port, from 1"}},
        "shows the VLAN configuration of a port as the driver was told it, how its flows differ "
        "from "
        "that, and the flows and VLAN objects that the library made of it",
        {"Init\nSetPortPvid 1 100\nSetVlanTag 1\nshow port 1"}},
       ShowPort},
      {{"show ports",
        {},
        "lists the ports: administrative state, link, the ports that each is isolated from, "
        "mirroring, and the frames and octets that crossed them",
        {"show ports", "Init\nSetPortAdminState 1 1\nsend uni1 tests/data/stp.pcap\nshow ports"}},
       ShowPorts},
      {{"show phy",
        {{"N", ArgumentType::Number, "UNI port, from 1"}},
        "lists the registers of a port's PHY",
        {"show phy 1", "Init\nshow phy 2"}},
       ShowPhy},
  };
}

std::vector<Command> StatsCommands() {
  return {
      {{"show stats",
        {{"N", ArgumentType::Number, "only UNI port N, from 1", Presence::Optional},
         {"WATCH", ArgumentType::Flag,
          "the rates of the chip's counters instead, by the second of the unit's time: first those "
          "since the last watch, or since the start of the unit; a second passes with each line, "
          "and at the prompt it lasts a second, until Ctrl-C",
          Presence::Optional, "--watch"},
         {"COUNT", ArgumentType::Number, "ends the watch after so many lines", Presence::Optional,
          "--count"}},
        "lists the counters of the UNI ports since the last clear, as the library returns them; "
        "that takes a command for each",
        {"Init\nSetPortAdminState 1 1\nsend uni1 tests/data/stp.pcap\nshow stats",
         "Init\nSetPortAdminState 1 1\nsend uni1 tests/data/stp.pcap\nshow stats 1 --watch --count "
         "2"}},
       ShowStats,
       true},
      {{"clear stats",
        {{"N", ArgumentType::Number, "UNI port, from 1"}},
        "lets the library count a port from here on; the chip's counters go on. The library's "
        "first "
        "request for a port names port 0, which the driver takes for UNI port 1",
        {"InitDrv\nclear stats 1\nshow stats 1"}},
       ClearStats},
  };
}

std::vector<Command> QosCommands() {
  return {
      {{"show qos",
        {{"N", ArgumentType::Number, "UNI port, from 1"}},
        "shows the QoS of a port: the rules that the library installed and what they do, the "
        "scheduling scheme, policer, line rate, downstream limit and DSCP map",
        {"Init\nApplyQosClassification 1 0 1,7,VlanId=200,Ipv4TosDscp=184 8,0,VlanId=100\nshow qos "
         "1"}},
       ShowQos},
      {{"show queues",
        {},
        "lists the upstream queues: scheduling, weight, share of what the strict queues leave "
        "while "
        "all weighted queues have frames waiting, threshold, and the frames that left; of the "
        "other "
        "ports the queues by which frames left",
        {"show queues", "Init\nSetQosWrrWeight 1 1 2 2 4 4 8 8\nshow queues"}},
       ShowQueues},
      {{"drain",
        {{"QUEUE=FRAMES", ArgumentType::Word, "upstream queue, and how many frames wait there",
          Presence::Rest}},
        "tells, and changes nothing, in which order waiting frames would leave the upstream queues "
        "by their weights",
        {"drain 7=3 0=5", "Init\nSetQosWrrWeight 1 1 2 2 4 4 8 8\ndrain 15=20 14=20 8=3"}},
       DrainUpstreamQueues},
  };
}

std::vector<Command> ShowStateCommands() {
  return {
      {{"show trace",
        {{"N", ArgumentType::Number, "only the newest N events", Presence::Optional},
         {"SEQ", ArgumentType::Number, "only events from this sequence number on",
          Presence::Optional, "since"}},
        "lists what left the library: commands with their records decoded, log lines, calls",
        {"Init\nshow trace", "Init\nshow trace 2", "Init\nshow trace since 5"}},
       ShowTrace},
      {{"show log",
        {{"L", ArgumentType::Number, "only lines of this level", Presence::Optional, "level"}},
        "lists the log lines",
        {"show log", "config fail-device on\nInit\nshow log level 1"}},
       ShowLog},
      {{"show config",
        {{"N", ArgumentType::Number,
          "only the VLAN configuration of this UNI port, as the driver was told it",
          Presence::Optional}},
        "lists the configuration",
        {"show config", "Init\nSetPortPvid 1 100\nSetVlanTag 1\nshow config 1"}},
       ShowConfig},
      {{"check",
        {},
        "holds the library's tables against what exists in the chip and in the data path: objects "
        "that one side alone knows, references that do not add up",
        {"Init\nSetVlanTransparent 1\ncheck"}},
       CheckTables},
      {{"show counters",
        {},
        "lists the frames by port and outcome",
        {"Init\nSetPortAdminState 1 1\nsend uni1 tests/data/stp.pcap\nshow counters"}},
       ShowCounters},
  };
}

std::vector<Command> FrameCommands() {
  return {
      {{"send",
        {kPort,
         kFrame,
         {"DIR", ArgumentType::Directory, "writes what left each port to captures there",
          Presence::Optional, "--out"}},
        "offers frames to the data path and tells what became of each",
        {"Init\nSetPortAdminState 1 1\nsend uni1 tests/data/dhcp.pcap",
         "Init\nSetPortAdminState 1 1\nsend uni1 tests/data/stp.pcap#1",
         "Init\nsend wan udp vlan 100 pcp 5 dport 67",
         "Init\nSetPortAdminState 1 1\nsend uni1 tests/data/stp.pcap --out captures"}},
       SendFrames,
       true},
      {{"explain",
        {kPort, kFrame},
        "tells, and changes nothing, what would become of a frame and why: each class tried, each "
        "key compared",
        {"Init\nSetPortAdminState 1 1\nexplain uni1 tests/data/stp.pcap#1",
         "Init\nSetPortAdminState 2 1\nexplain uni2 udp vlan 100 dport 67"}},
       ExplainFrame},
      {{"capture",
        {{"N", ArgumentType::Number, "at most N events", Presence::Optional}},
        "lets the library take the events of trapped frames that wait for it, and tells what left "
        "it: frames for the protocol clients, messages, frames sent",
        {"Init\nSetPortAdminState 1 1\nsend uni1 tests/data/stp.pcap\ncapture",
         "Init\nSetPortAdminState 1 1\nSetDhcpTrapEnable 1\nsend uni1 dhcp\ncapture 1"}},
       CapturePackets,
       true},
      {{"show transmitted",
        {{"N", ArgumentType::Number, "only the newest N frames", Presence::Optional}},
        "lists the frames that the library sent, with the port that each was for",
        {"Init\nSetPortAdminState 2 1\nSendPacket 2 tests/data/stp.pcap#1\nshow transmitted"}},
       ShowTransmitted},
      {{"clients",
        {{"STATE", ArgumentType::Switch, "on or off"}},
        "serves the frames that the library hands to its protocol clients: groups are joined and "
        "left, and every frame goes on to the other side; off, they are only recorded",
        {"Init\nclients on\nSetVlanTransparent 1\nSetPortAdminState 1 1\nsend uni1 "
         "tests/data/igmp-join.pcap#1\ncapture"}},
       SwitchClients,
       true},
  };
}

std::vector<Command> LinkCommands() {
  return {
      {{"link",
        {{"PORT", ArgumentType::UniPort, "whose cable"},
         {"STATE", ArgumentType::LinkState, "up plugs a link partner in, down unplugs it"},
         {"SPEED", ArgumentType::Speed, "the only speed that the partner offers; without it, all",
          Presence::Optional},
         {"DUPLEX", ArgumentType::Duplex, "the only duplex mode that the partner offers",
          Presence::Optional},
         {"PAUSE", ArgumentType::Flag, "the partner offers pause frames", Presence::Optional,
          "pause"}},
        "changes what a port's cable leads to: a partner that negotiates, or none; the kernel "
        "tells "
        "the library's task of a link that changes",
        {"link uni1 down\nGetPortLinkState 1", "link uni1 up 100 full\nGetPortNegResult 1",
         "link uni2 up pause\nshow ports"}},
       ChangeLink,
       true},
      {{"button press",
        {{"MS", ArgumentType::Number,
          "how long, in milliseconds of the unit's time; 100 without it", Presence::Optional}},
        "presses the reset button and lets it go; what the library's task then does is recorded "
        "and not done",
        {"config run-tasks on\nInit\nbutton press",
         "config run-tasks on\nInit\nbutton press 5000"}},
       PressButton,
       true},
  };
}

std::vector<Command> FaultCommands() {
  return {
      {{"fault nth",
        {{"N", ArgumentType::Number, "counts the commands from now on, from 1"}, kCommand},
        "makes the driver refuse the Nth command",
        {"fault nth 3\nInit\nshow log", "fault nth 2 FLOW_ADD\nInit"}},
       FaultNth,
       true},
      {{"fault from",
        {{"N", ArgumentType::Number, "counts the commands from now on, from 1"}, kCommand},
        "makes the driver refuse every command from the Nth on",
        {"fault from 5\nInit", "fault from 1 98\nInit\nshow classes"}},
       FaultFrom,
       true},
      {{"fault fraction",
        {{"F", ArgumentType::Fraction, "the fraction to refuse"},
         {"S", ArgumentType::Number, "seed of the choice", Presence::Required, "seed"}},
        "makes the driver refuse a fraction of all commands",
        {"fault fraction 0.25 seed 7\nInit"}},
       FaultFraction,
       true},
      {{"fault clear", {}, "ends all faults", {"fault nth 3\nfault clear\nInit"}},
       FaultClear,
       true},
      {{"fault show", {}, "lists the faults", {"fault nth 3 FLOW_ADD\nfault show"}}, FaultShow},
  };
}

std::vector<Command> StateCommands() {
  return {
      {{"config",
        {{"KEY", ArgumentType::ConfigKey, "what to change"},
         {"VALUE", ArgumentType::ConfigValue, "the new value", Presence::Rest}},
        "changes the platform's configuration; the library asks anew each time",
        {"config eth 2\nInit", "config feature 27 0\nInit", "config mac1 02:00:5e:10:00:99\nInit"}},
       ChangeConfig,
       true},
      {{"journal save",
        {{"FILE", ArgumentType::File, "where to write it"}},
        "saves all that changed something in this session, with the records that it caused",
        {"Init\nSetPortAdminState 1 1\nsend uni1 tests/data/stp.pcap#1\njournal save "
         "session.json"}},
       JournalSave},
      {{"journal replay",
        {{"FILE", ArgumentType::File, "a saved journal"}},
        "does all of a journal again, in a fresh session, and compares what it causes",
        {"journal replay saved.json"}},
       JournalReplay},
      {{"clear counters", {}, "sets the counters of frames to zero", {"clear counters"}},
       ClearCounters,
       true},
      {{"clear trace", {}, "empties the trace and the log", {"Init\nclear trace\nshow trace"}},
       ClearTrace,
       true},
  };
}

std::vector<Command> ProgramCommands() {
  return {
      {{"echo",
        {{"TEXT", ArgumentType::Word, "what to print", Presence::OptionalRest}},
        "prints its arguments",
        {"echo \"start-up done\""}},
       Echo},
      {{"log",
        {{"STATE", ArgumentType::Switch, "on or off"}},
        "shows log lines as they come, or no longer",
        {"log on\nfault nth 2\nInit"}},
       SwitchLog},
      {{"help",
        {{"NAME", ArgumentType::EntryName, "a command or an operation", Presence::OptionalRest},
         {"MARKDOWN", ArgumentType::Flag, "writes the whole reference", Presence::Optional,
          "--markdown"}},
        "explains the commands and operations, or one of them",
        {"help", "help show trace", "help Ioctl"}},
       Help},
      {{"quit", {}, "ends the session", {"quit"}}, Quit},
  };
}

std::vector<Command> MakeTable() {
  std::vector<Command> table;
  for (const auto& part : {ShowObjectCommands(), QosCommands(), StatsCommands(),
                           ShowStateCommands(), SwitchingCommands(), FrameCommands(),
                           LinkCommands(), FaultCommands(), StateCommands(), ProgramCommands()}) {
    table.insert(table.end(), part.begin(), part.end());
  }
  return table;
}

}  // namespace

const std::vector<Command>& CommandTable() {
  static const std::vector<Command> table = MakeTable();
  return table;
}

}  // namespace onu
