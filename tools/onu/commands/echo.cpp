/// @file
/// The command that prints its arguments.
#include <string>

#include "commands/command_rows.h"
#include "session/session.h"

namespace onu {

namespace {

Result Echo(Session& /*session*/, const Arguments& arguments) {
  const std::string text = Join(arguments.words("TEXT"), " ");
  return {{{"text", text}}, text + "\n"};
}

}  // namespace

const Command kEcho = {{"echo",
                        {{"TEXT", ArgumentType::Word, "what to print", Presence::OptionalRest}},
                        "prints its arguments",
                        {"echo \"start-up done\""}},
                       Echo};

}  // namespace onu
