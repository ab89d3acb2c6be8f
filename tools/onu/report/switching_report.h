/// @file
/// What the MAC table and the group entries decided about a frame, for people and programs.
#pragma once

#include "datapath/data_path.h"
#include "report/result.h"

namespace onu {

/// What of the MAC table decided about a frame; null and no line when nothing did.
Result ReportMacDecision(const virtual_onu::Verdict& verdict);

/// What the group entries said of a frame; null and no line when they were not asked.
Result ReportGroupDecision(const virtual_onu::Verdict& verdict);

}  // namespace onu
