/// @file
/// The words of classification rules: names from the library's tables, values by the kind of their
/// field.
#include "operations/qos_rule.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

#include "base/bytes.h"
#include "base/text.h"
#include "language/failure.h"
#include "language/words.h"

namespace onu {

namespace {

using virtual_onu::Bytes;

/// A code and its name in the listing.
struct Named {
  std::uint32_t code;
  std::string_view name;
};

#define MAKE_NAMED(code, name, text) Named{code, text},
constexpr std::array kFields = {BCM6838X_QOS_FIELD_LIST(MAKE_NAMED)};
constexpr std::array kOperators = {BCM6838X_QOS_OPERATOR_LIST(MAKE_NAMED)};
#undef MAKE_NAMED

constexpr std::uint32_t kMaxByte = 0xFF;

std::optional<Bytes> ReadMac(const std::string& word) {
  const auto mac = virtual_onu::ParseMac(word);
  return mac ? std::optional(Bytes(mac->begin(), mac->end())) : std::nullopt;
}

std::optional<Bytes> ReadIp(const std::string& word, std::size_t size) {
  const auto address = virtual_onu::ParseIp(word);
  return address && address->size() == size ? address : std::nullopt;
}

std::optional<Bytes> ReadIpv4(const std::string& word) {
  return ReadIp(word, 4);
}

std::optional<Bytes> ReadIpv6(const std::string& word) {
  return ReadIp(word, 16);
}

std::optional<Bytes> ReadNumber(const std::string& word, std::uint32_t max) {
  const auto number = ParseNumber(word);
  if (!number || *number > max) {
    return std::nullopt;
  }
  return Bytes{static_cast<std::uint8_t>(*number >> 8U), static_cast<std::uint8_t>(*number)};
}

std::optional<Bytes> ReadByte(const std::string& word) {
  return ReadNumber(word, kMaxByte);
}

std::optional<Bytes> ReadTwoBytes(const std::string& word) {
  constexpr std::uint32_t kMaxNumber = 0xFFFF;
  return ReadNumber(word, kMaxNumber);
}

/// How the value of a field is written, and where its bytes begin.
struct ValueForm {
  std::size_t at;
  std::string_view expected;
  std::optional<Bytes> (*read)(const std::string& word);
};

constexpr ValueForm kMac = {0, "a MAC address", ReadMac};
constexpr ValueForm kIpv4 = {2, "an IPv4 address", ReadIpv4};
constexpr ValueForm kIpv6 = {0, "an IPv6 address", ReadIpv6};
constexpr ValueForm kByte = {4, "a number from 0 to 255", ReadByte};
constexpr ValueForm kTwoBytes = {4, "a number from 0 to 65535", ReadTwoBytes};

const ValueForm& FormOf(std::uint32_t field) {
  switch (field) {
    case BCM6838X_QOS_FIELD_DESTINATION_MAC:
    case BCM6838X_QOS_FIELD_SOURCE_MAC:
      return kMac;
    case BCM6838X_QOS_FIELD_DESTINATION_IP:
    case BCM6838X_QOS_FIELD_SOURCE_IP:
      return kIpv4;
    case BCM6838X_QOS_FIELD_DESTINATION_IPV6:
    case BCM6838X_QOS_FIELD_SOURCE_IPV6:
      return kIpv6;
    case BCM6838X_QOS_FIELD_PRIORITY:
    case BCM6838X_QOS_FIELD_IP_PROTOCOL:
    case BCM6838X_QOS_FIELD_DSCP:
      return kByte;
    default:
      return kTwoBytes;
  }
}

/// The code of a name, or of a number.
std::uint32_t CodeOf(std::string_view what, std::span<const Named> table, const std::string& word) {
  const auto found =
      std::ranges::find(table, Lower(word), [](const Named& named) { return Lower(named.name); });
  if (found != table.end()) {
    return found->code;
  }
  if (const auto number = ParseNumber(word)) {
    return *number;
  }
  Words names;
  for (const Named& named : table) {
    names.emplace_back(named.name);
  }
  throw WrongUse("no " + std::string(what) + " " + Quote(word) + Suggestion(word, names) +
                 " (they are " + Join(names, ", ") + ")");
}

/// Adds "FIELD=VALUE" or "FIELD:OPERATOR=VALUE".
void AddCondition(const std::string& word, QosClassRule& rule) {
  const std::size_t equals = word.find('=');
  if (equals == std::string::npos) {
    throw WrongUse("expected FIELD=VALUE or FIELD:OPERATOR=VALUE, got " + Quote(word));
  }
  if (rule.fieldCount >= BCM6838X_QOS_CONDITIONS) {
    throw WrongUse("expected at most " + std::to_string(BCM6838X_QOS_CONDITIONS) +
                   " conditions, got another: " + Quote(word));
  }
  const std::string left = word.substr(0, equals);
  const std::size_t colon = left.find(':');
  const std::uint32_t field = CodeOf("field", kFields, left.substr(0, colon));
  const std::uint32_t op = colon == std::string::npos
                               ? std::uint32_t{BCM6838X_QOS_OPERATOR_EQUAL}
                               : CodeOf("operator", kOperators, left.substr(colon + 1));
  const ValueForm& form = FormOf(field);
  const auto value = form.read(word.substr(equals + 1));
  if (!value) {
    throw WrongUse(left + ": expected " + std::string(form.expected) + ", got " +
                   Quote(word.substr(equals + 1)));
  }
  rule.field[rule.fieldCount] = field;
  rule.op[rule.fieldCount] = op;
  std::ranges::copy(*value, rule.value[rule.fieldCount] + form.at);
  ++rule.fieldCount;
}

std::uint8_t ByteOf(std::string_view what, const std::string& word) {
  const auto number = ParseNumber(word);
  if (!number || *number > kMaxByte) {
    throw WrongUse(std::string(what) + ": expected a number from 0 to 255, got " + Quote(word));
  }
  return static_cast<std::uint8_t>(*number);
}

}  // namespace

QosClassRule ParseQosRule(std::uint32_t port, std::uint32_t type, const std::string& word) {
  const Words parts = SplitAt(word, ',');
  if (parts.size() < 2) {
    throw WrongUse("expected PRECEDENCE[@PORT],PRIORITY[,CONDITION]..., got " + Quote(word));
  }
  QosClassRule rule = {};
  rule.ruleType = type;
  const std::size_t at = parts[0].find('@');
  rule.port = at == std::string::npos ? static_cast<std::uint8_t>(port)
                                      : ByteOf("port", parts[0].substr(at + 1));
  rule.precedence = ByteOf("precedence", parts[0].substr(0, at));
  rule.priority = ByteOf("priority", parts[1]);
  rule.queue = rule.priority;
  for (const std::string& condition : std::span(parts).subspan(2)) {
    AddCondition(condition, rule);
  }
  return rule;
}

}  // namespace onu
