/// @file
/// The task "kernelEvent": the reset button and the messages of the kernel. The socket is in
/// hal_bcm6838x_netlink.cpp, link changes are in hal_bcm6838x_link.cpp.
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <sys/select.h>

#include <hal_bcm6838x.h>
#include <platform_config.h>
#include <platform_vos.h>

#include "hal_bcm6838x_log.h"
#include "hal_bcm6838x_monitor.h"

using namespace hal;

namespace {

constexpr uint32_t kLongPress = 5000;  ///< milliseconds
constexpr uint32_t kResetButton = 11;  ///< reason of a restart

/// In factory mode a press is only announced.
void AnnouncePress() {
  constexpr uint32_t kAnnouncedPress = 250;
  VOS_System("/usr/local/bin/msgall.sh \"RST button press %lu milliseconds, %s now\"",
             AsUnsignedLong(kAnnouncedPress), "restart system");
  VOS_System("/usr/local/bin/msgall.sh \"%s\"", "[RST PRESS]Reboot System now ......");
}

void ResetToDefaults() {
  constexpr uint32_t kSettleTime = 500;
  VOS_ResetDefaultCfg();
  VOS_TaskDelay(kSettleTime);
  VOS_Reboot(kResetButton);
}

void ServePress(uint32_t now, MonitorState& state) {
  if (state.pressTime == 0) {
    // Required: press-never-forgotten
    state.pressTime = now;
  } else if (now - state.pressTime >= kLongPress) {
    ResetToDefaults();
  }
}

// Required: release-measured-from-0
void ServeRelease(uint32_t now, const MonitorState& state) {
  if (now - state.pressTime < kLongPress) {
    VOS_Reboot(kResetButton);
  } else {
    ResetToDefaults();
  }
}

void ServeButton(const KernelMessage& message, MonitorState& state) {
  constexpr uint32_t kPressed = 1;
  uint32_t button = 0;
  if (message.payloadSize < sizeof(button)) {
    return;
  }
  memcpy(&button, message.payload, sizeof(button));
  uint32_t factoryMode = 0;
  BCM6838X_sysGetFactoryMode(&factoryMode);
  if (factoryMode != 0) {
    // Required: factory-mode-announces-alone
    AnnouncePress();
    return;
  }
  const uint32_t now = TIMER_GetCurrent();
  if (button == kPressed) {
    ServePress(now, state);
  } else {
    ServeRelease(now, state);
  }
}

}  // namespace

void hal::ServeKernelMessage(const KernelMessage& message, MonitorState& state) {
  constexpr uint16_t kButtonMessage = 0x3001;
  constexpr uint16_t kLinkMessage = 0x2000;
  if (message.header.nlmsg_type == kButtonMessage) {
    ServeButton(message, state);
  } else if (message.header.nlmsg_type == kLinkMessage) {
    ServeLinkChange(message);
  }
}

void BCM6838X_kernelEvent(void) {
  InitKernelMonitorFd();
  // Required: monitor-descriptor-0-ends
  if (kernelMonitorFd < 1) {
    return;
  }
  if (kernelMonitorFd >= FD_SETSIZE) {
    puts("Descriptor of the kernel monitor is too large for select");
    return;
  }
  MonitorState state = {0};
  while (true) {
    ServeDatagram(state);
  }
}
