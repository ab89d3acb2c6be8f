/// @file
/// The requests of the network stack that the unit serves.
#include "phy/interfaces.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <linux/mii.h>
#include <linux/sockios.h>
#include <net/if.h>
#include <string>
#include <utility>

#include "base/text.h"

namespace virtual_onu {
namespace {

constexpr std::string_view kPrefix = "eth";

/// Where the unit's interfaces begin among those of the machine, of which the first is the
/// loopback.
constexpr int kFirstIndex = 2;

/// A request at work. Handlers return 0 or an errno value.
struct Access {
  Interfaces& interfaces;
  Trace& trace;
  std::uint32_t uni;  ///< of the interface that was named
  ifreq request;

  [[nodiscard]] mii_ioctl_data mii() const {
    mii_ioctl_data data;
    std::memcpy(&data, &request.ifr_ifru, sizeof(data));
    return data;
  }
  void setMii(const mii_ioctl_data& data) { std::memcpy(&request.ifr_ifru, &data, sizeof(data)); }

  /// The PHY at an address of the bus, or null.
  [[nodiscard]] Phy* phyAt(std::uint32_t address) const {
    return address >= 1 && address <= interfaces.count() ? &interfaces.phy(address) : nullptr;
  }
};

int TellIndex(Access& access) {
  access.request.ifr_ifindex = kFirstIndex + static_cast<int>(access.uni) - 1;
  return 0;
}

int TellAddress(Access& access) {
  mii_ioctl_data data = access.mii();
  data.phy_id = static_cast<std::uint16_t>(access.uni);
  access.setMii(data);
  return 0;
}

int ReadRegister(Access& access) {
  mii_ioctl_data data = access.mii();
  if (data.reg_num >= kMiiRegisters) {
    return EINVAL;
  }
  Phy* const phy = access.phyAt(data.phy_id);
  data.val_out = phy != nullptr ? phy->read(data.reg_num) : kMiiNoAnswer;
  access.setMii(data);
  return 0;
}

int WriteRegister(Access& access) {
  const mii_ioctl_data data = access.mii();
  if (data.reg_num >= kMiiRegisters) {
    return EINVAL;
  }
  if (Phy* const phy = access.phyAt(data.phy_id)) {
    phy->write(data.reg_num, data.val_in);
  }
  return 0;
}

struct Request {
  unsigned long number;
  int (*serve)(Access& access);
};

constexpr std::array kRequests = {
    Request{SIOCGIFINDEX, TellIndex},
    Request{SIOCGMIIPHY, TellAddress},
    Request{SIOCGMIIREG, ReadRegister},
    Request{SIOCSMIIREG, WriteRegister},
};

const Request* FindRequest(unsigned long number) {
  const auto* const found = std::ranges::find(kRequests, number, &Request::number);
  return found == kRequests.end() ? nullptr : found;
}

std::string_view NameOf(const ifreq& request) {
  return {std::data(request.ifr_name), strnlen(std::data(request.ifr_name), IFNAMSIZ)};
}

/// Notes a write; reads are queries and leave no trace.
void NoteWrite(const Access& access, int error) {
  const mii_ioctl_data data = access.mii();
  access.trace.add(CallEvent{"mii " + std::string(NameOf(access.request)) + " reg " +
                                 std::to_string(data.reg_num) + " write " + HexNumber(data.val_in),
                             error == 0 ? 0 : -1});
}

}  // namespace

Interfaces::Interfaces(Trace& trace, std::uint32_t uniPorts) : trace_(trace), phys_(uniPorts) {}

std::optional<std::uint32_t> Interfaces::find(std::string_view name) const {
  if (!name.starts_with(kPrefix)) {
    return std::nullopt;
  }
  const std::string_view digits = name.substr(kPrefix.size());
  const std::optional<std::uint32_t> index = ParseDecimal(digits);
  // A leading zero would give one interface two names.
  if (!index || *index >= count() || std::to_string(*index) != digits) {
    return std::nullopt;
  }
  return *index + 1;
}

bool Interfaces::Knows(unsigned long request) {
  return FindRequest(request) != nullptr;
}

std::optional<int> Interfaces::ioctl(unsigned long request, void* argument) {
  const Request* const row = FindRequest(request);
  if (row == nullptr || argument == nullptr) {
    return std::nullopt;
  }
  Access access = {*this, trace_, 0, {}};
  std::memcpy(&access.request, argument, sizeof(access.request));
  const std::optional<std::uint32_t> uni = find(NameOf(access.request));
  if (!uni) {
    return std::nullopt;
  }
  access.uni = *uni;
  const bool refused = faults_.refuses(static_cast<std::uint32_t>(request));
  const int error = refused ? EIO : row->serve(access);
  if (request == SIOCSMIIREG) {
    NoteWrite(access, error);
  }
  if (error != 0) {
    errno = error;
    return -1;
  }
  std::memcpy(argument, &access.request, sizeof(access.request));
  return 0;
}

}  // namespace virtual_onu
