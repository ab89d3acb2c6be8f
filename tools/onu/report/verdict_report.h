/// @file
/// What became of a frame, as JSON and as text.
#pragma once

#include <string>

#include "base/bytes.h"
#include "datapath/data_path.h"
#include "report/result.h"

namespace onu {

/// The verdict without the frame: disposition, outcome, what decided, and copies for the mirror
/// port. For people, lines from the outcome on.
Result ReportVerdict(const virtual_onu::Verdict& verdict);

/// A frame: its bytes in hexadecimal, its length, and a summary.
Json FrameToJson(const virtual_onu::Bytes& frame);

/// Where the frame went: the ports it left by, "unit" when it was trapped, "-" when dropped.
std::string DestinationOf(const virtual_onu::Verdict& verdict);

/// What became of its copies: " (egress_link_down: uni2,uni3; mirrored: uni4)"; nothing without.
std::string CopiesOf(const virtual_onu::Verdict& verdict);

/// What was done with a frame: the past tense of a disposition ("forwarded").
std::string_view DispositionDone(virtual_onu::Disposition disposition);

}  // namespace onu
