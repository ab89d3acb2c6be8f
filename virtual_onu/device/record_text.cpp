/// @file
/// Notations of field values: one row per format says how it is written, read and explained.
#include "device/record_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <limits>
#include <optional>
#include <system_error>
#include <utility>

#include <brmgr_record.h>

#include "base/text.h"
#include "device/byte_order.h"

namespace virtual_onu {
namespace {

using Number = std::optional<std::uint32_t>;

constexpr std::array<NamedValue, 2> kDirections = {{
    {BRMGR_DIR_DOWNSTREAM, "ds", "BRMGR_DIR_DOWNSTREAM"},
    {BRMGR_DIR_UPSTREAM, "us", "BRMGR_DIR_UPSTREAM"},
}};

/// Decimal, or hexadecimal behind "0x".
Number ReadNumber(std::string_view text) {
  if (!text.starts_with("0x")) {
    return ParseDecimal(text);
  }
  std::uint32_t value = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data() + 2, end, value, 16);
  return error == std::errc() && stop == end ? Number(value) : std::nullopt;
}

/// A name of the list, or a number.
Number ReadNamed(std::span<const NamedValue> values, std::string_view text) {
  const auto found = std::ranges::find(values, text, &NamedValue::name);
  return found != values.end() ? found->value : ReadNumber(text);
}

/// Names of the list and numbers, joined by '|'.
Number ReadBits(std::span<const NamedValue> bits, std::string_view text) {
  const std::size_t end = text.find('|');
  const Number first = ReadNamed(bits, text.substr(0, end));
  if (!first || end == std::string_view::npos) {
    return first;
  }
  const Number others = ReadBits(bits, text.substr(end + 1));
  return others ? Number(*first | *others) : std::nullopt;
}

/// Hexadecimal with at least that many digits.
std::string WriteHex(std::uint32_t value, std::size_t digits) {
  std::array<char, 2 * sizeof(value)> buffer = {};
  const char* const stop =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, 16).ptr;
  const std::string text(std::as_const(buffer).data(), stop);
  return "0x" + std::string(digits - std::min(digits, text.size()), '0') + text;
}

std::string WriteBits(std::span<const NamedValue> bits, std::uint32_t value) {
  std::string text;
  const auto add = [&text](std::string_view part) {
    text.append(text.empty() ? "" : "|").append(part);
  };
  for (const NamedValue& bit : bits) {
    if ((value & bit.value) != 0) {
      add(bit.name);
      value &= ~bit.value;
    }
  }
  if (value != 0) {
    add(WriteHex(value, 1));
  }
  return text.empty() ? "0" : text;
}

std::string NamesOf(std::span<const NamedValue> values) {
  std::string text;
  for (const NamedValue& value : values) {
    text.append(text.empty() ? "" : ", ").append(value.name);
  }
  return text;
}

std::uint32_t MaxOf(std::size_t width) {
  return std::numeric_limits<std::uint32_t>::max() >> (32U - 8U * width);
}

std::string NumberRange(std::size_t width) {
  return "a number from 0 to " + std::to_string(MaxOf(width));
}

std::string BitsOf(std::span<const NamedValue> bits) {
  return "names and numbers joined by '|' out of " + NamesOf(bits);
}

/// How a number of `width` bytes is written, read and explained.
struct NumberNotation {
  FieldFormat format;
  std::string (*write)(std::uint32_t value, std::size_t width);
  Number (*read)(std::string_view text);
  std::string (*expected)(std::size_t width);
};

constexpr NumberNotation kDec = {
    FieldFormat::Dec, [](std::uint32_t value, std::size_t) { return std::to_string(value); },
    ReadNumber, NumberRange};

constexpr NumberNotation kHex = {
    FieldFormat::Hex,
    [](std::uint32_t value, std::size_t width) { return WriteHex(value, 2 * width); }, ReadNumber,
    NumberRange};

constexpr NumberNotation kIndex = {
    FieldFormat::Index,
    [](std::uint32_t value, std::size_t) {
      return value == BRMGR_INDEX_NONE ? "none" : std::to_string(value);
    },
    [](std::string_view text) {
      return text == "none" ? Number(BRMGR_INDEX_NONE) : ReadNumber(text);
    },
    [](std::size_t width) { return "\"none\" or " + NumberRange(width); }};

constexpr NumberNotation kDir = {
    FieldFormat::Dir,
    [](std::uint32_t value, std::size_t) {
      return std::string(value == BRMGR_DIR_DOWNSTREAM ? "ds" : "us");
    },
    [](std::string_view text) { return ReadNamed(kDirections, text); },
    [](std::size_t width) { return NamesOf(kDirections) + " or " + NumberRange(width); }};

constexpr NumberNotation kForward = {
    FieldFormat::Forward,
    [](std::uint32_t value, std::size_t) {
      const auto found = std::ranges::find(ForwardDecisions(), value, &NamedValue::value);
      return found != ForwardDecisions().end() ? std::string(found->name) : std::to_string(value);
    },
    [](std::string_view text) { return ReadNamed(ForwardDecisions(), text); },
    [](std::size_t width) { return NamesOf(ForwardDecisions()) + " or " + NumberRange(width); }};

constexpr NumberNotation kKeys = {
    FieldFormat::Keys, [](std::uint32_t value, std::size_t) { return WriteBits(KeyBits(), value); },
    [](std::string_view text) { return ReadBits(KeyBits(), text); },
    [](std::size_t) { return BitsOf(KeyBits()); }};

constexpr NumberNotation kTagOps = {
    FieldFormat::TagOps,
    [](std::uint32_t value, std::size_t) { return WriteBits(TagOperations(), value); },
    [](std::string_view text) { return ReadBits(TagOperations(), text); },
    [](std::size_t) { return BitsOf(TagOperations()); }};

constexpr std::array kNumbers = {kDec, kHex, kIndex, kDir, kForward, kKeys, kTagOps};

bool IsZero(ByteView bytes) {
  return std::ranges::all_of(bytes, [](std::uint8_t byte) { return byte == 0; });
}

/// The 16 bytes hold either version; nothing but zeros follows an IPv4 address.
std::string WriteIp(ByteView bytes) {
  const ByteView ipv4 = bytes.first(4);
  return FormatIp(IsZero(bytes.subspan(ipv4.size())) ? ipv4 : bytes);
}

std::optional<Bytes> ReadMac(std::string_view text) {
  const auto mac = ParseMac(text);
  return mac ? std::optional<Bytes>({mac->begin(), mac->end()}) : std::nullopt;
}

/// How a sequence of bytes is written, read and explained. Zeros follow what was read up to the end
/// of the field.
struct BytesNotation {
  FieldFormat format;
  std::string (*write)(ByteView bytes);
  std::optional<Bytes> (*read)(std::string_view text);
  std::string (*expected)(std::size_t size);
};

constexpr BytesNotation kMac = {FieldFormat::Mac, FormatMac, ReadMac, [](std::size_t) {
                                  return std::string("a MAC address such as 01:80:c2:00:00:00");
                                }};

constexpr BytesNotation kIp = {FieldFormat::Ip, WriteIp, ParseIp,
                               [](std::size_t) { return std::string("an IPv4 or IPv6 address"); }};

constexpr BytesNotation kDigits = {
    FieldFormat::Raw, [](ByteView bytes) { return IsZero(bytes) ? "0" : ToHex(bytes); },
    [](std::string_view text) { return text == "0" ? Bytes() : ParseHex(text); },
    [](std::size_t size) {
      return "0 or up to " + std::to_string(2 * size) + " hexadecimal digits in pairs";
    }};

/// The notation of a field of bytes; null for one of numbers.
const BytesNotation* FindBytes(const FieldInfo& field) {
  switch (field.format) {
    case FieldFormat::Mac:
      return &kMac;
    case FieldFormat::Ip:
      return &kIp;
    case FieldFormat::Raw:
      return &kDigits;
    case FieldFormat::Reserved:
      return field.width == 1 ? &kDigits : nullptr;
    default:
      return nullptr;
  }
}

const NumberNotation& FindNumber(const FieldInfo& field) {
  const auto* const found = std::ranges::find(kNumbers, field.format, &NumberNotation::format);
  return found != kNumbers.end() ? *found : kHex;
}

std::uint32_t Load(ByteView bytes) {
  Bytes number(bytes.begin(), bytes.end());
  SwapNumber(number);
  return ReadBigEndian(number);
}

void Store(std::uint32_t value, std::span<std::uint8_t> bytes) {
  for (std::size_t i = bytes.size(); i > 0; --i) {
    bytes[i - 1] = static_cast<std::uint8_t>(value);
    value >>= 8U;
  }
  SwapNumber(bytes);
}

bool ReadBytes(const BytesNotation& notation, std::string_view text,
               std::span<std::uint8_t> bytes) {
  const std::optional<Bytes> value = notation.read(text);
  if (!value || value->size() > bytes.size()) {
    return false;
  }
  const auto rest = std::ranges::copy(*value, bytes.begin()).out;
  std::fill(rest, bytes.end(), std::uint8_t{0});
  return true;
}

/// Reads the numbers of an array, or the only one, joined by ','.
bool ReadNumbers(const FieldInfo& field, std::string_view text, std::span<std::uint8_t> bytes) {
  const NumberNotation& notation = FindNumber(field);
  const std::size_t end = text.find(',');
  const Number value = notation.read(text.substr(0, end));
  const bool last = end == std::string_view::npos;
  if (!value || *value > MaxOf(field.width) || last != (bytes.size() == field.width)) {
    return false;
  }
  if (!last && !ReadNumbers(field, text.substr(end + 1), bytes.subspan(field.width))) {
    return false;
  }
  Store(*value, bytes.first(field.width));
  return true;
}

}  // namespace

std::string WriteField(const FieldInfo& field, ByteView bytes) {
  if (const BytesNotation* const notation = FindBytes(field)) {
    return notation->write(bytes);
  }
  const NumberNotation& notation = FindNumber(field);
  std::string text;
  for (std::size_t i = 0; i < field.size; i += field.width) {
    text.append(text.empty() ? "" : ",")
        .append(notation.write(Load(bytes.subspan(i, field.width)), field.width));
  }
  return text;
}

bool ReadField(const FieldInfo& field, std::string_view text, std::span<std::uint8_t> bytes) {
  const BytesNotation* const notation = FindBytes(field);
  return notation != nullptr ? ReadBytes(*notation, text, bytes) : ReadNumbers(field, text, bytes);
}

std::string ExpectedText(const FieldInfo& field) {
  if (const BytesNotation* const notation = FindBytes(field)) {
    return notation->expected(field.size);
  }
  const std::string one = FindNumber(field).expected(field.width);
  const std::size_t count = field.size / field.width;
  return count == 1 ? one : std::to_string(count) + " values joined by ',', each " + one;
}

}  // namespace virtual_onu
