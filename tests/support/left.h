/// @file
/// Everything that left the library, as a list of lines that one expectation can hold.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/bytes.h"
#include "base/trace.h"
#include "unit/unit.h"

namespace hal_test {

/// One line an event:
///   command NAME len N flag F HEX    the record as sent, in the target's byte order; a long one as
///                                    ShowRecord() does
///   log LEVEL FILE TEXT              the line number in TEXT, when it is the call's, as "<line>"
///   shell LINE
///   message MODULE CODE HEX
///   call NAME(ARGUMENTS)
std::string Describe(const virtual_onu::TraceEvent& event);

/// The events from sequence number `from` on.
std::vector<std::string> Left(const virtual_onu::Unit& unit, std::uint64_t from = 0);

/// A record in the target's byte order: in hexadecimal; of more than 4096 bytes the digest of all
/// bytes, and the fields that are not zero.
std::string ShowRecord(const std::string& command, const virtual_onu::Bytes& wire);

/// The lines of one kind: those that begin with `kind` and a blank.
std::vector<std::string> OfKind(const std::vector<std::string>& lines, const std::string& kind);

}  // namespace hal_test
