/// @file
/// Writing numbers in network order, and the Internet checksum (RFC 1071).
#pragma once

#include <cstddef>
#include <cstdint>

#include "base/bytes.h"

namespace virtual_onu {

void AppendU8(Bytes& bytes, unsigned value);
void AppendU16(Bytes& bytes, unsigned value);
void AppendU32(Bytes& bytes, std::uint32_t value);
void Append(Bytes& bytes, ByteView more);

/// Writes the Internet checksum of `bytes` into them at `offset`, where zeros stand.
/// @param[in] pseudoHeader  counted before the bytes; of an even length
void SetChecksum(Bytes& bytes, std::size_t offset, ByteView pseudoHeader = {});

}  // namespace virtual_onu
