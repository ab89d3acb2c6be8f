/// @file
/// Reading of frames from words.
#include "language/frame_input.h"

#include <algorithm>
#include <optional>
#include <variant>

#include "base/text.h"
#include "frame/words.h"
#include "language/failure.h"

namespace onu {

namespace {

/// "FILE.pcap" or "FILE.pcap#N".
struct CaptureName {
  std::string path;
  std::optional<std::string> number;
};

std::optional<CaptureName> ReadCaptureName(const std::string& word) {
  const std::size_t hash = word.rfind('#');
  CaptureName name = {word.substr(0, hash), std::nullopt};
  if (hash != std::string::npos) {
    name.number = word.substr(hash + 1);
  }
  const bool capture = name.path.ends_with(".pcap") || name.path.ends_with(".pcapng");
  return capture ? std::optional(name) : std::nullopt;
}

/// Position of the frame with that number; throws when there is none.
std::size_t PositionOf(const CaptureName& name, std::size_t frames) {
  const std::optional<std::uint32_t> number = ParseNumber(*name.number);
  if (!number || *number < 1 || *number > frames) {
    throw WrongUse(name.path + ": expected the number of a frame from 1 to " +
                   std::to_string(frames) + ", got " + Quote(*name.number));
  }
  return *number - 1;
}

void AppendCapture(const CaptureName& name, std::vector<InputFrame>& frames) {
  const std::vector<CapturedFrame> captured = ReadCapture(name.path);
  const std::size_t first = name.number ? PositionOf(name, captured.size()) : 0;
  const std::size_t last = name.number ? first + 1 : captured.size();
  for (std::size_t i = first; i < last; ++i) {
    frames.push_back({captured[i], name.path + "#" + std::to_string(i + 1)});
  }
}

InputFrame BuildInputFrame(const Words& words) {
  // Any length, runts too: that is how a journal notes frames of captures.
  const auto bytes = words.size() == 1 ? virtual_onu::ParseHex(words.front()) : std::nullopt;
  if (bytes) {
    return {{*bytes, {}}, ""};
  }
  virtual_onu::FrameOrError frame = virtual_onu::BuildFrame(words);
  if (const auto* error = std::get_if<std::string>(&frame)) {
    throw WrongUse("FRAME: " + *error);
  }
  return {{std::get<virtual_onu::Bytes>(std::move(frame)), {}}, ""};
}

}  // namespace

std::vector<InputFrame> ReadFrames(const Words& words) {
  std::vector<InputFrame> frames;
  if (!ReadCaptureName(words.front())) {
    frames.push_back(BuildInputFrame(words));
    return frames;
  }
  for (const std::string& word : words) {
    const std::optional<CaptureName> name = ReadCaptureName(word);
    if (!name) {
      throw WrongUse("FRAME: expected another capture behind " + Quote(words.front()) + ", got " +
                     Quote(word));
    }
    AppendCapture(*name, frames);
  }
  return frames;
}

InputFrame ReadFrame(const Words& words) {
  std::vector<InputFrame> frames = ReadFrames(words);
  if (frames.size() != 1) {
    throw WrongUse("FRAME: expected one frame, got " + std::to_string(frames.size()) +
                   "; choose one with " + words.front() + "#N");
  }
  return std::move(frames.front());
}

}  // namespace onu
