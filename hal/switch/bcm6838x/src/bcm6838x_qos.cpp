/// @file
/// State and start-up of the QoS area.
#include <cstddef>
#include <cstdint>

#include <bcm6838x_qos.h>

#include "bcm6838x_qos_internal.h"

using namespace hal;

uint32_t hal::g_portPolicerCfg[kUniPorts] = {};

int32_t hal::sg_QosClassificationVlanEntry[kQosRules] = {};
int32_t hal::sg_QosClassificationICEntry[kQosRules] = {};
int32_t hal::sg_QosClassificationFlowEntry[kQosRules] = {};

uint32_t BCM6838X_InitQoS(void) {
  for (size_t entry = 0; entry < kQosRules; ++entry) {
    sg_QosClassificationVlanEntry[entry] = kNoQosObject;
    sg_QosClassificationICEntry[entry] = kNoQosObject;
    sg_QosClassificationFlowEntry[entry] = kNoQosObject;
  }
  return BCM6838X_OK;
}
