/// @file
/// One field's value as text, and back. Where the field lies in its record is the codec's.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "base/bytes.h"
#include "device/records.h"

namespace virtual_onu {

/// The value as text; `bytes` is the field alone, in the processor's byte order.
std::string WriteField(const FieldInfo& field, ByteView bytes);

/// Reads what WriteField writes, and what SetField allows besides. False when the text is not a
/// value of the field; the bytes are then as before.
bool ReadField(const FieldInfo& field, std::string_view text, std::span<std::uint8_t> bytes);

/// What ReadField takes, in words: "a number from 0 to 255".
std::string ExpectedText(const FieldInfo& field);

}  // namespace virtual_onu
