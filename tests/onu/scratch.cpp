/// @file
/// Scratch directories and captures.
#include "scratch.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <system_error>

#include "base/text.h"

namespace onu::test {

namespace {

void Append32(std::string& bytes, std::size_t value) {
  for (unsigned int shift = 0; shift < 32; shift += 8) {
    bytes += static_cast<char>((value >> shift) & 0xFFU);
  }
}

}  // namespace

Scratch::Scratch() {
  std::string pattern = (std::filesystem::temp_directory_path() / "onu-test-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) {
    throw std::runtime_error("cannot make a directory for the test");
  }
  path_ = pattern;
}

Scratch::~Scratch() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::string Scratch::operator/(const std::string& name) const {
  return (path_ / name).string();
}

std::string Scratch::write(const std::string& name, const std::string& content) const {
  std::ofstream file(path_ / name, std::ios::binary);
  file << content;
  file.close();
  if (!file) {
    throw std::runtime_error("cannot write " + name);
  }
  return *this / name;
}

std::string CaptureOf(const std::vector<virtual_onu::Bytes>& frames, std::size_t snap,
                      std::uint32_t linkLayer) {
  // The classic file format, little-endian: magic, version 2.4, zone, accuracy, snap length, layer.
  std::string content;
  for (const std::size_t word : {std::size_t{0xA1B2C3D4}, std::size_t{0x00040002}, std::size_t{0},
                                 std::size_t{0}, snap, std::size_t{linkLayer}}) {
    Append32(content, word);
  }
  std::size_t seconds = 1;
  for (const virtual_onu::Bytes& frame : frames) {
    const std::size_t kept = std::min(snap, frame.size());
    for (const std::size_t word : {seconds++, std::size_t{0}, kept, frame.size()}) {
      Append32(content, word);
    }
    content.append(frame.begin(), frame.begin() + static_cast<std::ptrdiff_t>(kept));
  }
  return content;
}

virtual_onu::Bytes FrameTo(const std::string& mac) {
  constexpr std::size_t kLength = 60;
  const auto destination = virtual_onu::ParseMac(mac).value();
  virtual_onu::Bytes frame(kLength);
  std::ranges::copy(destination, frame.begin());
  frame[11] = 1;     // source 00:00:00:00:00:01
  frame[12] = 0x88;  // local experimental EtherType 0x88b5
  frame[13] = 0xB5;
  return frame;
}

}  // namespace onu::test
