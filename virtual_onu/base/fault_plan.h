/// @file
/// Faults on demand: which of the coming requests are refused. A request is whatever the owner of
/// the plan serves: device commands, shell lines, MII requests.
#pragma once

#include <cstdint>
#include <optional>
#include <random>
#include <vector>

namespace virtual_onu {

/// Rules are asked in the order in which they were added; one that says refuse is enough. Every
/// rule counts every request from its adding on, also those that another rule refuses, so that no
/// rule depends on the others. Refusals by a rule come before anybody looks at the request.
class FaultPlan {
 public:
  struct Draw {
    double fraction;
    std::uint32_t seed;
    std::mt19937 generator;
  };
  struct Rule {
    std::optional<std::uint32_t> code = {};
    std::uint32_t nth = 0;
    bool onwards = false;
    std::uint32_t seen = 0;         ///< requests that were counted
    std::optional<Draw> draw = {};  ///< decides instead of the count

    /// Tells whether this rule refuses the request, and counts it.
    bool refuses(std::optional<std::uint32_t> request);
  };

  /// Refuses the nth (from 1) request, of `code` only when given.
  void refuseNth(std::uint32_t nth, std::optional<std::uint32_t> code = {});

  /// Refuses every request from the nth (from 1) on, of `code` only when given.
  void refuseFrom(std::uint32_t nth, std::optional<std::uint32_t> code = {});

  /// Refuses a fraction (0..1) of all requests, chosen by a generator with that seed: the same
  /// ones on every machine.
  void refuseFraction(double fraction, std::uint32_t seed);

  void clear();
  [[nodiscard]] bool empty() const { return rules_.empty(); }
  [[nodiscard]] const std::vector<Rule>& rules() const { return rules_; }

  /// Tells whether this request is to be refused, and counts it.
  /// @param[in] code  kind of the request, such as the command code; nothing where the owner knows
  ///   one kind only, which a rule with a code then never meets
  bool refuses(std::optional<std::uint32_t> code = {});

 private:
  std::vector<Rule> rules_;
};

}  // namespace virtual_onu
