/// @file
/// The command that holds the library's tables against what exists.
#include "commands.h"
#include "consistency/consistency.h"
#include "consistency/read_library_tables.h"

namespace onu {

Result CheckTables(Session& session, const Arguments& /*arguments*/) {
  virtual_onu::Unit& unit = session.unit();
  const std::vector<std::string> findings = virtual_onu::CheckConsistency(
      virtual_onu::ReadLibraryTables(), {unit.device().tables(), unit.shell().objects()});
  Result result = Result().add("findings", ListedLines(findings));
  return findings.empty() ? result.addText("everything adds up\n") : result;
}

}  // namespace onu
