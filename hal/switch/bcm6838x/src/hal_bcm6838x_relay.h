/// @file
/// Which protocols the relay clients take.
#ifndef HAL_BCM6838X_RELAY_H
#define HAL_BCM6838X_RELAY_H

#include <cstdint>

namespace hal {

extern "C" {
extern uint8_t g_dhcpRelayStatus;   ///< 1 while the DHCP relay client takes trapped frames, else 0
extern uint8_t g_pppoeRelayStatus;  ///< the same of the PPPoE relay client
}

}  // namespace hal

#endif
