/// @file
/// Media type, link state, negotiation result, pause and PHY power of a port, by its PHY's
/// registers.
#include <cstdint>

#include <bcm6838x_port.h>
#include <platform_log.h>
#include <platform_vos.h>

#include "bcm6838x_port_internal.h"
#include "bcm6838x_port_mii.h"
#include "hal_bcm6838x_find.h"
#include "hal_bcm6838x_log.h"
#include "hal_bcm6838x_ports.h"

using namespace hal;

namespace {

/// A bit, and the media type that it stands for.
struct TypeOfBit {
  int32_t bit;
  uint32_t type;
};

/// Common abilities in the order in which they are tested.
// Required: ability-bit-9-is-half-gigabit
constexpr TypeOfBit kCommonAbilities[] = {
    {0x0100, BCM6838X_MEDIA_100_FULL}, {0x0200, BCM6838X_MEDIA_1000_HALF},
    {0x0080, BCM6838X_MEDIA_100_HALF}, {0x0040, BCM6838X_MEDIA_10_FULL},
    {0x0020, BCM6838X_MEDIA_10_HALF},
};

/// Speed and duplex bits of the control register without auto-negotiation.
constexpr TypeOfBit kForcedModes[] = {
    {kMiiSpeed100 | kMiiFullDuplex, BCM6838X_MEDIA_100_FULL},
    {kMiiSpeed100, BCM6838X_MEDIA_100_HALF},
    {kMiiFullDuplex, BCM6838X_MEDIA_10_FULL},
    {0, BCM6838X_MEDIA_10_HALF},
};

/// Negotiation result of each media type.
// Required: link-down-negotiates-10-half
constexpr uint32_t kNegResults[] = {5, 2, 4, 1, 3, 0, 0};

/// Bit of the advertisement register for each pause mode; other modes advertise no pause.
// Required: pause-modes-3-to-5-advertise-none
constexpr int32_t kPauseAdvertTable[] = {0, kMiiPause, kMiiPause, 0, 0, 0, kMiiPause};

constexpr uint32_t kPauseBoth = 2;

/// Media type by the abilities that both ends advertise; `type` stays when there is none.
void TypeByNegotiation(MiiPort& port, int32_t advertised, int32_t partner, uint32_t& type) {
  const int32_t gigabit = ReadMii(port, kMiiGigabitControl);
  const int32_t gigabitStatus = ReadMii(port, kMiiGigabitStatus);
  if ((gigabit & kMiiAdvertise1000Full) != 0 && (gigabitStatus & kMiiPartner1000Full) != 0) {
    type = BCM6838X_MEDIA_1000_FULL;
    return;
  }
  if ((gigabit & kMiiAdvertise1000Half) != 0 && (gigabitStatus & kMiiPartner1000Half) != 0) {
    type = BCM6838X_MEDIA_1000_HALF;
    return;
  }
  // Required: no-acknowledge-keeps-type
  if ((partner & kMiiAcknowledge) == 0) {
    return;
  }
  const TypeOfBit* const common = FirstOf(kCommonAbilities, [&](const TypeOfBit& ability) {
    return (advertised & partner & ability.bit) != 0;
  });
  if (common != nullptr) {
    type = common->type;
  }
}

void TypeByForcedMode(int32_t control, uint32_t& type) {
  const TypeOfBit* const forced = FirstOf(kForcedModes, [control](const TypeOfBit& mode) {
    return (control & (kMiiSpeed100 | kMiiFullDuplex)) == mode.bit;
  });
  if (forced != nullptr) {
    type = forced->type;
  }
}

bool IsLinkUp(MiiPort& port) {
  // Required: link-read-twice
  // The first read clears the latched status.
  ReadMii(port, kMiiStatus);
  return (ReadMii(port, kMiiStatus) & kMiiLinkUp) != 0;
}

/// Writes a register of a port's PHY with the chip vendor's tool.
void WriteByTool(const MiiPort& port, int32_t reg, int32_t value) {
  VOS_System("ethctl %s reg %d %x", port.request.ifr_name, reg, static_cast<uint32_t>(value));
}

bool Negotiates(const MiiPort& port) {
  return (port.control & kMiiAutoNegotiation) != 0;
}

}  // namespace

uint32_t BCM6838X_GetMediaType(uint32_t port, uint32_t* type) {
  if (HAL_IS_NULL(type)) {
    return BCM6838X_FAILED;
  }
  MiiPort mii;
  if (OpenMii(UniPort(port), mii) != MiiOpening::kDone) {
    return BCM6838X_FAILED;
  }
  const int32_t advertised = ReadMii(mii, kMiiAdvertisement);
  const int32_t partner = ReadMii(mii, kMiiPartnerAbility);
  if (Negotiates(mii)) {
    TypeByNegotiation(mii, advertised, partner, *type);
  } else {
    TypeByForcedMode(mii.control, *type);
  }
  if (!IsLinkUp(mii)) {
    *type = BCM6838X_MEDIA_DOWN;
  }
  CloseMii(mii);
  return BCM6838X_OK;
}

uint32_t BCM6838X_GetPortLinkState(uint32_t port, uint32_t* state) {
  if (HAL_IS_NULL(state)) {
    return BCM6838X_OK;
  }
  // A PHY that cannot be read counts as link down.
  uint32_t type = kMediaTypeUnknown;
  const bool readable = BCM6838X_GetMediaType(port, &type) == BCM6838X_OK;
  *state = readable && type != BCM6838X_MEDIA_DOWN ? 1 : 0;
  return BCM6838X_OK;
}

uint32_t BCM6838X_GetPortNegResult(uint32_t port, uint32_t* result) {
  if (HAL_IS_NULL(result)) {
    return BCM6838X_FAILED;
  }
  uint32_t type = kMediaTypeUnknown;
  BCM6838X_GetMediaType(port, &type);
  if (type >= kMediaTypeUnknown) {
    return BCM6838X_FAILED;
  }
  *result = kNegResults[type];
  return BCM6838X_OK;
}

uint32_t BCM6838X_PauseAbilitySet(uint32_t port, uint32_t mode) {
  constexpr uint32_t kModes = sizeof(kPauseAdvertTable) / sizeof(kPauseAdvertTable[0]);
  MiiPort mii;
  if (OpenMii(UniPort(port), mii) != MiiOpening::kDone) {
    return BCM6838X_FAILED;
  }
  if (Negotiates(mii)) {
    const int32_t bits = mode < kModes ? kPauseAdvertTable[mode] : 0;
    // Required: pause-written-by-two-ways
    WriteByTool(mii, kMiiAdvertisement, (ReadMii(mii, kMiiAdvertisement) & ~kMiiPause) | bits);
    const int32_t control = ReadMii(mii, kMiiControl);
    WriteMii(mii, kMiiControl, static_cast<uint16_t>(control | kMiiAutoNegotiation | kMiiRestart));
  }
  CloseMii(mii);
  return BCM6838X_OK;
}

uint32_t BCM6838X_PauseAbilityGet(uint32_t port, uint32_t* mode) {
  if (HAL_IS_NULL(mode)) {
    return BCM6838X_FAILED;
  }
  MiiPort mii;
  if (OpenMii(UniPort(port), mii) != MiiOpening::kDone) {
    return BCM6838X_FAILED;
  }
  if (Negotiates(mii)) {
    // Required: pause-without-negotiation-unknown
    *mode = (ReadMii(mii, kMiiAdvertisement) & kMiiPause) != 0 ? kPauseBoth : 0;
  }
  CloseMii(mii);
  return BCM6838X_OK;
}

uint32_t BCM6838X_SetPortFlowControl(uint32_t port, uint32_t on) {
  return BCM6838X_PauseAbilitySet(port, (on & 0xFF) == 1 ? kPauseBoth : 0);
}

int32_t BCM6838X_PhyPowerDown(uint32_t port, uint32_t down) {
  // Required: missing-phy-is-minus-1
  constexpr int32_t kNoPhyResult = -1;
  MiiPort mii;
  switch (OpenMii(UniPort(port), mii)) {
    case MiiOpening::kNoInterface:
      return BCM6838X_FAILED;
    case MiiOpening::kNoPhy:
      return kNoPhyResult;
    case MiiOpening::kDone:
      break;
  }
  WriteByTool(mii, kMiiControl, (mii.control & ~kMiiPowerDown) | (down != 0 ? kMiiPowerDown : 0));
  CloseMii(mii);
  return BCM6838X_OK;
}
