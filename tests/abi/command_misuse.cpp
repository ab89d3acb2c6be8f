/// @file
/// Sends and receives commands as the types of the command table allow it, and, with the name of a case
/// defined, in one way that they must not allow. Never run: the check is what the compiler says.
#include <brmgr_traits.h>

#include "device/command_row.h"
#include "hal_bcm6838x_channel.h"

uint32_t SendWhole(IngressFlowRule& flow, IngressFlowDel& removed);
uint32_t SendUpToFrame(const RelayPkt& record);
virtual_onu::CommandRow Receive();

#if defined(OTHER_RECORD)
uint32_t Misuse(IngressFlowDel& record) {
  return hal::Send<BRMGR_CMD_FLOW_ADD>(record);
}
#elif defined(OTHER_RECORD_THROUGH_HELPER)
uint32_t Misuse(IngressFlowDel& record) {
  return hal::Send(hal::CommandOf<BRMGR_CMD_FLOW_ADD>(), record);
}
#elif defined(OTHER_FLAG)
uint32_t Misuse(IngressFlowRule& record) {
  return hal::Send<BRMGR_CMD_FLOW_ADD, BRMGR_FLAG_INPUT>(record);
}
#elif defined(NO_RECORD)
uint32_t Misuse() {
  return hal::Send<BRMGR_CMD_FLOW_ADD>();
}
#elif defined(RECORD_TOO_MANY)
uint32_t Misuse(IngressFlowRule& record) {
  return hal::Send<BRMGR_CMD_LASER_ON>(record);
}
#elif defined(FRAME_WITHOUT_LENGTH)
uint32_t Misuse(RelayPkt& record) {
  return hal::Send<BRMGR_CMD_SEND_BPDU>(record);
}
#elif defined(LENGTH_TOO_MANY)
uint32_t Misuse(const IngressFlowDel& record) {
  return hal::SendFrame(hal::FrameCommandOf<BRMGR_CMD_FLOW_DEL>(), record, sizeof(record));
}
#elif defined(UNKNOWN_COMMAND)
uint32_t Misuse(IngressFlowRule& record) {
  return hal::Send<BRMGR_CMD_LIMIT - 1>(record);
}
#elif defined(OTHER_LENGTH)
uint32_t Misuse() {
  constexpr uint32_t kOther = sizeof(IngressFlowDel) + 1;
  return brmgr::TableRow<IngressFlowDel, kOther, BRMGR_FLAG_INPUT, BRMGR_FLAG_INPUT>::kLength;
}
#elif defined(OTHER_HANDLER)
virtual_onu::CommandResult Handle(virtual_onu::DriverState& state, IngressFlowRule& record);
constexpr virtual_onu::CommandRow kMisuse = virtual_onu::kRow<BRMGR_CMD_FLOW_DEL, Handle>;
auto MisuseOf() {
  return kMisuse.run;
}
#else
uint32_t SendWhole(IngressFlowRule& flow, IngressFlowDel& removed) {
  return hal::Send<BRMGR_CMD_FLOW_ADD>(flow) + hal::Send<BRMGR_CMD_FLOW_DEL>(removed) +
         hal::Send<BRMGR_CMD_FLOW_DEL, BRMGR_FLAG_READ_BACK>(removed) +
         hal::Send(hal::CommandOf<BRMGR_CMD_FLOW_ADD>(), flow) + hal::Send<BRMGR_CMD_LASER_ON>();
}

uint32_t SendUpToFrame(const RelayPkt& record) {
  return hal::SendFrame(hal::FrameCommandOf<BRMGR_CMD_SEND_BPDU>(), record, sizeof(record));
}

virtual_onu::CommandResult Handle(virtual_onu::DriverState& state, IngressFlowDel& record);

virtual_onu::CommandRow Receive() {
  return virtual_onu::kRow<BRMGR_CMD_FLOW_DEL, Handle>;
}
#endif
