/// @file
/// Capture files by libpcap.
#include "language/capture_file.h"

#include <array>
#include <pcap/pcap.h>
#include <system_error>
#include <utility>

#include "language/failure.h"

namespace onu {

namespace {

constexpr int kSnapLength = 262144;

CapturedFrame ReadFrame(const std::string& path, std::size_t number, const pcap_pkthdr& header,
                        const u_char* bytes) {
  if (header.caplen != header.len) {
    throw WorkFailed(path + "#" + std::to_string(number) + ": the capture holds " +
                     std::to_string(header.caplen) + " of the frame's " +
                     std::to_string(header.len) + " bytes; record it with a larger snap length");
  }
  return {{bytes, bytes + header.caplen}, header.ts};
}

}  // namespace

std::vector<CapturedFrame> ReadCapture(const std::string& path) {
  std::array<char, PCAP_ERRBUF_SIZE> error = {};
  const std::unique_ptr<pcap_t, decltype(&pcap_close)> capture(
      pcap_open_offline(path.c_str(), error.data()), pcap_close);
  if (capture == nullptr) {
    throw WorkFailed("cannot read the capture: " + std::string(error.data()));
  }
  if (pcap_datalink(capture.get()) != DLT_EN10MB) {
    throw WorkFailed(path + ": expected Ethernet frames, got link layer " +
                     pcap_datalink_val_to_description_or_dlt(pcap_datalink(capture.get())));
  }
  std::vector<CapturedFrame> frames;
  pcap_pkthdr* header = nullptr;
  const u_char* bytes = nullptr;
  int result = 0;
  while ((result = pcap_next_ex(capture.get(), &header, &bytes)) == 1) {
    frames.push_back(ReadFrame(path, frames.size() + 1, *header, bytes));
  }
  if (result != PCAP_ERROR_BREAK) {
    throw WorkFailed(path + ": " + pcap_geterr(capture.get()));
  }
  return frames;
}

void CaptureDirectory::DumperCloser::operator()(pcap_dumper* dumper) const {
  pcap_dump_close(dumper);
}

void CaptureDirectory::HandleCloser::operator()(pcap* handle) const {
  pcap_close(handle);
}

CaptureDirectory::CaptureDirectory(std::filesystem::path directory)
    : directory_(std::move(directory)), handle_(pcap_open_dead(DLT_EN10MB, kSnapLength)) {
  std::error_code error;
  std::filesystem::create_directories(directory_, error);
  if (error) {
    throw WorkFailed("cannot create the directory " + directory_.string() + ": " + error.message());
  }
}

void CaptureDirectory::write(const std::string& name, const CapturedFrame& frame) {
  auto& dumper = dumpers_[name];
  if (dumper == nullptr) {
    dumper.reset(pcap_dump_open(handle_.get(), pathOf(name).c_str()));
    if (dumper == nullptr) {
      throw WorkFailed("cannot write the capture: " + std::string(pcap_geterr(handle_.get())));
    }
  }
  pcap_pkthdr header = {};
  header.ts = frame.time;
  header.caplen = static_cast<bpf_u_int32>(frame.bytes.size());
  header.len = header.caplen;
  pcap_dump(reinterpret_cast<u_char*>(dumper.get()), &header, frame.bytes.data());
}

std::vector<std::string> CaptureDirectory::finish() {
  std::vector<std::string> paths;
  for (const auto& [name, dumper] : dumpers_) {
    const bool written = pcap_dump_flush(dumper.get()) == 0;
    if (!written) {
      throw WorkFailed("cannot write the capture " + pathOf(name));
    }
    paths.push_back(pathOf(name));
  }
  dumpers_.clear();
  return paths;
}

std::string CaptureDirectory::pathOf(const std::string& name) const {
  return (directory_ / (name + ".pcap")).string();
}

}  // namespace onu
