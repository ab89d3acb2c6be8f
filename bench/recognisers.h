/// @file
/// Ways to tell which protocol client a frame is for: the library's predicates, and what a user
/// would take instead.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "base/bytes.h"

/// The client of a frame.
enum class Client : std::uint8_t { None, Dhcp, Pppoe, Mld };

/// Tells the client of a frame. The bytes behind a frame may be read up to 2048 from its start.
using Recogniser = Client (*)(virtual_onu::ByteView frame);

/// A frame and the client that it is for.
struct Sample {
  std::string_view name;
  Client client;
  virtual_onu::Bytes bytes;  ///< 2048 of them
  std::uint32_t length;      ///< of the frame
};

/// Control frames of each client, untagged and tagged, and some others.
std::span<const Sample> Samples();

Client RecogniseByLibrary(virtual_onu::ByteView frame);
Client RecogniseByTins(virtual_onu::ByteView frame);
/// A filter that also finds tagged frames, and MLD behind a hop-by-hop header.
Client RecogniseByFilter(virtual_onu::ByteView frame);

#ifdef BENCH_WITH_DPDK
/// By packet type, and by the ports behind the headers that it found.
Client RecogniseByDpdk(virtual_onu::ByteView frame);
#endif
