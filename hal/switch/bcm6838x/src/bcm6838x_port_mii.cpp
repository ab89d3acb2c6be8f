/// @file
/// MII register access by the standard ioctls of a network interface.
#include "bcm6838x_port_mii.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <linux/mii.h>
#include <linux/sockios.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <bcm6838x_port.h>
#include <platform_log.h>

#include "hal_bcm6838x_log.h"

using namespace hal;

namespace {

/// Linux interface of each UNI port, from 1.
constexpr char kInterfaceNames[][IFNAMSIZ] = {"eth0", "eth1", "eth2", "eth3", "eth4"};

constexpr uint32_t kInterfaces = sizeof(kInterfaceNames) / sizeof(kInterfaceNames[0]);

/// What register 0 reads when no PHY answers.
constexpr int32_t kNoPhyControl = 0xFFFF;

static_assert(sizeof(mii_ioctl_data) <= sizeof(ifreq::ifr_ifru));

mii_ioctl_data LoadMii(const ifreq& request) {
  mii_ioctl_data mii = {};
  memcpy(&mii, &request.ifr_ifru, sizeof(mii));
  return mii;
}

void StoreMii(const mii_ioctl_data& mii, ifreq& request) {
  memcpy(&request.ifr_ifru, &mii, sizeof(mii));
}

/// Opens the socket and finds the interface and its PHY.
bool OpenInterface(uint32_t uni, MiiPort& port) {
  port = {};
  // Any other port leaves the name empty, so that the interface is not found.
  if (uni >= 1 && uni <= kInterfaces) {
    memcpy(port.request.ifr_name, kInterfaceNames[uni - 1], IFNAMSIZ);
  }
  port.socket = socket(AF_INET, SOCK_DGRAM, 0);
  if (port.socket < 0) {
    return false;
  }
  if (ioctl(port.socket, SIOCGIFINDEX, &port.request) < 0) {
    CloseMii(port);
    return false;
  }
  port.phy = et_get_phyid(port.socket, &port.request);
  return true;
}

void PrintFailure(const char* request, const ifreq& interface) {
  fprintf(stderr, "%s on %s failed: %s\n", request, interface.ifr_name, strerror(errno));
}

}  // namespace

int32_t et_get_phyid(int32_t socket, ifreq* ifr) {
  if (HAL_IS_NULL(ifr)) {
    return -1;
  }
  mii_ioctl_data mii = LoadMii(*ifr);
  mii.phy_id = 0;
  StoreMii(mii, *ifr);
  if (ioctl(socket, SIOCGMIIPHY, ifr) < 0) {
    return -1;
  }
  return LoadMii(*ifr).phy_id;
}

int32_t mdio_read(int32_t socket, ifreq* ifr, int32_t phy, int32_t reg) {
  constexpr int32_t kFlagShift = 24;
  if (HAL_IS_NULL(ifr)) {
    return 0;
  }
  mii_ioctl_data mii = LoadMii(*ifr);
  mii.phy_id = static_cast<uint16_t>(phy);
  mii.reg_num = static_cast<uint16_t>(reg);
  // The driver reads flag bits from here. The address keeps its sign: -1, no PHY, sets all of them.
  // Required: mii-flags-of-the-address
  mii.val_out = static_cast<uint16_t>(phy >> kFlagShift);
  StoreMii(mii, *ifr);
  if (ioctl(socket, SIOCGMIIREG, ifr) < 0) {
    // Required: failed-mii-read-is-0
    PrintFailure("SIOCGMIIREG", *ifr);
    return 0;
  }
  return LoadMii(*ifr).val_out;
}

MiiOpening hal::OpenMii(uint32_t uni, MiiPort& port) {
  if (!OpenInterface(uni, port)) {
    return MiiOpening::kNoInterface;
  }
  port.control = ReadMii(port, kMiiControl);
  port.status = ReadMii(port, kMiiStatus);
  if (port.control >= kNoPhyControl || port.status == 0) {
    CloseMii(port);
    return MiiOpening::kNoPhy;
  }
  return MiiOpening::kDone;
}

void hal::CloseMii(const MiiPort& port) {
  close(port.socket);
}

int32_t hal::ReadMii(MiiPort& port, int32_t reg) {
  return mdio_read(port.socket, &port.request, port.phy, reg);
}

void hal::WriteMii(MiiPort& port, int32_t reg, uint16_t value) {
  mii_ioctl_data mii = LoadMii(port.request);
  mii.phy_id = static_cast<uint16_t>(port.phy);
  mii.reg_num = static_cast<uint16_t>(reg);
  mii.val_in = value;
  StoreMii(mii, port.request);
  if (ioctl(port.socket, SIOCSMIIREG, &port.request) < 0) {
    PrintFailure("SIOCSMIIREG", port.request);
  }
}
