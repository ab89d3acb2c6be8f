/// @file
/// A UNI port's VLAN configuration for people and for programs.
#pragma once

#include <brmgr_record.h>

#include "report/result.h"

namespace onu {

/// Mode, PVID, priority and the used entries of the lists; in lines "mode trunk", "PVID 100 priority
/// 3", "trunk list 200, 300".
Result ReportVlanConfig(const PortVlanInfo& info);

}  // namespace onu
