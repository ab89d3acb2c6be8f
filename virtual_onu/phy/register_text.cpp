/// @file
/// Names of the registers and of the bits that a link depends on.
#include "phy/register_text.h"

#include <algorithm>
#include <array>
#include <span>

#include "phy/registers.h"

namespace virtual_onu {
namespace {

struct Bit {
  std::uint16_t mask;
  std::string_view name;
};

constexpr std::array kControlBits = {
    Bit{kControlReset, "reset"},          Bit{kControlLoopback, "loopback"},
    Bit{kControlSpeedLow, "speed-100"},   Bit{kControlNegotiate, "negotiate"},
    Bit{kControlPowerDown, "power-down"}, Bit{kControlIsolate, "isolate"},
    Bit{kControlRestart, "restart"},      Bit{kControlFullDuplex, "full-duplex"},
    Bit{kControlSpeedHigh, "speed-1000"},
};

constexpr std::array kStatusBits = {
    Bit{kStatusNegotiated, "negotiated"},
    Bit{kStatusLink, "link"},
};

constexpr std::array kAbilityBits = {
    Bit{kNextPage, "next-page"},
    Bit{kAcknowledge, "acknowledge"},
    Bit{kAbilityAsymmetricPause, "asymmetric-pause"},
    Bit{kAbilityPause, "pause"},
    Bit{kAbility100T4, "100-t4"},
    Bit{kAbility100Full, "100-full"},
    Bit{kAbility100Half, "100-half"},
    Bit{kAbility10Full, "10-full"},
    Bit{kAbility10Half, "10-half"},
};

constexpr std::array kExpansionBits = {
    Bit{kPartnerNextPageAble, "partner-next-page-able"},
    Bit{kNextPageAble, "next-page-able"},
    Bit{kPageReceived, "page-received"},
    Bit{kPartnerNegotiates, "partner-negotiates"},
};

constexpr std::array kGigabitControlBits = {
    Bit{kAdvertise1000Full, "1000-full"},
    Bit{kAdvertise1000Half, "1000-half"},
};

constexpr std::array kGigabitStatusBits = {
    Bit{kLocalReceiverOk, "local-receiver-ok"},
    Bit{kRemoteReceiverOk, "remote-receiver-ok"},
    Bit{kPartner1000Full, "partner-1000-full"},
    Bit{kPartner1000Half, "partner-1000-half"},
};

struct Register {
  std::uint32_t number;
  std::string_view name;
  std::span<const Bit> bits = {};
};

constexpr std::array kRegisters = {
    Register{kMiiControl, "control", kControlBits},
    Register{kMiiStatus, "status", kStatusBits},
    Register{kMiiIdentifier1, "identifier-1"},
    Register{kMiiIdentifier2, "identifier-2"},
    Register{kMiiAdvertisement, "advertisement", kAbilityBits},
    Register{kMiiPartnerAbility, "partner-ability", kAbilityBits},
    Register{kMiiExpansion, "expansion", kExpansionBits},
    Register{kMiiNextPage, "next-page"},
    Register{kMiiPartnerNextPage, "partner-next-page"},
    Register{kMiiGigabitControl, "1000base-t-control", kGigabitControlBits},
    Register{kMiiGigabitStatus, "1000base-t-status", kGigabitStatusBits},
    Register{kMiiExtendedStatus, "extended-status"},
};

const Register* Find(std::uint32_t reg) {
  const auto* const found = std::ranges::find(kRegisters, reg, &Register::number);
  return found == kRegisters.end() ? nullptr : found;
}

}  // namespace

std::string_view RegisterName(std::uint32_t reg) {
  const Register* const row = Find(reg);
  return row == nullptr ? std::string_view() : row->name;
}

std::vector<std::string_view> RegisterBits(std::uint32_t reg, std::uint16_t value) {
  const Register* const row = Find(reg);
  std::vector<std::string_view> names;
  if (row != nullptr) {
    for (const Bit& bit : row->bits) {
      if ((value & bit.mask) != 0) {
        names.push_back(bit.name);
      }
    }
  }
  return names;
}

}  // namespace virtual_onu
