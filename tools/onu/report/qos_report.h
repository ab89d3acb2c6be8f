/// @file
/// What the QoS of the data path did to a frame, in words and as JSON.
#pragma once

#include "datapath/data_path.h"
#include "report/result.h"

namespace onu {

/// The policer that the frame was held against, and what it said; null when there was none.
Result ReportPolicer(const virtual_onu::Verdict& verdict);

/// The priorities before and behind the re-mark; null when there was none.
Result ReportRemark(const virtual_onu::Verdict& verdict);

}  // namespace onu
