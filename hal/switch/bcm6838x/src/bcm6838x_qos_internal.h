/// @file
/// What the QoS area shares with the builders of VLAN flows.
#ifndef BCM6838X_QOS_INTERNAL_H
#define BCM6838X_QOS_INTERNAL_H

#include <cstddef>
#include <cstdint>

constexpr size_t kPolicerPorts = 32;

extern "C" {
extern uint32_t g_portPolicerCfg[kPolicerPorts];  ///< 1 where the port has a policer
}

#endif
