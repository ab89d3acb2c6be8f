/// @file
/// A person's way to write a frame: words such as "udp vlan 100 pcp 5 dport 67", or hexadecimal
/// digits.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "base/bytes.h"
#include "frame/word.h"

namespace virtual_onu {

/// All words, in the order of their explanation.
std::span<const FrameWord> FrameWords();

/// The frame, or a one-line error that names the word and what was expected.
using FrameOrError = std::variant<Bytes, std::string>;

/// Builds the frame that the words describe, in any order but that of the tags, which are pushed as
/// written, outermost first. A single word of at least 28 hexadecimal digits is the frame itself.
FrameOrError BuildFrame(std::span<const std::string> words);

}  // namespace virtual_onu
