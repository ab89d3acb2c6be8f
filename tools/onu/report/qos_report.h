/// @file
/// What the QoS of the data path did to a frame, in words and as JSON.
#pragma once

#include <string>

#include "datapath/data_path.h"
#include "report/json.h"

namespace onu {

/// The policer that the frame was held against, and what it said; null when there was none.
Json PolicerToJson(const virtual_onu::Verdict& verdict);

/// The priorities before and behind the re-mark; null when there was none.
Json RemarkToJson(const virtual_onu::Verdict& verdict);

/// A line for the policer.
std::string PolicerToText(const virtual_onu::Verdict& verdict);

/// Lines for re-mark and queue.
std::string QueueToText(const virtual_onu::Verdict& verdict);

}  // namespace onu
