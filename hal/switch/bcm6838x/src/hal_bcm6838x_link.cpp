/// @file
/// Link changes of the UNI ports: from the kernel's message to the driver and to the management
/// process.
#include <cstddef>
#include <cstdint>
#include <cstring>

#include <brmgr_cmd.h>
#include <brmgr_record.h>
#include <hal_bcm6838x.h>
#include <platform_vos.h>

#include "hal_bcm6838x_channel.h"
#include "hal_bcm6838x_find.h"
#include "hal_bcm6838x_log.h"
#include "hal_bcm6838x_monitor.h"
#include "hal_bcm6838x_platform.h"
#include "hal_bcm6838x_ports.h"

using namespace hal;

namespace {

constexpr uint32_t kUniInterfaces = 4;  ///< "eth0" to "eth3", UNI ports 1 to 4

/// Link state of a UNI port.
enum UniLinkState : uint32_t {
  kLink1000Full = 0,
  kLink1000Half = 1,
  kLink100Full = 2,
  kLink100Half = 3,
  kLink10Full = 4,
  kLink10Half = 5,
  kLinkDown = 6,  ///< also a known speed with an unknown duplex
  kLinkOther = 7,
};

/// A speed in Mbit/s and its states with full and half duplex.
struct SpeedStates {
  uint32_t speed;
  uint32_t full;
  uint32_t half;
};

constexpr SpeedStates kSpeeds[] = {
    {1000, kLink1000Full, kLink1000Half},
    {100, kLink100Full, kLink100Half},
    {10, kLink10Full, kLink10Half},
};

/// Line rates in bit/s, by state.
constexpr uint32_t kRates[] = {1000000000, 1000000000, 100000000, 100000000, 10000000, 10000000};

/// Payload of a link message; the words are in network order.
struct LinkPayload {
  char name[16];
  uint8_t speed[4];
  uint8_t duplex[4];
};
static_assert(sizeof(LinkPayload) == 24);

/// A notification of the management process.
struct UniStateMsg {
  uint16_t word0;
  uint16_t reserved2;
  uint32_t port;
  uint16_t code;
  uint8_t linkUp;
  uint8_t reserved11[25];
};
static_assert(offsetof(UniStateMsg, port) == 4);
static_assert(offsetof(UniStateMsg, code) == 8);
static_assert(offsetof(UniStateMsg, linkUp) == 10);
static_assert(sizeof(UniStateMsg) == 36);

uint32_t LoadU32(const uint8_t (&bytes)[4]) {
  return (static_cast<uint32_t>(bytes[0]) << 24U) | (static_cast<uint32_t>(bytes[1]) << 16U) |
         (static_cast<uint32_t>(bytes[2]) << 8U) | bytes[3];
}

uint32_t LinkState(uint32_t speed, uint32_t duplex) {
  constexpr uint32_t kHalf = 0;
  constexpr uint32_t kFull = 1;
  const SpeedStates* const known =
      FirstOf(kSpeeds, [speed](const SpeedStates& states) { return states.speed == speed; });
  if (known == nullptr) {
    return speed == 0 ? kLinkDown : kLinkOther;
  }
  // Required: odd-duplex-is-down
  if (duplex > kFull) {
    return kLinkDown;
  }
  return duplex == kHalf ? known->half : known->full;
}

/// The UNI port of an interface, 0 when it is none. The name need not be terminated.
uint32_t PortOfInterface(const char (&name)[16]) {
  char interface[] = "eth0";
  char received[sizeof(name) + 1] = {};
  memcpy(received, name, sizeof(name));
  for (uint32_t port = 1; port <= kUniInterfaces; ++port) {
    interface[3] = static_cast<char>('0' + port - 1);
    if (VOS_StrNcaseCmp(received, interface) == 0) {
      return port;
    }
  }
  // Required: unknown-interface-is-port-0
  return 0;
}

/// Tells the driver the line rate of a port.
void SendRate(uint32_t port, uint32_t state) {
  constexpr uint32_t kKnownRates = sizeof(kRates) / sizeof(kRates[0]);
  PortRateRecord record = {};
  record.port = port - 1 < kUniInterfaces ? DevicePort(port) : 0;
  // Required: unknown-speed-reports-rate-0
  record.rate = state < kKnownRates ? kRates[state] : 0;
  const uint32_t result = Send<BRMGR_CMD_PORT_STATE>(record);
  if (result != BCM6838X_OK) {
    HAL_LOG(LOG_LEVEL_TRACE, "UNI port[%lu] MODE change to [%lu], flow control error, ret=%d\r\n",
            AsUnsignedLong(port), AsUnsignedLong(state), AsInt(result));
  }
}

void Notify(uint32_t port, uint32_t state, uint16_t code) {
  constexpr uint32_t kUniPortFlag = 0x01000000;
  UniStateMsg message = {};
  message.word0 = 1;
  message.port = port | kUniPortFlag;
  message.code = code;
  message.linkUp = state != kLinkDown ? 1 : 0;
  VOS_MsgSend(kManagementModule, kManagementUniState, &message, sizeof(message));
}

}  // namespace

void hal::ServeLinkChange(const KernelMessage& message) {
  LinkPayload payload;
  if (message.payloadSize < sizeof(payload)) {
    return;
  }
  memcpy(&payload, message.payload, sizeof(payload));
  BCM6838X_EventUniStateReport(PortOfInterface(payload.name),
                               LinkState(LoadU32(payload.speed), LoadU32(payload.duplex)));
}

uint32_t BCM6838X_EventUniStateReport(uint32_t port, uint32_t state) {
  constexpr uint16_t kFirstCode = 0x0301;
  constexpr uint16_t kSecondCode = 0x0302;
  HAL_LOG(LOG_LEVEL_TRACE, "UNI port[%lu] MODE change to [%lu]\r\n", AsUnsignedLong(port),
          AsUnsignedLong(state));
  // Required: link-down-sends-no-rate
  if (state != kLinkDown) {
    SendRate(port, state);
  }
  // Required: link-change-told-twice
  Notify(port, state, kFirstCode);
  Notify(port, state, kSecondCode);
  return BCM6838X_OK;
}
