/// @file
/// Frames for the tests, put together by hand. Checksums are left at zero: nothing here reads them.
#pragma once

#include <array>
#include <stdexcept>
#include <string>

#include "base/bytes.h"
#include "base/text.h"

namespace virtual_onu {

/// The bytes of a text of hexadecimal digits; blanks are for the reader.
inline Bytes Hex(std::string text) {
  std::erase(text, ' ');
  const std::optional<Bytes> bytes = ParseHex(text);
  if (!bytes) {
    throw std::invalid_argument("not hexadecimal: " + text);
  }
  return *bytes;
}

inline const std::string kMacs = "020000000002 020000000001 ";

/// An EtherType that no parser here looks behind, and two bytes of payload.
inline const std::string kPlain = "88b5 cafe";

inline const std::string kUntagged = kMacs + kPlain;
inline const std::string kTagged = kMacs + "8100 a064 " + kPlain;                  // PCP 5, VID 100
inline const std::string kDoubleTagged = kMacs + "88a8 70c8 8100 a064 " + kPlain;  // 3, DEI, 200

/// TOS 0xb8, UDP from 192.0.2.1 port 68 to 192.0.2.2 port 67, two bytes of payload.
inline const std::string kUdp4 =
    kMacs + "0800 45b8 001e 0001 0000 40 11 0000 c0000201 c0000202 0044 0043 000a 0000 6869";

/// The same as a later fragment: what looks like ports is payload.
inline const std::string kUdp4Fragment =
    kMacs + "0800 45b8 001e 0001 0001 40 11 0000 c0000201 c0000202 0044 0043 000a 0000 6869";

/// Traffic class 0xb8, TCP from 2001:db8::1 port 1024 to 2001:db8::2 port 80.
inline const std::string kTcp6 =
    kMacs + "86dd 6b80 0000 0014 06 40 20010db8000000000000000000000001 " +
    "20010db8000000000000000000000002 0400 0050 00000001 00000000 5002 ffff 0000 0000";

/// An IPv4 header with options (router alert), carrying an IGMP report for 239.1.1.1.
inline const std::string kIgmpReport =
    "01005e010101 020000000001 0800 46c0 0020 0001 0000 01 02 0000 c0000201 ef010101 94040000 "
    "1600 0000 ef010101";

/// Hop-by-hop options (router alert), then an MLD report for ff02::1:3.
inline const std::string kMldReport =
    "333300010003 020000000001 86dd 6000 0000 0020 00 01 fe800000000000000000000000000001 "
    "ff020000000000000000000000010003 3a00 0502 0000 0100 8300 0000 0000 0000 "
    "ff020000000000000000000000010003";

/// A spanning-tree BPDU: a length instead of an EtherType, LLC 42 42.
inline const std::string kBpdu =
    "0180c2000000 020000000001 0026 424203 0000 00 00 00 8000020000000001 00000000 "
    "8000020000000001 8001 0000 1400 0200 0f00";

inline const std::string kArpRequest =
    "ffffffffffff 020000000001 0806 0001 0800 06 04 0001 020000000001 c0000201 "
    "000000000000 c0000202";

inline const std::string kPadi = "ffffffffffff 020000000001 8863 11 09 0000 0004 0101 0000";

inline const std::array kSamples = {kUntagged,     kTagged,     kDoubleTagged, kUdp4,
                                    kUdp4Fragment, kTcp6,       kIgmpReport,   kMldReport,
                                    kBpdu,         kArpRequest, kPadi};

}  // namespace virtual_onu
