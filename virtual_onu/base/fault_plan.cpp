/// @file
/// Counting and drawing of the fault rules.
#include "base/fault_plan.h"

#include <algorithm>

namespace virtual_onu {

void FaultPlan::refuseNth(std::uint32_t nth, std::optional<std::uint32_t> code) {
  rules_.push_back({.code = code, .nth = nth});
}

void FaultPlan::refuseFrom(std::uint32_t nth, std::optional<std::uint32_t> code) {
  rules_.push_back({.code = code, .nth = nth, .onwards = true});
}

void FaultPlan::refuseFraction(double fraction, std::uint32_t seed) {
  rules_.push_back({.draw = Draw{fraction, seed, std::mt19937(seed)}});
}

void FaultPlan::clear() {
  rules_.clear();
}

bool FaultPlan::refuses(std::optional<std::uint32_t> code) {
  return std::ranges::count_if(rules_, [code](Rule& rule) { return rule.refuses(code); }) != 0;
}

bool FaultPlan::Rule::refuses(std::optional<std::uint32_t> request) {
  if (draw) {
    ++seen;
    // Not a distribution of the standard library: those may draw differently elsewhere.
    constexpr double kDraws = 4294967296.0;
    return static_cast<double>(draw->generator()) < draw->fraction * kDraws;
  }
  if (code && code != request) {
    return false;
  }
  ++seen;
  return onwards ? seen >= nth : seen == nth;
}

}  // namespace virtual_onu
