/// @file
/// Frames as they are given on a line: captures, hexadecimal digits or words.
#pragma once

#include <string>
#include <vector>

#include "language/capture_file.h"
#include "language/words.h"

namespace onu {

struct InputFrame {
  CapturedFrame frame;
  std::string source;  ///< "FILE.pcap#N", or nothing when the frame stood on the line
};

/// The frames that the words name: all of FILE.pcap, the Nth of FILE.pcap#N (from 1), for each word
/// in turn; otherwise the one frame that the words describe. Throws a Failure.
std::vector<InputFrame> ReadFrames(const Words& words);

/// The one frame that the words name; throws a Failure when they name several.
InputFrame ReadFrame(const Words& words);

}  // namespace onu
