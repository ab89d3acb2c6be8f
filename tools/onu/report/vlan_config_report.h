/// @file
/// A UNI port's VLAN configuration for people and for programs.
#pragma once

#include <string>

#include <brmgr_record.h>

#include "report/json.h"

namespace onu {

/// Mode, PVID, priority and the used entries of the lists.
Json VlanConfigToJson(const PortVlanInfo& info);

/// The same in lines: "mode trunk", "PVID 100 priority 3", "trunk list 200 300".
std::string VlanConfigToText(const PortVlanInfo& info);

}  // namespace onu
