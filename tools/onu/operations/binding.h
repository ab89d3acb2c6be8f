/// @file
/// How an operation of the library is called with the words of a line: one slot for each C
/// argument. An argument type that operations come to need is one more specialisation of Slot.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iterator>
#include <optional>
#include <span>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

#include <bcm6838x_mac.h>
#include <bcm6838x_port.h>

#include "base/text.h"
#include "language/argument.h"
#include "report/json.h"

namespace onu {

/// What a call gave back.
struct CallOutcome {
  std::optional<std::int64_t> value;  ///< nothing where the operation returns nothing
  Json outputs = Json::object();      ///< members for the JSON document
  std::string text;                   ///< whole lines that follow the result
};

using Call = std::function<CallOutcome(const Arguments& given, std::span<const Argument> rows)>;

struct Binding {
  Call call;
  std::optional<std::size_t> arity;  ///< number of C arguments, where each has one row
};

/// One C argument: made from the words of its row, passed, and reported on after the call when the
/// operation writes through it.
template <typename Type>
class Slot;

template <>
class Slot<std::uint32_t> {
 public:
  Slot(const Arguments& given, const Argument& row) : value_(given.number(row.name)) {}

  [[nodiscard]] std::uint32_t pass() const { return value_; }
  void report(CallOutcome& /*outcome*/) const {}

 private:
  std::uint32_t value_;
};

template <>
class Slot<MacAddress> {
 public:
  Slot(const Arguments& given, const Argument& row) {
    std::ranges::copy(virtual_onu::ParseMac(given.word(row.name)).value(), std::begin(mac_.octet));
  }

  [[nodiscard]] MacAddress pass() const { return mac_; }
  void report(CallOutcome& /*outcome*/) const {}

 private:
  MacAddress mac_ = {};
};

template <typename Return, typename... Types, std::size_t... positions>
CallOutcome CallWithSlots(Return (*function)(Types...), [[maybe_unused]] const Arguments& given,
                          [[maybe_unused]] std::span<const Argument> rows,
                          std::index_sequence<positions...> /*positions*/) {
  [[maybe_unused]] std::tuple<Slot<Types>...> slots{Slot<Types>(given, rows[positions])...};
  CallOutcome outcome;
  if constexpr (std::is_void_v<Return>) {
    function(std::get<positions>(slots).pass()...);
  } else {
    outcome.value = function(std::get<positions>(slots).pass()...);
  }
  (std::get<positions>(slots).report(outcome), ...);
  return outcome;
}

/// Binds a C function whose arguments are one row each, in order.
template <typename Return, typename... Types>
Binding Bind(Return (*function)(Types...)) {
  return {[function](const Arguments& given, std::span<const Argument> rows) {
            return CallWithSlots(function, given, rows, std::index_sequence_for<Types...>());
          },
          sizeof...(Types)};
}

/// Binds an operation that reads one counter of a port that is wider than a word.
inline Binding BindReading(std::uint32_t (*function)(std::uint32_t port, Counter64* value),
                           std::string name) {
  return {
      [function, name = std::move(name)](const Arguments& given, std::span<const Argument> rows) {
        Counter64 counter = {};
        CallOutcome outcome;
        outcome.value = function(given.number(rows[0].name), &counter);
        const std::uint64_t value = (std::uint64_t{counter.high} << 32U) | counter.low;
        outcome.outputs[name] = value;
        outcome.text = "  " + name + " = " + std::to_string(value) + "\n";
        return outcome;
      },
      1};
}

/// Binds an operation that reads one number of a port: the port is the argument, the number that
/// the operation writes is reported under `name`.
inline Binding BindReading(std::uint32_t (*function)(std::uint32_t port, std::uint32_t* value),
                           std::string name) {
  return {
      [function, name = std::move(name)](const Arguments& given, std::span<const Argument> rows) {
        std::uint32_t value = 0;
        CallOutcome outcome;
        outcome.value = function(given.number(rows[0].name), &value);
        outcome.outputs[name] = value;
        outcome.text = "  " + name + " = " + std::to_string(value) + "\n";
        return outcome;
      },
      1};
}

}  // namespace onu
