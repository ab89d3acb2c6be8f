/// @file
/// The priority of modes and the pause table.
#include "phy/negotiation.h"

#include <array>

namespace virtual_onu {
namespace {

/// An ability, and the link that it stands for.
struct Ability {
  std::uint16_t Advertisement::*layout;
  std::uint16_t bit;
  LinkMode mode;
};

/// Highest priority first (annex 28B.3).
constexpr std::array kPriorities = {
    Ability{&Advertisement::gigabit, kAdvertise1000Full, {1000, true}},
    Ability{&Advertisement::gigabit, kAdvertise1000Half, {1000, false}},
    Ability{&Advertisement::base, kAbility100Full, {100, true}},
    Ability{&Advertisement::base, kAbility100T4, {100, false}},
    Ability{&Advertisement::base, kAbility100Half, {100, false}},
    Ability{&Advertisement::base, kAbility10Full, {10, true}},
    Ability{&Advertisement::base, kAbility10Half, {10, false}},
};

bool Has(const Advertisement& end, std::uint16_t bit) {
  return (end.base & bit) != 0;
}

}  // namespace

std::optional<LinkMode> BestCommonMode(const Advertisement& local, const Advertisement& partner) {
  for (const Ability& ability : kPriorities) {
    if ((local.*ability.layout & partner.*ability.layout & ability.bit) != 0) {
      return ability.mode;
    }
  }
  return std::nullopt;
}

PauseUse CommonPause(const Advertisement& local, const Advertisement& partner) {
  const bool asymmetric =
      Has(local, kAbilityAsymmetricPause) && Has(partner, kAbilityAsymmetricPause);
  if (Has(local, kAbilityPause) && Has(partner, kAbilityPause)) {
    return {.transmit = true, .receive = true};
  }
  // With different pause bits, the end without one sends and the other end obeys.
  return {.transmit = asymmetric && Has(partner, kAbilityPause),
          .receive = asymmetric && Has(local, kAbilityPause)};
}

}  // namespace virtual_onu
