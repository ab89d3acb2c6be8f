/// @file
/// Capture files of Ethernet frames: reading, and writing one file per place where frames leave.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <sys/time.h>
#include <vector>

#include "base/bytes.h"

struct pcap;
struct pcap_dumper;

namespace onu {

struct CapturedFrame {
  virtual_onu::Bytes bytes;
  timeval time = {};
};

/// All frames of a capture file; throws a Failure when the file cannot be read, holds other link
/// layers than Ethernet, or holds frames that were cut.
std::vector<CapturedFrame> ReadCapture(const std::string& path);

/// A directory of captures, "NAME.pcap" for each name that a frame was written for.
class CaptureDirectory {
 public:
  /// Creates the directory when it is missing; throws a Failure when it cannot.
  explicit CaptureDirectory(std::filesystem::path directory);

  /// Throws a Failure when the file cannot be written.
  void write(const std::string& name, const CapturedFrame& frame);

  /// Completes the files and returns their paths; throws a Failure when one could not be written.
  std::vector<std::string> finish();

 private:
  struct DumperCloser {
    void operator()(pcap_dumper* dumper) const;
  };
  struct HandleCloser {
    void operator()(pcap* handle) const;
  };

  [[nodiscard]] std::string pathOf(const std::string& name) const;

  std::filesystem::path directory_;
  std::unique_ptr<pcap, HandleCloser> handle_;
  std::map<std::string, std::unique_ptr<pcap_dumper, DumperCloser>> dumpers_;
};

}  // namespace onu
