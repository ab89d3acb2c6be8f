/// @file
/// The rows of the commands about the MAC table, the multicast groups and the unit's time.
#include "switching_commands.h"

#include "commands.h"

namespace onu {

std::vector<Command> SwitchingCommands() {
  return {
      {{"show mac",
        {},
        "lists the MAC table: learned, dynamic and static entries, blocked and bound addresses; "
        "age "
        "is in seconds since the last frame",
        {"Init\nAddMacStatic 1 100 02:00:00:00:00:0a\nshow mac",
         "Init\nAddMacDynamic 1 100 02:00:00:00:00:0b\nclock +10\nshow mac"}},
       ShowMac},
      {{"show multicast",
        {},
        "lists the multicast group entries: the port that joined each group and the VLAN action "
        "with "
        "which the group leaves there",
        {"Init\nSetMulticastVlanMode 1 0\nAddMulticastMacAddr 239.1.2.3 1 100\nshow multicast"}},
       ShowMulticast},
      {{"clock",
        {{"+SECONDS", ArgumentType::Word, "moves the time on, +300 or +0.5", Presence::Optional}},
        "tells the unit's time, which stands still until it is moved on or frames are carried live",
        {"clock", "Init\nAddMacDynamic 1 100 02:00:00:00:00:0b\nclock +300\nshow mac"}},
       MoveClock,
       true},
  };
}

}  // namespace onu
