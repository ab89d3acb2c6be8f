/// @file
/// The platform calls that the library imports, answered by the current unit. Without a unit every
/// call fails in the way that its declaration names.
#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <strings.h>

#include <platform_chip.h>
#include <platform_clients.h>
#include <platform_config.h>
#include <platform_log.h>
#include <platform_vos.h>

#include "unit/unit.h"

using virtual_onu::ByteView;
using virtual_onu::Client;
using virtual_onu::PlatformConfig;
using virtual_onu::Unit;

namespace {

constexpr std::int32_t kNoUnit = -1;

/// A number of the unit's configuration, or 0 without a unit.
std::uint32_t Configured(std::uint32_t PlatformConfig::*number) {
  Unit* unit = Unit::Current();
  return unit == nullptr ? 0 : unit->platform().config().*number;
}

/// Gives a frame to a protocol client and notes it; without a client its result is configured.
std::uint32_t CallClient(const virtual_onu::ClientCall& call) {
  Unit* unit = Unit::Current();
  if (unit == nullptr) {
    return 0;
  }
  const std::string noted = std::string(virtual_onu::Name(call.client)) + "(" +
                            virtual_onu::ToHex(call.frame) + ", vid " + std::to_string(call.vid) +
                            ", port " + std::to_string(call.port) + ")";
  const std::uint32_t result =
      unit->callClient(call).value_or(unit->platform().config().clientResult);
  unit->trace().add(virtual_onu::CallEvent{noted, result});
  return result;
}

/// Gives a BPDU to the spanning-tree process, which gets it in a message: port, length, frame.
void CallSpanningTree(const Unit& unit, ByteView message) {
  constexpr std::size_t kHeader = 8;
  std::array<std::uint32_t, 2> words = {};
  if (message.size() < kHeader) {
    return;
  }
  std::memcpy(words.data(), message.data(), kHeader);
  const auto [port, length] = words;
  const ByteView frame = message.subspan(kHeader);
  unit.callClient({Client::Stp, frame.first(std::min<std::size_t>(length, frame.size())), 0, port});
}

/// The board driver's buffer, whose size nobody tells.
std::string DescribeBuffer(const char* buffer) {
  if (buffer == nullptr) {
    return "none";
  }
  return *buffer == 0 ? "\"\"" : "not empty";
}

}  // namespace

std::int32_t VOS_OpenDevice(const char* name) {
  Unit* unit = Unit::Current();
  if (unit == nullptr) {
    return kNoUnit;
  }
  const bool known = std::string_view(name) == "BrmgrDev";
  const bool opens = known && !unit->platform().config().openDeviceFails;
  const std::int32_t fd = opens ? unit->device().open() : kNoUnit;
  unit->trace().add(
      virtual_onu::CallEvent{std::string("VOS_OpenDevice(\"") + name + "\")", fd < 0 ? fd : 0});
  return fd;
}

std::int32_t VOS_TaskSpawn(const char* name, std::uint32_t a, std::uint32_t b, std::uint32_t c,
                           std::uint32_t d, void (*entry)(void), std::uint32_t arg) {
  Unit* unit = Unit::Current();
  return unit == nullptr ? kNoUnit : unit->spawnTask({name, {a, b, c, d}, arg, entry});
}

std::int32_t VOS_System(const char* format, ...) {
  Unit* unit = Unit::Current();
  if (unit == nullptr) {
    return kNoUnit;
  }
  std::va_list arguments;
  va_start(arguments, format);
  const std::int32_t result = unit->platform().runShell(format, arguments);
  va_end(arguments);
  unit->tellLinks();
  return result;
}

std::uint32_t VOS_MsgSend(std::uint32_t module, std::uint32_t code, void* message,
                          std::uint32_t length) {
  constexpr std::uint32_t kStpModule = 0xA3C0;
  constexpr std::uint32_t kReceivedBpdu = 0x1500;
  Unit* unit = Unit::Current();
  if (unit == nullptr) {
    return 1;
  }
  const ByteView bytes = {static_cast<const std::uint8_t*>(message), length};
  const std::uint32_t result = unit->platform().sendMessage(module, code, bytes);
  if (module == kStpModule && code == kReceivedBpdu) {
    CallSpanningTree(*unit, bytes);
  }
  return result;
}

void VOS_TaskDelay(std::uint32_t milliseconds) {
  if (Unit* unit = Unit::Current()) {
    unit->platform().delay(milliseconds);
  }
}

void VOS_Reboot(std::uint32_t reason) {
  if (Unit* unit = Unit::Current()) {
    unit->platform().reboot(reason);
  }
}

void VOS_ResetDefaultCfg(void) {
  if (Unit* unit = Unit::Current()) {
    unit->platform().resetDefaultConfig();
  }
}

std::int32_t VOS_StrNcaseCmp(const char* a, const char* b) {
  return strcasecmp(a, b);
}

std::uint32_t VOS_OntInfoGetMac(std::uint8_t* first, std::uint8_t* second) {
  Unit* unit = Unit::Current();
  return unit == nullptr ? 1 : unit->platform().macAddresses(first, second);
}

std::uint32_t LOG_Create(const char* name, std::uint32_t a, std::int32_t b) {
  Unit* unit = Unit::Current();
  return unit == nullptr ? LOG_ID_NONE : unit->platform().createLog(name, a, b);
}

void _LOG_Print(std::uint32_t id, std::uint32_t level, const char* file, std::uint32_t line,
                const char* format, ...) {
  if (Unit* unit = Unit::Current()) {
    std::va_list arguments;
    va_start(arguments, format);
    unit->platform().printLog(id, level, file, line, format, arguments);
    va_end(arguments);
  }
}

std::uint32_t TIMER_GetCurrent(void) {
  Unit* unit = Unit::Current();
  return unit == nullptr ? 0 : static_cast<std::uint32_t>(unit->clock().milliseconds());
}

std::uint32_t HC_GetEthPortNum(void) {
  Unit* unit = Unit::Current();
  return unit == nullptr ? 0 : unit->platform().ethPorts();
}
std::uint32_t HC_GetFePortNum(void) {
  return Configured(&PlatformConfig::fePorts);
}
std::uint32_t HC_GetGePortNum(void) {
  return Configured(&PlatformConfig::gePorts);
}
std::uint32_t HC_GetUplinkPortNo(void) {
  return Configured(&PlatformConfig::uplinkPort);
}

std::uint32_t SF_GetFeature(std::uint32_t feature) {
  Unit* unit = Unit::Current();
  if (unit == nullptr) {
    return 0;
  }
  const auto& features = unit->platform().config().features;
  const auto found = features.find(feature);
  return found == features.end() ? 0 : found->second;
}

std::uint32_t BCM6838X_sysGetBoardId(char* buffer, std::uint32_t length) {
  Unit* unit = Unit::Current();
  return unit == nullptr ? 1 : unit->platform().boardId(buffer, length);
}

std::uint32_t BCM6838X_sysGetFactoryMode(std::uint32_t* mode) {
  *mode = Configured(&PlatformConfig::factoryMode);
  return Unit::Current() == nullptr ? 1 : 0;
}

std::uint32_t IGMP_DispatchPacket(std::uint8_t* frame, std::uint32_t size, std::uint32_t vid,
                                  std::uint32_t srcPort) {
  return CallClient({Client::Igmp, {frame, size}, vid, srcPort});
}

std::uint32_t MLD_DispatchPacket(std::uint8_t* frame, std::uint32_t size, std::uint32_t vid,
                                 std::uint32_t srcPort) {
  return CallClient({Client::Mld, {frame, size}, vid, srcPort});
}

std::uint32_t DHCPRELAY_HandlePacket(std::uint8_t* frame, std::uint32_t length, std::uint32_t vlan,
                                     std::uint32_t port) {
  return CallClient({Client::Dhcp, {frame, length}, vlan, port});
}

std::uint32_t PPPOERELAY_HandlePacket(std::uint8_t* frame, std::uint32_t length, std::uint32_t vlan,
                                      std::uint32_t port) {
  return CallClient({Client::Pppoe, {frame, length}, vlan, port});
}

std::int32_t devCtl_boardIoctl(std::uint32_t request, std::uint32_t action, char* string,
                               std::uint32_t stringLength, std::uint32_t offset, char* buffer) {
  Unit* unit = Unit::Current();
  if (unit == nullptr) {
    return kNoUnit;
  }
  const std::string text(string, stringLength);
  const std::int32_t result = unit->platform().config().monitorRegisterResult;
  unit->trace().add(virtual_onu::CallEvent{"devCtl_boardIoctl(" + std::to_string(request) + ", " +
                                               std::to_string(action) + ", \"" + text +
                                               "\", offset " + std::to_string(offset) +
                                               ", buffer " + DescribeBuffer(buffer) + ")",
                                           result});
  return result;
}

// The prototype is the platform's.
// NOLINTBEGIN(readability-non-const-parameter)
std::int32_t bcm_port_jumbo_control_set(std::uint32_t unitNumber, std::uint32_t port,
                                        std::uint32_t* value) {
  Unit* unit = Unit::Current();
  if (unit == nullptr) {
    return kNoUnit;
  }
  unit->trace().add(
      virtual_onu::CallEvent{"bcm_port_jumbo_control_set(" + std::to_string(unitNumber) + ", " +
                                 std::to_string(port) + ", " + std::to_string(*value) + ")",
                             0});
  return 0;
}
// NOLINTEND(readability-non-const-parameter)
