/// @file
/// The live run as a process, its ports on sockets of the test instead of TAP interfaces.
#include <gmock/gmock.h>
#include <string>

#include "base/text.h"
#include "frame/words.h"
#include "report/json.h"
#include "run_program.h"
#include "scratch.h"
#include "wire.h"

namespace onu {
namespace {

using test::Finished;
using test::RunProgramHere;
using test::Scratch;
using testing::HasSubstr;
using virtual_onu::Bytes;
using virtual_onu::test::Wire;

constexpr const char* kTagMode =
    "Init\nSetPortAdminState 1 1\nSetPortPvid 1 100\nSetPortPriority 1 3\nSetVlanTag 1\n";

/// UNI port 1 and the WAN side on sockets. No frame comes from the WAN side.
class Live : public testing::Test {
 protected:
  [[nodiscard]] Words arguments(const Words& more = {}) const {
    Words words = {"live", "--uni1", "fd:" + std::to_string(uni1.near()), "--wan",
                   "fd:" + std::to_string(wan.near())};
    words.insert(words.end(), more.begin(), more.end());
    return words;
  }

  /// Runs until the ends bring nothing more.
  Finished run(const Words& more = {}, const std::string& script = {}) {
    uni1.finish();
    wan.finish();
    return RunProgramHere(arguments(more), script);
  }

  Wire uni1;
  Wire wan;
};

Bytes Frame(const Words& words) {
  return std::get<Bytes>(virtual_onu::BuildFrame(words));
}

/// The document of the last line.
Json LastDocument(const Finished& finished) {
  const std::string text = finished.out.substr(0, finished.out.size() - 1);
  return Json::parse(text.substr(text.rfind('\n') + 1)).value();
}

TEST_F(Live, WithoutAScript_PortsAreTransparent) {
  const Bytes untagged = Frame({"udp", "dport", "9"});
  const Bytes tagged = Frame({"vlan", "100", "udp"});
  uni1.send(untagged);
  uni1.send(tagged);
  const Finished finished = run();
  EXPECT_EQ(finished.status, 0);
  EXPECT_EQ(wan.next(), untagged);
  EXPECT_EQ(wan.next(), tagged);
  EXPECT_EQ(wan.next(), Bytes());
  EXPECT_EQ(uni1.next(), Bytes());
}

TEST_F(Live, Script_ConfiguresTheUnit) {
  uni1.send(Frame({"udp", "dport", "9"}));
  uni1.send(Frame({"vlan", "200", "udp"}));
  const Finished finished = run({"--script", "-"}, kTagMode);
  EXPECT_EQ(finished.status, 0);
  EXPECT_EQ(wan.next(), Frame({"vlan", "100", "pcp", "3", "length", "64", "udp", "dport", "9"}));
  EXPECT_EQ(wan.next(), Bytes());
}

TEST_F(Live, Downstream_LeavesByTheUniPort) {
  wan.send(Frame({"vlan", "100", "length", "64", "udp"}));
  wan.send(Frame({"vlan", "101", "udp"}));
  const Finished finished = run({"--script", "-"}, kTagMode);
  EXPECT_EQ(finished.status, 0);
  EXPECT_EQ(uni1.next(), Frame({"udp"}));
  EXPECT_EQ(uni1.next(), Bytes());
}

TEST_F(Live, End_ListsWhatCrossedThePorts) {
  uni1.send(Frame({"udp", "length", "60"}));
  uni1.send(Frame({"vlan", "200", "udp", "length", "64"}));
  uni1.send(Frame({"stp"}));
  const Finished finished = run({"--script", "-"}, kTagMode);
  const std::string near1 = "fd:" + std::to_string(uni1.near());
  const std::string near0 = "fd:" + std::to_string(wan.near());
  EXPECT_THAT(
      finished.out,
      testing::EndsWith(
          "port  interface  in  octets  forwarded  trapped  dropped  out  octets  transmitted  "
          "lost  events lost\n"
          "wan   " +
          near0 +
          "       0   0       0          0        0        2    124     1"
          "            0     0\n"
          "uni1  " +
          near1 +
          "       3   184     1          1        1        0    0       0"
          "            0     0\n"
          "port  outcome       frames in\n"
          "uni1  flow_forward  1\n"
          "uni1  flow_trap     1\n"
          "uni1  no_flow       1\n"
          "trace: 1 command, 1 log line, 0 shell lines, 3 messages, 1 other call\n"));
}

TEST_F(Live, End_ListsWhatCrossedThePortsAsJson) {
  uni1.send(Frame({"udp", "length", "60"}));
  uni1.send(Frame({"vlan", "200", "udp", "length", "64"}));
  uni1.send(Frame({"stp"}));
  uni1.finish();
  wan.finish();
  Words words = arguments({"--script", "-"});
  words.insert(words.begin(), "--json");
  const Json document = LastDocument(RunProgramHere(words, kTagMode));
  EXPECT_EQ(document, Json::parse(R"({"version": 1, "command": "live", "ports": [
      {"port": "wan", "interface": "fd:)" +
                                  std::to_string(wan.near()) + R"(",
       "framesIn": 0, "octetsIn": 0, "forwarded": 0, "trapped": 0, "dropped": 0,
       "framesOut": 2, "octetsOut": 124, "transmitted": 1, "lost": 0, "eventsLost": 0, "outcomes": {}},
      {"port": "uni1", "interface": "fd:)" +
                                  std::to_string(uni1.near()) + R"(",
       "framesIn": 3, "octetsIn": 184, "forwarded": 1, "trapped": 1, "dropped": 1,
       "framesOut": 0, "octetsOut": 0, "transmitted": 0, "lost": 0, "eventsLost": 0,
       "outcomes": {"flow_forward": 1, "flow_trap": 1, "no_flow": 1}}],
      "trace": {"commands": 1, "logLines": 1, "shellLines": 0, "messages": 3, "calls": 1}})"));
}

TEST_F(Live, WithoutFrames_SaysSo) {
  const Finished finished = run();
  EXPECT_EQ(finished.status, 0);
  EXPECT_THAT(finished.out, testing::HasSubstr("no frames came in\n"));
}

TEST_F(Live, Diagnostics_NameTheEnds) {
  const Finished finished = run();
  const std::string near1 = "fd:" + std::to_string(uni1.near());
  const std::string near0 = "fd:" + std::to_string(wan.near());
  EXPECT_EQ(finished.errors, "onu: live: wan on " + near0 + ", uni1 on " + near1 +
                                 "\n"
                                 "onu: live: wan: " +
                                 near0 + " is gone\nonu: live: uni1: " + near1 + " is gone\n");
}

TEST_F(Live, For_EndsTheRunByItself) {
  const Finished finished = RunProgramHere(arguments({"--for", "0.01"}));
  EXPECT_EQ(finished.status, 0);
  EXPECT_THAT(finished.out, testing::HasSubstr("no frames came in\n"));
}

TEST_F(Live, Signal_EndsTheRunInOrder) {
  const Scratch scratch;
  const std::string script =
      scratch.write("end.sh",
                    "program=$1 signal=$2 said=$3\n"
                    "shift 3\n"
                    "mkfifo \"$said\"\n"
                    "\"$program\" \"$@\" 2>\"$said\" &\n"
                    "exec 3<\"$said\"\n"
                    "while read -r line <&3 && [[ $line != *'live: wan on'* ]]; do :; done\n"
                    "kill -s \"$signal\" $!\n"
                    "wait $!\n");
  for (const char* signal : {"INT", "TERM", "HUP"}) {
    Words words = {script, test::ProgramPath().string(), signal, scratch / signal};
    const Words live = arguments();
    words.insert(words.end(), live.begin(), live.end());
    test::Surroundings surroundings;
    surroundings.directory = test::Sources();
    surroundings.program = "bash";
    const Finished finished = test::RunProgram(words, surroundings);
    EXPECT_EQ(finished.status, 0) << signal;
    EXPECT_THAT(finished.out, testing::HasSubstr("no frames came in\n")) << signal;
  }
}

TEST_F(Live, TrappedFrame_IsHandedToTheLibraryWhichPutsItBack) {
  const Bytes discover = Frame({"dhcp", "sip", "0.0.0.0", "dip", "255.255.255.255"});
  uni1.send(discover);
  uni1.send(discover);
  const Finished finished =
      run({"--script", "-"}, std::string(kTagMode) + "Ioctl DHCP_TRAP portIndex=0 enable=1\n");
  EXPECT_EQ(finished.status, 0);
  const Bytes tagged =
      Frame({"vlan", "100", "pcp", "3", "length", std::to_string(discover.size() + 4), "dhcp",
             "sip", "0.0.0.0", "dip", "255.255.255.255"});
  EXPECT_EQ(wan.next(), tagged);
  EXPECT_EQ(wan.next(), tagged);
  EXPECT_EQ(wan.next(), Bytes());
  EXPECT_THAT(finished.out, HasSubstr("\nuni1  protocol_trap  2\n"));
  EXPECT_THAT(finished.out, HasSubstr("\ntrace: 2 commands, "));
}

TEST_F(Live, ProtocolClients_ServeUnlessTheScriptSwitchesThemOff) {
  uni1.send(Frame({"stp"}));
  const Finished finished = run({"--script", "-"}, kTagMode);
  EXPECT_EQ(finished.status, 0);
  EXPECT_EQ(wan.next(), Frame({"stp"}));
}

TEST_F(Live, ProtocolClients_SwitchedOff_ServeNothing) {
  uni1.send(Frame({"stp"}));
  const Finished finished = run({"--script", "-"}, std::string(kTagMode) + "clients off\n");
  EXPECT_EQ(finished.status, 0);
  EXPECT_EQ(wan.next(), Bytes());
  EXPECT_THAT(finished.out, HasSubstr("\nuni1  flow_trap  1\n"));
}

TEST_F(Live, PortsWithoutAnEnd_HaveNoLink) {
  const Finished finished =
      run({"--script", "-"}, "Init\nSetPortAdminState 1 1\nSetPortAdminState 2 1\nshow ports\n");
  EXPECT_EQ(finished.status, 0);
  EXPECT_THAT(finished.out, HasSubstr("\nuni1  up     up    1000"));
  for (const char* port : {"uni2", "uni3", "uni4"}) {
    EXPECT_THAT(finished.out, HasSubstr(std::string("\n") + port + "  up     down  -"));
  }
}

TEST_F(Live, PortsWithoutAnEnd_HaveNoLinkInAUnitThatTheScriptChanged) {
  const Finished finished =
      run({"--script", "-"},
          "config eth 2\nInit\nSetPortAdminState 1 1\nSetPortAdminState 2 1\nshow ports\n");
  EXPECT_EQ(finished.status, 0);
  EXPECT_THAT(finished.out, HasSubstr("\nuni1  up     up    1000"));
  EXPECT_THAT(finished.out, HasSubstr("\nuni2  up     down  -"));
}

TEST_F(Live, Capture_SwitchedOff_RunsWithoutIt) {
  uni1.send(Frame({"stp"}));
  const Finished finished =
      run({"--script", "-"}, "config feature 27 0\nInit\nSetPortAdminState 1 1\n");
  EXPECT_EQ(finished.status, 0);
  EXPECT_THAT(finished.out, HasSubstr("uni1  flow_trap  1\n"));
}

TEST_F(Live, Script_WithAnError_EndsBeforeTheRun) {
  const Finished finished = run({"--script", "-"}, "Init\nnonsense\n");
  EXPECT_EQ(finished.status, 2);
  EXPECT_THAT(finished.errors, testing::StartsWith("stdin:2: unknown command \"nonsense\""));
  EXPECT_THAT(finished.errors, testing::Not(HasSubstr("live:")));
}

TEST_F(Live, Script_WithAnErrorAndKeepGoing_RunsAndKeepsTheStatus) {
  uni1.finish();
  wan.finish();
  Words words = arguments({"--script", "-"});
  words.insert(words.begin(), "--keep-going");
  const Finished finished = RunProgramHere(words, "nonsense\nInit\n");
  EXPECT_EQ(finished.status, 2);
  EXPECT_THAT(finished.out, testing::HasSubstr("no frames came in\n"));
}

TEST_F(Live, Script_ThatQuits_EndsBeforeTheRun) {
  const Finished finished = run({"--script", "-"}, "Init\nquit\n");
  EXPECT_EQ(finished.status, 0);
  EXPECT_EQ(finished.errors, "");
}

struct Case {
  const char* name;
  Words arguments;
  int status;
  const char* error;
};

void PrintTo(const Case& one, std::ostream* out) {
  *out << JoinWords(one.arguments);
}

class LiveErrors : public testing::TestWithParam<Case> {};

TEST_P(LiveErrors, IsOneLine) {
  const Finished finished = RunProgramHere(GetParam().arguments, "echo nothing\n");
  EXPECT_EQ(finished.status, GetParam().status);
  EXPECT_EQ(finished.errors, std::string("onu: ") + GetParam().error + "\n");
}

constexpr const char* kBindings =
    "live: expected --wan and at least one of --uni1, --uni2, ... "
    "(onu live --help lists the options)";

const Case kCases[] = {
    {"NoPort", {"live"}, 2, kBindings},
    {"NoWan", {"live", "--uni1", "tap:a"}, 2, kBindings},
    {"NoUni", {"live", "--wan", "tap:a"}, 2, kBindings},
    {"BothCommandsAndLive",
     {"-c", "Init", "live", "--wan", "tap:a", "--uni1", "tap:b"},
     2,
     "expected either -c or live, got both"},
    {"UnknownKind",
     {"live", "--wan", "eth0", "--uni1", "tap:b"},
     1,
     "--wan: eth0: expected tap:NAME, tap:NAME@NETNS or fd:N"},
    {"NoDescriptor",
     {"live", "--uni2", "tap:a", "--wan", "fd:99"},
     1,
     "--wan: fd:99: expected an open socket that keeps frames apart "
     "(SOCK_SEQPACKET or SOCK_DGRAM)"},
    {"NoNamespace",
     {"live", "--wan", "tap:a@onu-absent", "--uni1", "tap:b"},
     1,
     "--wan: tap:a@onu-absent: there is no such network namespace: \"ip netns list\" shows them"},
};

INSTANTIATE_TEST_SUITE_P(Program, LiveErrors, testing::ValuesIn(kCases),
                         [](const auto& one) { return std::string(one.param.name); });

TEST_F(Live, Script_Missing_IsOneLine) {
  const Finished finished = run({"--script", "absent.onu"});
  EXPECT_EQ(finished.status, 1);
  EXPECT_EQ(finished.errors, "onu: cannot read the script absent.onu: No such file or directory\n");
}

TEST_F(Live, Script_ThatDoesNotStartTheLibrary_IsOneLine) {
  const Finished finished = run({"--script", "-"}, "echo hello\n");
  EXPECT_EQ(finished.status, 1);
  EXPECT_EQ(finished.errors,
            "onu: live: the library was not started: expected Init in the script\n");
}

TEST_F(Live, PortThatTheUnitDoesNotHave_IsOneLine) {
  const Finished finished =
      RunProgramHere({"live", "--uni5", "fd:" + std::to_string(uni1.near()), "--wan",
                      "fd:" + std::to_string(wan.near()), "--script", "-"},
                     "Init\n");
  EXPECT_EQ(finished.status, 2);
  EXPECT_EQ(finished.errors,
            "onu: --uni5: the unit has the UNI ports 1 to 4 (--config eth=N gives it others)\n");
}

TEST(LiveHelp, ListsTheOptions) {
  const Finished finished = RunProgramHere({"live", "--help"});
  EXPECT_EQ(finished.status, 0);
  for (const char* word : {"--wan", "--uni1", "--uni4", "--script", "--for", "tap:NAME@NETNS"}) {
    EXPECT_THAT(finished.out, HasSubstr(word));
  }
  EXPECT_THAT(finished.out, testing::Not(HasSubstr("--uni5")));
  EXPECT_EQ(finished.errors, "");
}

}  // namespace
}  // namespace onu
