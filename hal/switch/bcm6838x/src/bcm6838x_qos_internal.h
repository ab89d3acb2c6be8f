/// @file
/// What the files of the QoS area share, and which ports have a policer for the builders of VLAN
/// flows.
#ifndef BCM6838X_QOS_INTERNAL_H
#define BCM6838X_QOS_INTERNAL_H

#include <cstddef>
#include <cstdint>

#include <bcm6838x_qos.h>

#include "hal_bcm6838x_ports.h"

namespace hal {

constexpr size_t kQosRules = static_cast<size_t>(kUniPorts) * BCM6838X_QOS_RULES;

/// Entry of a rule that has no object of a kind.
constexpr int32_t kNoQosObject = -1;

extern "C" {
extern uint32_t g_portPolicerCfg[kUniPorts];  ///< 1 where the port has a policer

// What each rule has in the device, by QosRuleEntry(); kNoQosObject where it has nothing.
extern int32_t sg_QosClassificationVlanEntry[kQosRules];
extern int32_t sg_QosClassificationICEntry[kQosRules];
extern int32_t sg_QosClassificationFlowEntry[kQosRules];
}

/// Tells whether a rule may have that precedence.
constexpr bool IsQosPrecedence(uint32_t precedence) {
  return precedence >= 1 && precedence <= BCM6838X_QOS_RULES;
}

/// Where the tables keep the rule of a valid port and precedence.
constexpr size_t QosRuleEntry(uint32_t port, uint32_t precedence) {
  return (static_cast<size_t>(port) - 1) * BCM6838X_QOS_RULES + precedence - 1;
}

/// Logs a rule set, line by line.
void ListQosRules(const QosClassRuleSet& set);

}  // namespace hal

#endif
