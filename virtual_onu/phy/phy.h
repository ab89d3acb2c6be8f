/// @file
/// The PHY of one UNI port: its MII registers and its link to a partner that can be changed while
/// the unit runs.
#pragma once

#include <array>
#include <cstdint>
#include <mutex>
#include <optional>

#include "phy/negotiation.h"
#include "phy/registers.h"

namespace virtual_onu {

/// What a port's cable leads to. By default a station that negotiates everything up to 1000 Mbit/s
/// full duplex, without pause.
struct LinkPartner {
  bool present = true;               ///< false: nothing is plugged in
  bool negotiates = true;            ///< false: the partner is forced to `forced`
  Advertisement advertisement = {};  ///< of a partner that negotiates
  LinkMode forced = {100, true};     ///< 10 or 100 Mbit/s: 1000BASE-T needs auto-negotiation
  bool operator==(const LinkPartner&) const = default;
};

/// A link that is up, as this end sees it.
struct Link {
  LinkMode mode;
  PauseUse pause;
  bool operator==(const Link&) const = default;
};

/// Reading and writing registers works as in IEEE 802.3 clauses 22, 28 and 40; registers without a
/// meaning there are plain storage. A link that can come up does so at once. Threads: see
/// Unit.
class Phy {
 public:
  Phy();

  /// Reads a register; latched bits are cleared by it.
  /// @param[in] reg  0..31; kMiiNoAnswer for any other
  std::uint16_t read(std::uint32_t reg);

  /// What read() would give, without its effects.
  [[nodiscard]] std::uint16_t peek(std::uint32_t reg) const;

  /// Writes a register; read-only registers and bits stay.
  /// @param[in] reg  0..31; any other is ignored
  void write(std::uint32_t reg, std::uint16_t value);

  /// Unplugs the cable and plugs it into that partner.
  void setPartner(const LinkPartner& partner);
  [[nodiscard]] LinkPartner partner() const;

  /// Makes the PHY answer on its management interface, or not: it then reads as kMiiNoAnswer and
  /// ignores writes. Its link is not touched.
  void setResponding(bool responding);

  /// The link, or nothing while it is down.
  [[nodiscard]] std::optional<Link> link() const;

  /// Tells whether frames get through: the link is up and the PHY is not isolated from the switch.
  [[nodiscard]] bool passesFrames() const;

 private:
  using Registers = std::array<std::uint16_t, kMiiRegisters>;

  [[nodiscard]] std::uint16_t value(std::uint32_t reg) const;
  /// Tells whether a bit of the control register is set.
  [[nodiscard]] bool has(std::uint16_t bit) const { return (registers_[kMiiControl] & bit) != 0; }
  void writeControl(std::uint16_t value);
  void connect();
  [[nodiscard]] std::optional<Link> negotiate();
  [[nodiscard]] std::optional<Link> detectInParallel();
  [[nodiscard]] std::optional<Link> force() const;

  mutable std::mutex mutex_;
  Registers registers_;
  LinkPartner partner_;
  std::optional<Link> link_;
  bool linkWasDown_ = true;  ///< since the status register was read last
  bool responding_ = true;
};

}  // namespace virtual_onu
