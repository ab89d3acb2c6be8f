/// @file
/// What the MAC table and the group entries decided about a frame, for people and programs.
#pragma once

#include <string>

#include "datapath/data_path.h"
#include "report/json.h"

namespace onu {

/// What of the MAC table decided about a frame; null when nothing did.
Json MacDecisionToJson(const virtual_onu::Verdict& verdict);

/// The same as a line; nothing when nothing did.
std::string MacDecisionToText(const virtual_onu::Verdict& verdict);

/// What the group entries said of a frame; null when they were not asked.
Json GroupDecisionToJson(const virtual_onu::Verdict& verdict);

/// The same as a line; nothing when they were not asked.
std::string GroupDecisionToText(const virtual_onu::Verdict& verdict);

}  // namespace onu
