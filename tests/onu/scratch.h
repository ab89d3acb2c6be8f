/// @file
/// Directories of their own for tests, and small captures in them.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "base/bytes.h"

namespace onu::test {

/// A directory that lives as long as the object.
class Scratch {
 public:
  Scratch();
  ~Scratch();
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

  /// A path in it, as text.
  [[nodiscard]] std::string operator/(const std::string& name) const;

  /// Writes a file and returns its path.
  [[nodiscard]] std::string write(const std::string& name, const std::string& content) const;

 private:
  std::filesystem::path path_;
};

/// A capture file's content: Ethernet frames, each cut to `snap` bytes.
std::string CaptureOf(const std::vector<virtual_onu::Bytes>& frames, std::size_t snap = 65535,
                      std::uint32_t linkLayer = 1);

/// A frame of 60 bytes to that destination, untagged.
virtual_onu::Bytes FrameTo(const std::string& mac);

}  // namespace onu::test
