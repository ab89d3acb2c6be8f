/// @file
/// Access to the MII registers of a port's PHY through the Linux network stack (IEEE 802.3 clause
/// 22). Only registers and bits; what they mean for the library's operations is with the
/// operations.
#ifndef BCM6838X_PORT_MII_H
#define BCM6838X_PORT_MII_H

#include <cstdint>
#include <net/if.h>

namespace hal {

/// MII registers, IEEE 802.3 table 22-6.
enum {
  kMiiControl = 0,
  kMiiStatus = 1,
  kMiiAdvertisement = 4,
  kMiiPartnerAbility = 5,
  kMiiGigabitControl = 9,
  kMiiGigabitStatus = 10
};

/// Bits of the control register, IEEE 802.3 table 22-7.
enum {
  kMiiFullDuplex = 0x0100,
  kMiiRestart = 0x0200,
  kMiiPowerDown = 0x0800,
  kMiiAutoNegotiation = 0x1000,
  kMiiSpeed100 = 0x2000
};

/// Bits of the other registers: IEEE 802.3 tables 22-8, 28-2, 40-3.
enum {
  kMiiLinkUp = 0x0004,
  kMiiPause = 0x0400,
  kMiiAcknowledge = 0x4000,
  kMiiAdvertise1000Full = 0x0200,
  kMiiAdvertise1000Half = 0x0100,
  kMiiPartner1000Full = 0x0800,
  kMiiPartner1000Half = 0x0400
};

/// A port opened for MII access.
struct MiiPort {
  int32_t socket;
  ifreq request;
  int32_t phy;
  int32_t control;  ///< register 0 as read when the port was opened
  int32_t status;   ///< register 1 as read when the port was opened
};

/// How the opening of a port ended.
enum class MiiOpening {
  kDone,
  kNoInterface,  ///< no socket, or no such interface; nothing is open
  kNoPhy         ///< the registers show no PHY; nothing is open
};

/// Opens a UNI port (1..5) and reads registers 0 and 1; to be closed with CloseMii when done.
MiiOpening OpenMii(uint32_t uni, MiiPort& port);
void CloseMii(const MiiPort& port);

/// Reads a register; 0 on failure, which is printed to standard error.
int32_t ReadMii(MiiPort& port, int32_t reg);

/// Writes a register; a failure is printed to standard error and otherwise ignored.
void WriteMii(MiiPort& port, int32_t reg, uint16_t value);

}  // namespace hal

#endif
