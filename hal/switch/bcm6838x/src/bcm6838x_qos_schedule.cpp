/// @file
/// The upstream queues: their weights, and the scheduling scheme that decides in which of two banks
/// of eight the classified flows are.
#include <cstddef>
#include <cstdint>

#include <bcm6838x_qos.h>
#include <brmgr_cmd.h>
#include <brmgr_record.h>
#include <hal_bcm6838x.h>
#include <platform_vos.h>

#include "bcm6838x_qos_internal.h"
#include "hal_bcm6838x_channel.h"
#include "hal_bcm6838x_log.h"
#include "hal_bcm6838x_ports.h"

using namespace hal;

namespace {

constexpr uint32_t kQueuesOfBank = 8;

/// The current scheme, which is also the bank in which the flows are.
uint32_t sg_QosServiceSlaSchedulingScheme = 0;

/// Re-marking rules alone have all three objects; access-control rules are not moved.
// Required: schedule-moves-remarking-alone
bool HasAllObjects(size_t entry) {
  return sg_QosClassificationVlanEntry[entry] != kNoQosObject &&
         sg_QosClassificationICEntry[entry] != kNoQosObject &&
         sg_QosClassificationFlowEntry[entry] != kNoQosObject;
}

/// Reads a rule's flow back and deletes it.
bool TakeFlow(size_t entry, IngressFlowRule& flow) {
  flow.dir = BRMGR_DIR_UPSTREAM;
  flow.icIndex = static_cast<uint32_t>(sg_QosClassificationICEntry[entry]);
  flow.flowIndex = static_cast<uint32_t>(sg_QosClassificationFlowEntry[entry]);
  IngressFlowDel record = {flow.dir, flow.icIndex, flow.flowIndex};
  return Send<BRMGR_CMD_QUEUE_SCHEDULE>(flow) == BCM6838X_OK &&
         Send<BRMGR_CMD_FLOW_DEL, BRMGR_FLAG_READ_BACK>(record) == BCM6838X_OK;
}

/// Makes a flow that was read back ready to be added again; its keys stay.
// Required: schedule-sends-result-anew
void Prepare(IngressFlowRule& flow, uint32_t port, size_t entry) {
  flow.dir = BRMGR_DIR_UPSTREAM;
  flow.icIndex = static_cast<uint32_t>(sg_QosClassificationICEntry[entry]);
  flow.vlanActionIndex = static_cast<uint32_t>(sg_QosClassificationVlanEntry[entry]);
  flow.remark = 1;
  flow.forward = BRMGR_FORWARD_PASS;
  flow.result108 = 0;
  flow.result92 = 0;
  flow.result128 = 0;
  flow.flowIndex = BRMGR_INDEX_NONE;
  flow.policer = BRMGR_INDEX_NONE;
  flow.ingressPort = BCM6838X_StreamPortIndexUniToRdpa(port);
}

/// Moves a rule's flow by `delta` queues. A flow that cannot be added again is lost.
void MoveFlow(uint32_t port, size_t entry, uint32_t delta) {
  IngressFlowRule flow = {};
  if (!TakeFlow(entry, flow)) {
    return;
  }
  // Required: schedule-loses-refused-flow
  sg_QosClassificationFlowEntry[entry] = kNoQosObject;
  flow.queue += delta;
  Prepare(flow, port, entry);
  if (Send<BRMGR_CMD_FLOW_ADD>(flow) == BCM6838X_OK) {
    sg_QosClassificationFlowEntry[entry] = AsInt(flow.flowIndex);
  }
}

}  // namespace

uint32_t BCM6838X_SetQosWrrWeight(const uint8_t* weight) {
  constexpr uint32_t kFirstScheduler = 11;
  constexpr uint32_t kFirstQueue = 8;
  if (weight == nullptr) {
    return BCM6838X_INVALID;
  }
  for (uint32_t i = 0; i < kQueuesOfBank; ++i) {
    VOS_System(
        "bs /b/c egress_tm/dir=us,index=%hhu rl={af=0}, queue_cfg[0]={queue_id=%hhu,weight=0,"
        "drop_alg=dt,drop_threshold=700,red_high_threshold=0,red_low_threshold=0}, weight=%hhu",
        static_cast<uint8_t>(kFirstScheduler + i), static_cast<uint8_t>(kFirstQueue + i),
        weight[i]);
  }
  return BCM6838X_OK;
}

uint32_t BCM6838X_SetQosSchedule(uint32_t scheme) {
  if (scheme == sg_QosServiceSlaSchedulingScheme) {
    return BCM6838X_OK;
  }
  if (scheme > 1) {
    return BCM6838X_UNSUPPORTED;
  }
  // Unsigned, so that the way back wraps to the queue 8 below.
  const uint32_t delta = scheme == 1 ? kQueuesOfBank : 0 - kQueuesOfBank;
  for (const uint32_t port : PortsInTables()) {
    for (uint32_t precedence = 1; IsQosPrecedence(precedence); ++precedence) {
      const size_t entry = QosRuleEntry(port, precedence);
      if (HasAllObjects(entry)) {
        MoveFlow(port, entry, delta);
      }
    }
  }
  // Required: schedule-stored-whatever-failed
  sg_QosServiceSlaSchedulingScheme = scheme;
  return BCM6838X_OK;
}
