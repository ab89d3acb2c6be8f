/// @file
/// The MII registers of a PHY and their bits (IEEE 802.3 clauses 22.2.4, 28.2.4.1 and 40.5.1.1).
#pragma once

#include <cstddef>
#include <cstdint>

namespace virtual_onu {

constexpr std::size_t kMiiRegisters = 32;

/// What a read yields where nothing answers: the bus is pulled up.
constexpr std::uint16_t kMiiNoAnswer = 0xFFFF;

enum MiiRegister : std::uint8_t {
  kMiiControl = 0,
  kMiiStatus = 1,
  kMiiIdentifier1 = 2,
  kMiiIdentifier2 = 3,
  kMiiAdvertisement = 4,
  kMiiPartnerAbility = 5,
  kMiiExpansion = 6,
  kMiiNextPage = 7,
  kMiiPartnerNextPage = 8,
  kMiiGigabitControl = 9,
  kMiiGigabitStatus = 10,
  kMiiExtendedStatus = 15
};

// Control register, table 22-7. The two speed bits together: none 10, the low one 100, the high
// one 1000 Mbit/s.
constexpr std::uint16_t kControlSpeedHigh = 0x0040;
constexpr std::uint16_t kControlFullDuplex = 0x0100;
constexpr std::uint16_t kControlRestart = 0x0200;  ///< self-clearing
constexpr std::uint16_t kControlIsolate = 0x0400;
constexpr std::uint16_t kControlPowerDown = 0x0800;
constexpr std::uint16_t kControlNegotiate = 0x1000;
constexpr std::uint16_t kControlSpeedLow = 0x2000;
constexpr std::uint16_t kControlLoopback = 0x4000;
constexpr std::uint16_t kControlReset = 0x8000;  ///< self-clearing

// Status register, table 22-8; the abilities are not listed one by one.
constexpr std::uint16_t kStatusLink = 0x0004;
constexpr std::uint16_t kStatusNegotiated = 0x0020;

// Advertisement and partner ability, clause 28.2.4.1 with annex 28B.
constexpr std::uint16_t kSelector8023 = 0x0001;
constexpr std::uint16_t kAbility10Half = 0x0020;
constexpr std::uint16_t kAbility10Full = 0x0040;
constexpr std::uint16_t kAbility100Half = 0x0080;
constexpr std::uint16_t kAbility100Full = 0x0100;
constexpr std::uint16_t kAbility100T4 = 0x0200;
constexpr std::uint16_t kAbilityPause = 0x0400;
constexpr std::uint16_t kAbilityAsymmetricPause = 0x0800;
constexpr std::uint16_t kAcknowledge = 0x4000;
constexpr std::uint16_t kNextPage = 0x8000;

// Expansion register, clause 28.2.4.1.5.
constexpr std::uint16_t kPartnerNegotiates = 0x0001;
constexpr std::uint16_t kPageReceived = 0x0002;  ///< cleared by reading
constexpr std::uint16_t kNextPageAble = 0x0004;
constexpr std::uint16_t kPartnerNextPageAble = 0x0008;

// 1000BASE-T control and status, table 40-3.
constexpr std::uint16_t kAdvertise1000Half = 0x0100;
constexpr std::uint16_t kAdvertise1000Full = 0x0200;
constexpr std::uint16_t kPartner1000Half = 0x0400;
constexpr std::uint16_t kPartner1000Full = 0x0800;
constexpr std::uint16_t kRemoteReceiverOk = 0x1000;
constexpr std::uint16_t kLocalReceiverOk = 0x2000;

}  // namespace virtual_onu
