/// @file
/// What left the library in short lines, for sequences of hundreds of events. Nothing is lost:
/// whatever differs from the usual is in the line.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/trace.h"
#include "unit/unit.h"

namespace hal_test {

/// One line an event, of these forms:
///   FLOW_ADD us FIELD=VALUE ...    a command with its record. The fields that tell flows or
///   actions
///                                  apart are always shown, any other byte only where it differs
///                                  from what every VLAN flow or action carries.
///   FLOW_DEL FIELD=VALUE ...       a record that names an object: all of its fields.
///   log TEXT                       a log line of level 1 from a source of the library, without the
///                                  line end; the line number as "<line>"
///   shell LINE
/// An event that is none of these, or has another length, flag or level, is shown as by Describe().
std::string DescribeBriefly(const virtual_onu::TraceEvent& event);

/// The events from sequence number `from` on.
std::vector<std::string> LeftBriefly(const virtual_onu::Unit& unit, std::uint64_t from = 0);

}  // namespace hal_test
