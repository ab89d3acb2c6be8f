/// @file
/// Tests of what happens to a line before and beside its handler: programs, malformed lines,
/// redirections, faults.
#include "shell/shell.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "shell_fixture.h"

namespace virtual_onu {
namespace {

TEST_F(ShellTest, LineOfAnotherProgram_IsTakenAndDoesNothing) {
  const std::string path = std::filesystem::temp_directory_path() / "shell-test-created";
  run("/usr/local/bin/msgall.sh \"RST button press 10 milliseconds, reboot now\"");
  run("touch " + path);
  run("");
  run("   ");
  EXPECT_FALSE(std::filesystem::exists(path));
  EXPECT_TRUE(objects().vlans.empty());
}

TEST_F(ShellTest, Program_MayBeNamedWithItsDirectory) {
  run("/bin/ethctl eth0 reg 24 f077");
  EXPECT_EQ(interfaces_.phy(1).read(24), 0xF077);
  run("/bin/bs /b/n vlan/name=wan0_5 port/index=wan0");
  EXPECT_EQ(objects().vlans.count("wan0_5"), 1U);
}

TEST_F(ShellTest, MalformedLine_IsRefusedWithTheFirstWordThatDoesNotFit) {
  struct Row {
    const char* line;
    const char* reason;
  };
  const std::vector<Row> rows = {
      {"bs", R"(malformed at its end: expected "/b/n")"},
      {"ethctl", R"(malformed at its end: expected a word)"},
      {"bs /b/x", R"(malformed at "/b/x": expected "/b/n")"},
      {"bs /b/n vlan/name=wan0_5", R"(malformed at its end: expected "port/index")"},
      {"bs /b/d vlan/name=", R"(malformed at its end: expected a word)"},
      {"bs /b/d vlan/name =x", R"(malformed at "=": expected no blank before it)"},
      {"bs /b/c vlan/name=x vid_enable[y]=yes", R"(malformed at "y": expected a decimal number)"},
      {"bs /b/c vlan/name=x vid_enable[5]=on", R"(malformed at "on": expected yes or no)"},
      {"bs /b/d vlan/name=x y", R"(malformed at "y": expected the end of the line)"},
      {"bs /b/d vlan/name=x; reboot", R"(malformed at "reboot": expected the end of the line)"},
      {"bs /b/d vlan/name=x && reboot", R"(malformed at "&": expected the end of the line)"},
      {"bs /b/d vlan/name=x >", R"(malformed at ">": expected the end of the line)"},
      {"bs /b/d vlan/name=x > y 2>&2", R"(malformed at ">": expected the end of the line)"},
      {"ethctl eth0 reg 4", R"(malformed at its end: expected a hexadecimal number)"},
      {"ethctl eth0 reg 0x4 1", R"(malformed at "0x4": expected a decimal number)"},
      {"ethctl eth0 mode auto", R"(malformed at "mode": expected "reg")"},
  };
  run("bs /b/n vlan/name=x port/index=lan0");
  for (const Row& row : rows) {
    EXPECT_EQ(refusal(row.line), row.reason) << row.line;
  }
  EXPECT_EQ(objects().vlans.size(), 1U);
}

TEST_F(ShellTest, Redirection_BehindALineIsAccepted) {
  run("/bin/ethctl eth0 reg 24 0xf077 > /dev/null 2>&1");
  run("ethctl eth0 reg 28 0x9000 > /dev/null");
  EXPECT_EQ(interfaces_.phy(1).read(24), 0xF077);
  EXPECT_EQ(interfaces_.phy(1).read(28), 0x9000);
}

TEST_F(ShellTest, FaultRule_RefusesTheNthLineAndTheLineDoesNothing) {
  shell_.faults().refuseNth(2);
  run("bs /b/n vlan/name=wan0_5 port/index=wan0");
  EXPECT_EQ(refusal("bs /b/n vlan/name=wan0_6 port/index=wan0"), "refused by a fault rule");
  EXPECT_EQ(objects().vlans.count("wan0_6"), 0U);
  run("bs /b/n vlan/name=wan0_6 port/index=wan0");
}

TEST_F(ShellTest, FaultRule_CountsLinesOfOtherProgramsToo) {
  shell_.faults().refuseFrom(2);
  run("/usr/local/bin/msgall.sh \"x\"");
  EXPECT_EQ(refusal("/usr/local/bin/msgall.sh \"x\""), "refused by a fault rule");
  EXPECT_EQ(refusal(""), "refused by a fault rule");
}

}  // namespace
}  // namespace virtual_onu
