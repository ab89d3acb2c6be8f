/// @file
/// What a condition's field compares: the bit of the ingress class and the key of the flow.
#ifndef BCM6838X_QOS_FIELD_H
#define BCM6838X_QOS_FIELD_H

#include <cstdint>

#include <brmgr_record.h>

namespace hal {

/// How a field is compared.
struct QosFieldKey {
  uint32_t field;                                            ///< BCM6838X_QOS_FIELD_*
  uint32_t keyBit;                                           ///< BRMGR_KEY_*
  void (*set)(IngressFlowRule& flow, const uint8_t* value);  ///< puts a condition's value in place
};

/// The row of a field, or null when the chip cannot compare it or there is no such field.
const QosFieldKey* FindQosFieldKey(uint32_t field);

}  // namespace hal

#endif
