/// @file
/// The commands that concern the program alone.
#include "commands.h"

namespace onu {

Result Echo(Session& /*session*/, const Arguments& arguments) {
  const std::string text = Join(arguments.words("TEXT"), " ");
  return {{{"text", text}}, text + "\n"};
}

Result SwitchLog(Session& session, const Arguments& arguments) {
  const bool on = arguments.word("STATE") == "on";
  session.showLog(on);
  return {{{"on", on}}};
}

Result Quit(Session& session, const Arguments& /*arguments*/) {
  session.quit();
  return {};
}

}  // namespace onu
