/// @file
/// Events of the trace as JSON and as text.
#pragma once

#include <string>

#include "base/trace.h"
#include "report/result.h"

namespace onu {

/// An event whole, records in hexadecimal as they stand on the target.
Json EventToJson(const virtual_onu::TraceEvent& event);

/// The same, with the fields of a command's record before and after; for people, one or more lines.
Result ReportEvent(const virtual_onu::TraceEvent& event);

/// A log line as JSON: level, place and text.
Json LogToJson(const virtual_onu::LogEvent& line);

/// A log line as one line, its own line end left out.
std::string LogToText(const virtual_onu::LogEvent& line);

}  // namespace onu
