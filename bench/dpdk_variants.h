/// @file
/// What the benchmarks do with the data-plane development kit, on a packet buffer outside its
/// pools.
#pragma once

#include <array>
#include <cstdint>
#include <memory>

#include "base/bytes.h"

struct rte_mbuf;

/// A frame in a packet buffer with headroom for tags.
class DpdkFrame {
 public:
  explicit DpdkFrame(virtual_onu::ByteView frame);
  ~DpdkFrame();
  DpdkFrame(const DpdkFrame&) = delete;
  DpdkFrame& operator=(const DpdkFrame&) = delete;

  /// Puts a tag in front of the type field and takes it off again; false when one of both failed.
  bool tagInAndOut();

 private:
  std::array<std::uint8_t, 4096> bytes_ = {};
  std::unique_ptr<rte_mbuf> buffer_;
};
