/// @file
/// Register behaviour and link establishment of a PHY.
#include "phy/phy.h"

#include <algorithm>

namespace virtual_onu {
namespace {

/// 10 and 100 Mbit/s in both duplex modes, extended status, preamble suppression, auto-negotiation,
/// extended registers.
constexpr std::uint16_t kStatusAbilities = 0x7949;

constexpr std::uint16_t kExtendedStatus1000T = 0x3000;  ///< 1000BASE-T in both duplex modes

constexpr std::uint16_t kGigabitModes = kAdvertise1000Half | kAdvertise1000Full;
constexpr std::uint16_t kSpeedBits = kControlSpeedLow | kControlSpeedHigh;

/// From the bits of the 1000BASE-T control register to the partner's in the status register.
constexpr unsigned kPartnerGigabitShift = 2;

/// A register that is not plain storage.
struct RegisterRule {
  std::uint16_t initial;
  std::uint16_t writable;
};

/// Registers 0 to 15; the ones behind them belong to the maker and are plain storage.
constexpr std::array<RegisterRule, 16> kRules = {{
    {kControlNegotiate | kControlFullDuplex | kControlSpeedHigh, 0x7DC0},
    {kStatusAbilities, 0},
    {0x0240, 0},  // an identifier of no maker
    {0x6838, 0},
    {Advertisement{}.base, 0xBFFF},
    {0, 0},
    {kNextPageAble, 0},
    {0x2001, 0xB7FF},
    {0, 0},
    {Advertisement{}.gigabit, 0xFF00},
    {0, 0},
    {0, 0xFFFF},
    {0, 0xFFFF},
    {0, 0xFFFF},
    {0, 0xFFFF},
    {kExtendedStatus1000T, 0},
}};

constexpr std::array<std::uint16_t, kMiiRegisters> InitialRegisters() {
  std::array<std::uint16_t, kMiiRegisters> registers = {};
  for (std::size_t i = 0; i < kRules.size(); ++i) {
    registers.at(i) = kRules.at(i).initial;
  }
  return registers;
}

std::uint16_t WritableBits(std::uint32_t reg) {
  return reg < kRules.size() ? kRules.at(reg).writable : 0xFFFF;
}

std::uint16_t Combine(unsigned kept, unsigned added) {
  return static_cast<std::uint16_t>(kept | added);
}

std::uint32_t SpeedOf(std::uint16_t control) {
  switch (control & kSpeedBits) {
    case 0:
      return 10;
    case kControlSpeedLow:
      return 100;
    default:
      return 1000;
  }
}

/// The ability that parallel detection of a speed finds; 0 where there is none (1000BASE-T).
std::uint16_t HalfDuplexAbility(std::uint32_t speed) {
  switch (speed) {
    case 10:
      return kAbility10Half;
    case 100:
      return kAbility100Half;
    default:
      return 0;
  }
}

}  // namespace

Phy::Phy() : registers_(InitialRegisters()) {
  connect();
}

std::uint16_t Phy::read(std::uint32_t reg) {
  const std::lock_guard lock(mutex_);
  const std::uint16_t result = value(reg);
  if (reg == kMiiStatus && responding_) {
    linkWasDown_ = !link_;
  }
  if (reg == kMiiExpansion && responding_) {
    registers_[kMiiExpansion] &= static_cast<std::uint16_t>(~kPageReceived);
  }
  return result;
}

std::uint16_t Phy::peek(std::uint32_t reg) const {
  const std::lock_guard lock(mutex_);
  return value(reg);
}

std::uint16_t Phy::value(std::uint32_t reg) const {
  if (reg >= kMiiRegisters || !responding_) {
    return kMiiNoAnswer;
  }
  unsigned word = registers_.at(reg);
  if (reg == kMiiStatus) {
    word |= link_ && !linkWasDown_ ? kStatusLink : 0U;
    word |= link_ && has(kControlNegotiate) ? kStatusNegotiated : 0U;
  }
  return static_cast<std::uint16_t>(word);
}

void Phy::write(std::uint32_t reg, std::uint16_t value) {
  const std::lock_guard lock(mutex_);
  if (reg >= kMiiRegisters || !responding_) {
    return;
  }
  if (reg == kMiiControl) {
    writeControl(value);
    return;
  }
  const unsigned writable = WritableBits(reg);
  registers_.at(reg) = Combine(registers_.at(reg) & ~writable, value & writable);
}

/// What the control register changes takes effect at once. A new advertisement waits for the next
/// negotiation, as clause 28.2.4.1.3 has it.
void Phy::writeControl(std::uint16_t value) {
  if ((value & kControlReset) != 0) {
    registers_ = InitialRegisters();
    connect();
    return;
  }
  const auto written = static_cast<std::uint16_t>(value & WritableBits(kMiiControl));
  const unsigned changed = registers_[kMiiControl] ^ written;
  registers_[kMiiControl] = written;
  const unsigned breaksLink =
      kControlLoopback | kControlPowerDown | kControlNegotiate |
      (has(kControlNegotiate) ? 0U : unsigned{kSpeedBits} | kControlFullDuplex);
  const bool restarts = has(kControlNegotiate) && (value & kControlRestart) != 0;
  if (restarts || (changed & breaksLink) != 0) {
    connect();
  }
}

void Phy::setPartner(const LinkPartner& partner) {
  const std::lock_guard lock(mutex_);
  partner_ = partner;
  connect();
}

LinkPartner Phy::partner() const {
  const std::lock_guard lock(mutex_);
  return partner_;
}

void Phy::setResponding(bool responding) {
  const std::lock_guard lock(mutex_);
  responding_ = responding;
}

std::optional<Link> Phy::link() const {
  const std::lock_guard lock(mutex_);
  return link_;
}

bool Phy::passesFrames() const {
  const std::lock_guard lock(mutex_);
  return link_ && !has(kControlIsolate);
}

/// Drops the link and brings up the one that both ends can have now, if any.
void Phy::connect() {
  linkWasDown_ = true;
  link_.reset();
  for (const MiiRegister reg : {kMiiPartnerAbility, kMiiExpansion, kMiiGigabitStatus}) {
    registers_.at(reg) = kRules.at(reg).initial;
  }
  // In loopback the PHY is cut off from the medium.
  if (!partner_.present || has(kControlPowerDown) || has(kControlLoopback)) {
    return;
  }
  if (!has(kControlNegotiate)) {
    link_ = force();
  } else {
    link_ = partner_.negotiates ? negotiate() : detectInParallel();
  }
}

/// Exchanges pages with the partner and fills the registers that show them.
std::optional<Link> Phy::negotiate() {
  const Advertisement local = {registers_[kMiiAdvertisement], registers_[kMiiGigabitControl]};
  const Advertisement& remote = partner_.advertisement;
  const bool offersGigabit = (remote.gigabit & kGigabitModes) != 0;
  registers_[kMiiPartnerAbility] =
      Combine(remote.base, kAcknowledge | (offersGigabit ? kNextPage : 0U));
  registers_[kMiiExpansion] |= kPartnerNegotiates | kPageReceived;
  if (offersGigabit) {
    registers_[kMiiExpansion] |= kPartnerNextPageAble;
  }
  // The 1000BASE-T abilities travel in next pages, which need both ends.
  if (offersGigabit && (local.gigabit & kGigabitModes) != 0) {
    const unsigned modes = remote.gigabit & kGigabitModes;
    registers_[kMiiGigabitStatus] = Combine(0, modes << kPartnerGigabitShift);
  }
  const std::optional<LinkMode> mode = BestCommonMode(local, remote);
  if (!mode) {
    return std::nullopt;
  }
  if (mode->speed == 1000) {
    registers_[kMiiGigabitStatus] |= kLocalReceiverOk | kRemoteReceiverOk;
  }
  return Link{*mode, mode->fullDuplex ? CommonPause(local, remote) : PauseUse{}};
}

/// Finds a partner that does not negotiate by its signal, which tells the speed alone: the duplex
/// mode is half (clause 28.2.3.1).
std::optional<Link> Phy::detectInParallel() {
  const std::uint16_t ability = HalfDuplexAbility(partner_.forced.speed);
  registers_[kMiiPartnerAbility] = ability;
  if ((registers_[kMiiAdvertisement] & ability) == 0) {
    return std::nullopt;
  }
  return Link{{partner_.forced.speed, false}, {}};
}

/// This end does not negotiate: the partner must be forced to the same speed, or find it by
/// parallel detection. A duplex mismatch goes unnoticed, as on the wire.
std::optional<Link> Phy::force() const {
  const std::uint32_t speed = SpeedOf(registers_[kMiiControl]);
  const std::uint16_t ability = HalfDuplexAbility(speed);
  const bool follows = partner_.negotiates ? (partner_.advertisement.base & ability) != 0
                                           : partner_.forced.speed == speed;
  if (ability == 0 || !follows) {
    return std::nullopt;
  }
  return Link{{speed, has(kControlFullDuplex)}, {}};
}

}  // namespace virtual_onu
