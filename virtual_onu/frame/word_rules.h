/// @file
/// The words of the frame language: one table says what each sets, takes and needs. Checking that
/// the words of a frame go together is not done here.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "frame/parts.h"
#include "frame/word.h"

namespace virtual_onu {

/// What a word needs elsewhere in the frame.
enum class Need : std::uint8_t { Nothing, TagBefore, Ip, Addresses, Ports, Payload };

struct FrameDraft;

struct WordRule {
  FrameWord help;
  std::string_view expected = {};  ///< what the argument must be
  /// Takes the argument; false when it is not what was expected. Null for the name of a protocol.
  bool (*apply)(FrameDraft& draft, std::string_view argument) = nullptr;
  const FrameProtocol* protocol = nullptr;
  Need need = Need::Nothing;
  bool repeatable = false;
};

/// A word that was used, and where it stood.
struct WordUse {
  const WordRule* rule = nullptr;
  std::size_t position = 0;              ///< from 1
  std::optional<std::uint32_t> version;  ///< of IP, where the word says one
};

/// What the words said so far.
struct FrameDraft {
  FrameParts parts;
  std::size_t length = kMinFrameLength;
  std::vector<WordUse> uses;  ///< the last one is the word being taken
};

std::span<const WordRule> WordRules();

}  // namespace virtual_onu
