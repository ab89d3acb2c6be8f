/// @file
/// Wrong use of the program: exit status and the one line that says what is wrong.
#include <gtest/gtest.h>
#include <string>

#include "language/words.h"
#include "run_program.h"

namespace onu {
namespace {

using test::Finished;
using test::RunProgramHere;

struct Case {
  const char* name;
  Words arguments;
  std::string input;
  int status;
  std::string error;
};

void PrintTo(const Case& one, std::ostream* out) {
  *out << JoinWords(one.arguments);
}

const Case kCases[] = {
    {"UnknownCommand",
     {"-c", "shwo classes"},
     "",
     2,
     "onu: unknown command \"shwo\"; did you mean \"show classes\"? (help lists the commands)\n"},
    {"UnknownOperation",
     {"-c", "BCM6838X_RdpaIcIni"},
     "",
     2,
     "onu: unknown command \"BCM6838X_RdpaIcIni\"; did you mean \"RdpaIcInit\"? "
     "(help lists the commands)\n"},
    {"LineOfAScript",
     {"run", "-"},
     "# one\n\nInit now\n",
     2,
     "stdin:3: BCM6838X_Init: unexpected argument \"now\"; usage: BCM6838X_Init\n"},
    {"MissingArgument",
     {"-c", "StreamPortIndexUniToRdpa"},
     "",
     2,
     "onu: BCM6838X_StreamPortIndexUniToRdpa: argument port is missing: "
     "expected a number from 0 to 4294967295; usage: BCM6838X_StreamPortIndexUniToRdpa port\n"},
    {"BadNumber",
     {"-c", "SetPortAdminState one 0"},
     "",
     2,
     "onu: BCM6838X_SetPortAdminState: port: expected a number from 0 to 4294967295, got \"one\"; "
     "usage: BCM6838X_SetPortAdminState port state\n"},
    {"BadPort",
     {"-c", "send lan1 udp"},
     "",
     2,
     "onu: send: PORT: expected uni1 to uni32 or wan, got \"lan1\"; usage: send PORT FRAME... "
     "[--out DIR]\n"},
    {"LinkOfTheWan",
     {"-c", "link wan up"},
     "",
     2,
     "onu: link: PORT: expected uni1 to uni32, got \"wan\"; "
     "usage: link PORT STATE [SPEED] [DUPLEX] [pause]\n"},
    {"LinkOfAnAbsentPort",
     {"--config", "eth=2", "-c", "link uni3 up"},
     "",
     2,
     "onu: link: PORT: expected uni1, uni2, got \"uni3\"; the unit has no more ports "
     "(config eth)\n"},
    {"LinkState",
     {"-c", "link uni1 on"},
     "",
     2,
     "onu: link: STATE: expected up or down, got \"on\"; "
     "usage: link PORT STATE [SPEED] [DUPLEX] [pause]\n"},
    {"LinkSpeed",
     {"-c", "link uni1 up 200 full"},
     "",
     2,
     "onu: link: SPEED: expected 10, 100 or 1000, got \"200\"; did you mean \"100\"?; "
     "usage: link PORT STATE [SPEED] [DUPLEX] [pause]\n"},
    {"LinkDuplexMissing",
     {"-c", "link uni1 up 100 pause"},
     "",
     2,
     "onu: link: argument DUPLEX is missing: expected full or half behind the speed\n"},
    {"LinkDownWithSpeed",
     {"-c", "link uni1 down 100 full"},
     "",
     2,
     "onu: link: expected nothing behind \"down\": a port without a partner has no mode\n"},
    {"LinkDownWithPause",
     {"-c", "link uni1 down pause"},
     "",
     2,
     "onu: link: expected nothing behind \"down\": a port without a partner has no mode\n"},
    {"PhyOfPortZero",
     {"-c", "show phy 0"},
     "",
     2,
     "onu: show phy: N: expected the number of a UNI port from 1 to 4, got \"0\"\n"},
    {"PhyOfAnAbsentPort",
     {"-c", "show phy 5"},
     "",
     2,
     "onu: show phy: N: expected the number of a UNI port from 1 to 4, got \"5\"\n"},
    {"BadKey",
     {"-c", "config ethe 1"},
     "",
     2,
     "onu: config: KEY: expected a key of the configuration, got \"ethe\"; did you mean \"eth\"?; "
     "usage: config KEY VALUE...\n"},
    {"BadField",
     {"-c", "Ioctl IC_DEL icIdex=1"},
     "",
     2,
     "onu: BCM6838X_Ioctl: IngressClassDel has no field \"icIdex\"; did you mean \"icIndex\"? "
     "(its fields: dir, icIndex)\n"},
    {"OpenQuote",
     {"-c", "echo \"x"},
     "",
     2,
     "onu: the line ends inside quotes or behind a backslash; close the quotes\n"},
    {"AbsentCapture",
     {"-c", "send uni1 absent.pcap"},
     "",
     1,
     "onu: send: cannot read the capture: absent.pcap: No such file or directory\n"},
    {"AbsentScript",
     {"run", "absent.onu"},
     "",
     1,
     "onu: cannot read the script absent.onu: No such file or directory\n"},
    {"DirectoryAsScript",
     {"run", "tests"},
     "",
     1,
     "onu: cannot read the script tests: Is a directory\n"},
    {"UnknownOption",
     {"--jsn"},
     "",
     2,
     "onu: The following argument was not expected: --jsn (onu --help lists the options)\n"},
    {"ScriptMissing", {"run"}, "", 2, "onu: SCRIPT is required (onu --help lists the options)\n"},
    {"CommandAndScript",
     {"-c", "Init", "run", "-"},
     "",
     2,
     "onu: expected either -c or run, got both\n"},
    {"ConfigWithoutValue",
     {"--config", "eth"},
     "",
     2,
     "onu: --config: expected KEY=VALUE, got \"eth\"\n"},
    {"ConfigOutOfRange",
     {"--config", "eth=33"},
     "",
     2,
     "onu: --config: eth: expected a number from 0 to 32, got \"33\"\n"},
    {"ConfigUnknown",
     {"--config", "ports=3"},
     "",
     2,
     "onu: --config: expected a key of the configuration, got \"ports\" "
     "(show config lists the keys)\n"},
};

class WrongUse : public testing::TestWithParam<Case> {};

TEST_P(WrongUse, SaysWhatIsWrongInOneLine) {
  const Finished finished = RunProgramHere(GetParam().arguments, GetParam().input);
  EXPECT_EQ(finished.status, GetParam().status);
  EXPECT_EQ(finished.errors, GetParam().error);
  EXPECT_EQ(finished.out, "");
}

INSTANTIATE_TEST_SUITE_P(Table, WrongUse, testing::ValuesIn(kCases),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
}  // namespace onu
