/// @file
/// The recording platform of the C tests.
#include "c_platform.h"

#include <linux/mii.h>
#include <linux/netlink.h>
#include <linux/sockios.h>
#include <net/if.h>
#include <stdarg.h>
#include <stdio.h>
#include <string.h>
#include <strings.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <brmgr_cmd.h>
#include <brmgr_record.h>
#include <platform_chip.h>
#include <platform_clients.h>
#include <platform_config.h>
#include <platform_log.h>
#include <platform_vos.h>

struct Platform g_platform = {.descriptor = PLATFORM_DESCRIPTOR, .monitorSocket = -1};
uint32_t g_PortRevert = 0;

void Note(const char* format, ...) {
  const size_t used = strlen(g_platform.journal);
  va_list arguments;
  va_start(arguments, format);
  vsnprintf(g_platform.journal + used, sizeof(g_platform.journal) - used, format, arguments);
  va_end(arguments);
}

/// The network interfaces "eth...", which share one PHY.
static int MiiRequest(unsigned long request, struct ifreq* packet) {
  struct mii_ioctl_data mii;
  memcpy(&mii, &packet->ifr_ifru, sizeof(mii));
  if (strncmp(packet->ifr_name, "eth", 3) != 0 || mii.reg_num >= PLATFORM_MII_REGISTERS) {
    return -1;
  }
  switch (request) {
    case SIOCGIFINDEX:
      return 0;
    case SIOCGMIIPHY:
      mii.phy_id = PLATFORM_PHY;
      break;
    case SIOCGMIIREG:
      mii.val_out = mii.phy_id == PLATFORM_PHY ? g_platform.mii[mii.reg_num] : UINT16_MAX;
      break;
    case SIOCSMIIREG:
      g_platform.mii[mii.reg_num] = mii.val_in;
      break;
    default:
      return -1;
  }
  memcpy(&packet->ifr_ifru, &mii, sizeof(mii));
  return 0;
}

int ioctl(int fd, unsigned long request, ...) {
  va_list arguments;
  va_start(arguments, request);
  void* argument = va_arg(arguments, void*);
  va_end(arguments);
  if (fd != g_platform.descriptor) {
    return MiiRequest(request, argument);
  }
  const BrmgrRequest* sent = argument;
  if (request != BRMGR_IOCTL_REQUEST || sent->cmd >= PLATFORM_COMMANDS) {
    return -1;
  }
  Note("command %u\n", (unsigned)sent->cmd);
  ++g_platform.count[sent->cmd];
  g_platform.cmd = sent->cmd;
  g_platform.len = sent->len;
  g_platform.flag = sent->flag;
  if (sent->buf != NULL) {
    memcpy(g_platform.record, sent->buf,
           sent->len < PLATFORM_RECORD_SIZE ? sent->len : PLATFORM_RECORD_SIZE);
  }
  const struct ReadBack* readBack = &g_platform.readBack;
  if (sent->flag == BRMGR_FLAG_READ_BACK && sent->cmd == readBack->cmd && sent->buf != NULL) {
    memcpy((unsigned char*)sent->buf + readBack->at, &readBack->word, sizeof(readBack->word));
  }
  return g_platform.ioctlResult;
}

static int IsMarker(const char* name) {
  return strcmp(name, "/var/config/switch_perf") == 0;
}

int access(const char* name, int type) {
  return IsMarker(name) && type == F_OK && g_platform.markerPresent ? 0 : -1;
}

int unlink(const char* name) {
  g_platform.unlinks += (uint32_t)IsMarker(name);
  return 0;
}

int socket(int domain, int type, int protocol) {
  return domain == AF_NETLINK ? g_platform.monitorSocket
                              : (int)syscall(SYS_socket, domain, type, protocol);
}

int bind(int fd, const struct sockaddr* addr, socklen_t len) {
  return fd == PLATFORM_SOCKET && addr->sa_family == AF_NETLINK && len == 12 ? 0 : -1;
}

int close(int fd) {
  g_platform.closes += fd == PLATFORM_SOCKET ? 1 : 0;
  return fd == PLATFORM_SOCKET ? 0 : (int)syscall(SYS_close, fd);
}

uint32_t LOG_Create(const char* name, uint32_t a, int32_t b) {
  return strcmp(name, "hal_bcm6838x") == 0 && a == 1000 && b == -1 ? PLATFORM_LOG_ID : LOG_ID_NONE;
}

void _LOG_Print(uint32_t id, uint32_t level, const char* file, uint32_t line, const char* format,
                ...) {
  (void)id;
  (void)level;
  (void)line;
  ++g_platform.logs;
  snprintf(g_platform.logFile, sizeof(g_platform.logFile), "%s", file);
  va_list arguments;
  va_start(arguments, format);
  vsnprintf(g_platform.logText, sizeof(g_platform.logText), format, arguments);
  va_end(arguments);
}

int32_t VOS_OpenDevice(const char* name) {
  return strcmp(name, "BrmgrDev") == 0 ? g_platform.descriptor : -1;
}

int32_t VOS_TaskSpawn(const char* name, uint32_t a, uint32_t b, uint32_t c, uint32_t d,
                      void (*entry)(void), uint32_t arg) {
  (void)name;
  (void)a;
  (void)b;
  (void)c;
  (void)d;
  (void)arg;
  ++g_platform.tasks;
  g_platform.taskEntry = entry;
  return 0;
}

int32_t VOS_System(const char* format, ...) {
  ++g_platform.shells;
  va_list arguments;
  va_start(arguments, format);
  vsnprintf(g_platform.shellText, sizeof(g_platform.shellText), format, arguments);
  va_end(arguments);
  return 0;
}

uint32_t VOS_MsgSend(uint32_t module, uint32_t code, void* message, uint32_t length) {
  (void)message;
  (void)length;
  ++g_platform.messages;
  g_platform.messageModule = module;
  g_platform.messageCode = code;
  return 0;
}

// The prototype is the platform's.
// NOLINTNEXTLINE(readability-non-const-parameter)
int32_t bcm_port_jumbo_control_set(uint32_t unit, uint32_t port, uint32_t* value) {
  (void)unit;
  g_platform.jumboPort = port;
  g_platform.jumboValue = *value;
  return 0;
}

uint32_t VOS_OntInfoGetMac(uint8_t* first, uint8_t* second) {
  static const uint8_t kFirst[] = {0x02, 0, 0, 0, 0, 0x01};
  static const uint8_t kSecond[] = {0x02, 0, 0, 0, 0, 0x02};
  memcpy(first, kFirst, sizeof(kFirst));
  memcpy(second, kSecond, sizeof(kSecond));
  return 0;
}

uint32_t BCM6838X_sysGetBoardId(char* buffer, uint32_t length) {
  snprintf(buffer, length, "board");
  return 0;
}

uint32_t HC_GetEthPortNum(void) {
  return PLATFORM_ETH_PORTS;
}

uint32_t HC_GetUplinkPortNo(void) {
  return 5;
}

uint32_t HC_GetFePortNum(void) {
  return PLATFORM_FE_PORTS;
}

uint32_t HC_GetGePortNum(void) {
  return PLATFORM_GE_PORTS;
}

uint32_t SF_GetFeature(uint32_t feature) {
  return g_platform.features != 0 ? g_platform.features : feature + 1;
}

uint32_t BCM6838X_sysGetFactoryMode(uint32_t* mode) {
  *mode = 0;
  return 0;
}

uint32_t TIMER_GetCurrent(void) {
  return 0;
}

void VOS_TaskDelay(uint32_t milliseconds) {
  Note("VOS_TaskDelay %u\n", (unsigned)milliseconds);
}

void VOS_Reboot(uint32_t reason) {
  Note("VOS_Reboot %u\n", (unsigned)reason);
}

void VOS_ResetDefaultCfg(void) {
  Note("VOS_ResetDefaultCfg\n");
}

int32_t VOS_StrNcaseCmp(const char* a, const char* b) {
  return strcasecmp(a, b);
}

// The prototype is the platform's.
// NOLINTBEGIN(readability-non-const-parameter)
int32_t devCtl_boardIoctl(uint32_t request, uint32_t action, char* string, uint32_t stringLength,
                          uint32_t offset, char* buffer) {
  return request == 0xC0184211 && action == 0 && *string == 0 && stringLength == 0 &&
                 offset == (uint32_t)getpid() && *buffer == 0
             ? 0
             : -1;
}
// NOLINTEND(readability-non-const-parameter)

static uint32_t Take(const char* client, uint32_t size, uint32_t vid, uint32_t port) {
  ++g_platform.clients;
  snprintf(g_platform.clientText, sizeof(g_platform.clientText), "%s %u %u %u", client,
           (unsigned)size, (unsigned)vid, (unsigned)port);
  return PLATFORM_CLIENT_RESULT;
}

// The prototypes are the platform's.
// NOLINTBEGIN(readability-non-const-parameter)
uint32_t IGMP_DispatchPacket(uint8_t* frame, uint32_t size, uint32_t vid, uint32_t srcPort) {
  (void)frame;
  return Take("IGMP", size, vid, srcPort);
}

uint32_t MLD_DispatchPacket(uint8_t* frame, uint32_t size, uint32_t vid, uint32_t srcPort) {
  (void)frame;
  return Take("MLD", size, vid, srcPort);
}

uint32_t DHCPRELAY_HandlePacket(uint8_t* frame, uint32_t length, uint32_t vlan, uint32_t port) {
  (void)frame;
  return Take("DHCP", length, vlan, port);
}

uint32_t PPPOERELAY_HandlePacket(uint8_t* frame, uint32_t length, uint32_t vlan, uint32_t port) {
  (void)frame;
  return Take("PPPOE", length, vlan, port);
}
// NOLINTEND(readability-non-const-parameter)
