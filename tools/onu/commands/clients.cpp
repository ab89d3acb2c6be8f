/// @file
/// The command that serves the frames for the protocol clients, or records them only.
#include <string>

#include "clients/protocol_clients.h"
#include "commands/command_rows.h"
#include "session/session.h"

namespace onu {

namespace {

Result SwitchClients(Session& session, const Arguments& arguments) {
  const bool on = arguments.word("STATE") == "on";
  session.unit().onClientCall(on ? virtual_onu::ClientTaker(virtual_onu::ServeClient)
                                 : virtual_onu::ClientTaker());
  session.noteChange({"clients", arguments.word("STATE")});
  return {{{"clients", on}}, std::string("protocol clients ") + (on ? "on" : "off") + "\n"};
}

}  // namespace

const Command kClients = {
    {"clients",
     {{"STATE", ArgumentType::Switch, "on or off"}},
     "serves the frames that the library hands to its protocol clients: groups are joined "
     "and left, and every frame goes on to the other side; off, they are only recorded",
     {"Init\nclients on\nSetVlanTransparent 1\nSetPortAdminState 1 1\n"
      "send uni1 tests/data/igmp-join.pcap#1\ncapture"}},
    SwitchClients,
    true};

}  // namespace onu
