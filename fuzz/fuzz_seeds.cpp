/// @file
/// Makes the fuzzers' seeds out of captures: fuzz_seeds DIRECTORY CAPTURE... writes, for each
/// frame, one input of each fuzzer into DIRECTORY/FUZZER.
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void WriteFile(const std::filesystem::path& path, const Bytes& bytes) {
  std::filesystem::create_directories(path.parent_path());
  std::ofstream file(path, std::ios::binary);
  file.write(reinterpret_cast<const char*>(bytes.data()),
             static_cast<std::streamsize>(bytes.size()));
}

/// The frames of a classic capture of this machine's byte order.
std::vector<Bytes> FramesOf(const Bytes& capture) {
  constexpr std::size_t kFileHeader = 24;
  constexpr std::size_t kFrameHeader = 16;
  constexpr std::size_t kLengthOffset = 8;
  std::vector<Bytes> frames;
  std::size_t at = kFileHeader;
  while (at + kFrameHeader <= capture.size()) {
    std::uint32_t length = 0;
    std::memcpy(&length, &capture[at + kLengthOffset], sizeof(length));
    at += kFrameHeader;
    if (length > capture.size() - at) {
      break;
    }
    const auto first = capture.begin() + static_cast<std::ptrdiff_t>(at);
    frames.emplace_back(first, first + length);
    at += length;
  }
  return frames;
}

Bytes Joined(Bytes front, const Bytes& back) {
  front.insert(front.end(), back.begin(), back.end());
  return front;
}

/// What stands in front of a frame: the configuration of four ports as fuzz::ConfigurePorts() takes
/// it, 17 bytes each, that gives all of them one mode.
Bytes Configuration(std::uint8_t mode) {
  Bytes bytes;
  for (int port = 0; port < 4; ++port) {
    const Bytes one = {mode, 0, 100, 3, 0, 0, 100, 1, 0, 100, 2, 0, 200, 0, 100, 0, 200};
    bytes = Joined(bytes, one);
  }
  return bytes;
}

void WriteSeeds(const std::filesystem::path& directory, const std::string& name,
                const Bytes& frame) {
  constexpr std::array<std::uint8_t, 5> kTypes = {1, 3, 5, 6, 7};
  constexpr std::uint8_t kModes = 10;
  WriteFile(directory / "predicate" / name, frame);
  for (std::uint8_t mode = 0; mode < kModes; ++mode) {
    const std::string variant = name + "-mode" + std::to_string(mode);
    WriteFile(directory / "transmit" / variant,
              Joined(Configuration(mode), Joined({0, 1, 0, 0, 0, 64, 0x60, 100}, frame)));
    for (const std::uint8_t type : kTypes) {
      const Bytes shift = type == 1 || type == 5 ? Bytes() : Bytes(2);
      WriteFile(directory / "capture" / (variant + "-type" + std::to_string(type)),
                Joined(Configuration(mode),
                       Joined({3, type, 0, 1, 1, 0, 0, 0, 0}, Joined(shift, frame))));
    }
  }
}

/// A message of the kernel on this machine.
Bytes Message(std::uint16_t type, const Bytes& payload) {
  Bytes message(16);
  const auto length = static_cast<std::uint32_t>(16 + payload.size());
  std::memcpy(message.data(), &length, sizeof(length));
  std::memcpy(&message[4], &type, sizeof(type));
  return Joined(message, payload);
}

void WriteMonitorSeeds(const std::filesystem::path& directory) {
  Bytes link = {'e', 't', 'h', '2'};
  link.resize(16);
  link = Joined(link, {0, 0, 3, 0xE8, 0, 0, 0, 1});
  WriteFile(directory / "link", Joined({40}, Message(0x2000, link)));
  WriteFile(directory / "press", Joined({20}, Message(0x3001, {1, 0, 0, 0})));
  WriteFile(directory / "several",
            Joined({0}, Joined(Message(3, {}), Joined(Message(2, {}), Message(0x3001, Bytes(4))))));
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  if (arguments.size() < 2) {
    static_cast<void>(std::fputs("usage: fuzz_seeds DIRECTORY CAPTURE...\n", stderr));
    return 2;
  }
  const std::filesystem::path directory = arguments.front();
  std::size_t frames = 0;
  for (std::size_t i = 1; i < arguments.size(); ++i) {
    const std::string stem = std::filesystem::path(arguments[i]).stem().string();
    for (const Bytes& frame : FramesOf(ReadFile(arguments[i]))) {
      WriteSeeds(directory, stem + "-" + std::to_string(++frames), frame);
    }
  }
  WriteMonitorSeeds(directory / "monitor");
  if (frames == 0) {
    static_cast<void>(
        std::fputs("fuzz_seeds: expected captures, found no frame in them\n", stderr));
    return 1;
  }
  return 0;
}
