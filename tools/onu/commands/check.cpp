/// @file
/// The command that holds the library's tables against what exists.
#include "commands/command_rows.h"
#include "consistency/consistency.h"
#include "consistency/read_library_tables.h"
#include "session/session.h"

namespace onu {

namespace {

Result CheckTables(Session& session, const Arguments& /*arguments*/) {
  virtual_onu::Unit& unit = session.unit();
  const std::vector<std::string> findings = virtual_onu::CheckConsistency(
      virtual_onu::ReadLibraryTables(), {unit.device().tables(), unit.shell().objects()});
  Result result = Result().add("findings", ListedLines(findings));
  return findings.empty() ? result.addText("everything adds up\n") : result;
}

}  // namespace

const Command kCheck = {
    {"check",
     {},
     "holds the library's tables against what exists in the chip and in the data path: "
     "objects that one side alone knows, references that do not add up",
     {"Init\nSetVlanTransparent 1\ncheck"}},
    CheckTables};

}  // namespace onu
