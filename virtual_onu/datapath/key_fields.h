/// @file
/// The key fields that an ingress class can compare: how each is taken from a flow and from a
/// frame, and how it is written for people. Which flow wins is not decided here.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include <brmgr_record.h>

#include "datapath/port_id.h"
#include "frame/headers.h"

namespace virtual_onu {

/// A frame as the classification of its direction sees it.
struct ReceivedFrame {
  FrameHeaders headers;
  std::uint32_t ingressPort = 0;  ///< port number of the data path
};

/// The value of a key. IP addresses carry the flow record's version code in `number` (0 IPv4, 1
/// IPv6); everything else is a number alone.
struct KeyValue {
  std::uint64_t number = 0;
  std::array<std::uint8_t, 16> address = {};
  bool operator==(const KeyValue&) const = default;
};

struct Key {
  std::uint32_t bit;      ///< in IngressClassCfg.fieldMask
  std::string_view name;  ///< field of the flow record
  KeyValue (*ofFlow)(const IngressFlowRule& flow);
  std::optional<KeyValue> (*ofFrame)(const ReceivedFrame& frame);  ///< nothing: no such field
  std::string (*text)(const KeyValue& value);
};

/// All keys, in ascending order of their bits.
std::span<const Key> AllKeys();

/// The bits of a field mask that name no key.
std::uint32_t UnknownKeyBits(std::uint32_t fieldMask);

}  // namespace virtual_onu
