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
  Result result;
  result.json["findings"] = findings;
  for (const std::string& finding : findings) {
    result.text += finding + "\n";
  }
  if (findings.empty()) {
    result.text = "everything adds up\n";
  }
  return result;
}

}  // namespace onu
