/// @file
/// What limits the traffic of a port: upstream policer with the line rate, downstream rate limit;
/// and the map from DSCP to priority.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include <bcm6838x_port.h>
#include <bcm6838x_qos.h>
#include <brmgr_cmd.h>
#include <brmgr_record.h>
#include <hal_bcm6838x.h>
#include <platform_log.h>

#include "bcm6838x_qos_internal.h"
#include "hal_bcm6838x_channel.h"
#include "hal_bcm6838x_log.h"
#include "hal_bcm6838x_ports.h"

using namespace hal;

namespace {

constexpr uint32_t kBitsPerUnit = 1000;

/// Line rate in bit/s of each media type.
constexpr uint32_t kLineRates[] = {1000000000, 1000000000, 100000000,
                                   100000000,  10000000,   10000000};

// Required: policer-rate-0-in-range
bool IsRateInRange(uint32_t cir) {
  constexpr uint32_t kMinRate = 64000;
  // Required: policer-rate-wraps
  return cir * kBitsPerUnit - 1 >= kMinRate - 1;
}

void SendPolicer(uint32_t port, uint32_t cir) {
  // Required: policer-burst-fixed
  constexpr uint32_t kBurst = 501536;
  PolicerCfg record = {};
  record.rate = cir * kBitsPerUnit;
  record.burst = kBurst;
  record.word12 = 1;
  record.word16 = 1;
  record.port = port;
  Send<BRMGR_CMD_POLICER_ADD>(record);
}

void SendPolicerDelete(uint32_t port) {
  PolicerDel record = {1, port};
  Send<BRMGR_CMD_POLICER_DEL>(record);
}

/// Sets the policer, or removes it when `cir` is 0. One that is set is deleted in either case.
void SetPolicer(uint32_t port, uint32_t cir) {
  uint32_t& installed = g_portPolicerCfg[port - 1];
  // Required: policer-made-anew
  if (installed != 0) {
    SendPolicerDelete(port);
  }
  if (cir != 0) {
    SendPolicer(port, cir);
  }
  installed = cir != 0 ? 1 : 0;
}

void ReportLineRate(uint32_t port) {
  uint32_t type = BCM6838X_MEDIA_DOWN;
  BCM6838X_GetMediaType(port, &type);
  if (type >= BCM6838X_MEDIA_DOWN) {
    return;
  }
  PortRateRecord record = {DevicePort(port), kLineRates[type]};
  Send<BRMGR_CMD_PORT_STATE>(record);
}

}  // namespace

// Required: limits-succeed
uint32_t BCM6838X_SetQosUsPolicer(const QosUsPolicerCfg* cfg) {
  if (HAL_IS_NULL(cfg)) {
    return BCM6838X_OK;
  }
  // Required: policer-logs-ebs-first
  HAL_LOG_HERE(LOG_LEVEL_TRACE, "%s(%d) port=%d, cir = %d, ebs = %d, cbs = %d\r\n",
               AsInt(cfg->port), AsInt(cfg->cir), AsInt(cfg->ebs), AsInt(cfg->cbs));
  if (!IsRateInRange(cfg->cir)) {
    printf("BCM6838X_SetQosUsPolicer(), error: cir[%d] is out of range!\r\n", AsInt(cfg->cir));
  } else if (!IsInTables(cfg->port)) {
    HAL_LOG_HERE(LOG_LEVEL_INVALID, "%s(%d), port=%d is out of range\r\n", AsInt(cfg->port));
  } else {
    SetPolicer(cfg->port, cfg->cir);
  }
  // Required: refused-rate-still-reports-line
  ReportLineRate(cfg->port);
  return BCM6838X_OK;
}

uint32_t BCM6838X_SetQosDsRateLimit(const QosDsRateLimitCfg* cfg) {
  if (HAL_IS_NULL(cfg)) {
    return BCM6838X_OK;
  }
  // Required: ds-limit-index-from-0
  DsRateLimitRecord record = {cfg->port + 1, cfg->rate * kBitsPerUnit};
  Send<BRMGR_CMD_DS_RATE_LIMIT>(record);
  return BCM6838X_OK;
}

uint32_t BCM6838X_StreamSetDscpMap(uint32_t port, const uint8_t* map) {
  if (HAL_IS_NULL(map)) {
    return BCM6838X_OK;
  }
  DscpMapRecord record = {};
  record.port = BCM6838X_StreamPortIndexUniToRdpa(port);
  memcpy(record.priority, map, sizeof(record.priority));
  Send<BRMGR_CMD_DSCP_MAP>(record);
  return BCM6838X_OK;
}
