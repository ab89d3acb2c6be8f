/// @file
/// Building of frames and events.
#include "packet_bytes.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <sys/mman.h>
#include <unistd.h>

#include "device/records.h"
#include "support/wire_record.h"

namespace hal_test {

namespace {

void Append(Bytes& bytes, const Bytes& more) {
  bytes.insert(bytes.end(), more.begin(), more.end());
}

void AppendU16(Bytes& bytes, std::uint16_t value) {
  bytes.push_back(static_cast<std::uint8_t>(value >> 8U));
  bytes.push_back(static_cast<std::uint8_t>(value));
}

template <typename Number>
Bytes Native(Number number) {
  Bytes bytes(sizeof(number));
  std::memcpy(bytes.data(), &number, sizeof(number));
  return bytes;
}

}  // namespace

Bytes FrameDraft::bytes() const {
  Bytes frame = destination;
  Append(frame, {0x02, 0x11, 0x22, 0x33, 0x44, 0x55});
  for (const TagBytes& tag : tags) {
    AppendU16(frame, tag.type);
    AppendU16(frame, tag.control);
  }
  AppendU16(frame, type);
  Append(frame, payload);
  while (frame.size() < size) {
    frame.push_back(static_cast<std::uint8_t>(frame.size()));
  }
  return frame;
}

Bytes Ipv4Payload(std::uint8_t protocol, std::uint16_t destinationPort) {
  Bytes payload = {0x45, 0,  0, 50, 0, 0,  0, 0, 64, protocol, 0,
                   0,    10, 0, 0,  1, 10, 0, 0, 2,  0x12,     0x34};
  AppendU16(payload, destinationPort);
  return payload;
}

Bytes Ipv6Payload(std::uint8_t nextHeader, std::uint16_t destinationPort) {
  Bytes payload(40);
  payload[0] = 0x60;
  payload[6] = nextHeader;
  payload[7] = 1;
  AppendU16(payload, 0x1234);
  AppendU16(payload, destinationPort);
  return payload;
}

Bytes MldPayload(std::uint8_t icmpType) {
  Bytes payload(40 + 8 + 24);
  payload[0] = 0x60;
  payload[40] = 58;
  payload[48] = icmpType;
  return payload;
}

Bytes MldFrame(std::uint8_t icmpType) {
  return FrameDraft{.destination = {0x33, 0x33, 0, 0, 0, 1},
                    .type = 0x86DD,
                    .payload = MldPayload(icmpType),
                    .size = 86}
      .bytes();
}

FrameDraft IgmpFrame() {
  return {.destination = {0x01, 0x00, 0x5E, 0x01, 0x02, 0x03}, .payload = Ipv4Payload(2)};
}

FrameDraft DhcpFrame() {
  return {.payload = Ipv4Payload(17, 67)};
}

FrameDraft PppoeFrame() {
  return {.type = 0x8863, .payload = {0x11, 0x09}};
}

Bytes EventDraft::bytes() const {
  const std::uint32_t told =
      length == 0xFFFFFFFF ? static_cast<std::uint32_t>(frame.size()) : length;
  const Bytes wire = WireRecord(2068)
                         .u32(0, type)
                         .u32(4, told)
                         .u32(8, 0xDEADBEEF)
                         .u32(12, port)
                         .u32(16, gemFlowId)
                         .bytes(frameOffset, frame)
                         .wire();
  return virtual_onu::FromWire(*virtual_onu::FindRecord("BrmgrEvent"), wire);
}

Bytes NativeWord(std::uint32_t word) {
  return Native(word);
}

Bytes NativeHalf(std::uint16_t half) {
  return Native(half);
}

Bytes Joined(std::initializer_list<Bytes> parts) {
  Bytes joined;
  for (const Bytes& part : parts) {
    Append(joined, part);
  }
  return joined;
}

GuardedBytes::GuardedBytes(ByteView bytes) {
  const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  const std::size_t used = (bytes.size() + page - 1) / page * page + page;
  pagesSize_ = used + page;
  void* const pages =
      mmap(nullptr, pagesSize_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (pages == MAP_FAILED ||
      mprotect(static_cast<std::uint8_t*>(pages) + used, page, PROT_NONE) != 0) {
    std::abort();
  }
  pages_ = static_cast<std::uint8_t*>(pages);
  data_ = pages_ + used - bytes.size();
  std::ranges::copy(bytes, data_);
}

GuardedBytes::~GuardedBytes() {
  munmap(pages_, pagesSize_);
}

}  // namespace hal_test
