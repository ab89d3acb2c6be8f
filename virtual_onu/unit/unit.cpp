/// @file
/// Construction of the unit, and the pointer to the current one.
#include "unit/unit.h"

#include <atomic>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>

#include <platform_config.h>

#include "monitor/netlink_message.h"

std::uint32_t g_PortRevert = 0;

namespace virtual_onu {

namespace {

/// The only global of the virtual unit: where the C calls find it.
std::atomic<Unit*> currentUnit = nullptr;

std::filesystem::path MakeTemporaryDirectory() {
  std::string pattern = (std::filesystem::temp_directory_path() / "virtual-onu-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) {
    throw std::system_error(errno, std::generic_category(), "cannot create " + pattern);
  }
  return pattern;
}

ChipLimits WithPorts(ChipLimits limits, std::uint32_t uniPorts) {
  limits.uniPorts = uniPorts;
  return limits;
}

}  // namespace

Unit::Unit(UnitConfig config)
    : ownsDirectory_(config.directory.empty()),
      directory_(ownsDirectory_ ? MakeTemporaryDirectory() : std::move(config.directory)),
      trace_(clock_),
      device_(trace_, WithPorts(config.chip, config.platform.ethPorts)),
      monitor_(trace_),
      interfaces_(trace_, config.platform.ethPorts),
      shell_({device_, interfaces_, g_PortRevert}),
      platform_(std::move(config.platform), trace_, clock_, directory_),
      dataPath_(
          device_.tables(),
          {device_.portTables(), platform_.config().ethPorts,
           [this](std::uint32_t uni) { return interfaces_.phy(uni).passesFrames(); }},
          Limits(device_.qosTables(), clock_),
          MacBridge(device_.macTables(), device_.portTables(), clock_, device_.limits().macEntries),
          &device_.mcastGroups()),
      packetPath_(device_, dataPath_, trace_, [this] { return platform_.config().uplinkPort; }) {
  Unit* none = nullptr;
  if (!currentUnit.compare_exchange_strong(none, this)) {
    throw std::logic_error("a virtual unit exists already; there is one at a time");
  }
  g_PortRevert = platform_.config().portRevert;
  dataPath_.countInto(PortStatistics(
      [this](std::uint32_t uni) -> PortStatsRecord& { return device_.counters(uni); }));
  platform_.setShellRunner([this](std::string line) { return shell_.run(std::move(line)); });
  platform_.onTaskEnd([this] { monitor_.taskEnded(); });
  changedLinks();
}

std::int32_t Unit::spawnTask(Task task) {
  const KernelMonitor::Progress before = monitor_.progress();
  const std::int32_t result = platform_.spawnTask(std::move(task));
  if (result == 0 && platform_.config().runTasks) {
    monitor_.settle(before);
  }
  return result;
}

std::vector<Bytes> Unit::changedLinks() {
  const std::lock_guard lock(linkMutex_);
  toldLinks_.resize(interfaces_.count());
  std::vector<Bytes> messages;
  for (std::uint32_t index = 0; index < toldLinks_.size(); ++index) {
    const std::optional<Link> link = interfaces_.phy(index + 1).link();
    if (std::exchange(toldLinks_[index], link) != link) {
      messages.push_back(LinkMessage("eth" + std::to_string(index), link ? link->mode.speed : 0,
                                     link && link->mode.fullDuplex ? 1 : 0));
    }
  }
  return messages;
}

bool Unit::tellLinks() {
  bool told = false;
  for (const Bytes& message : changedLinks()) {
    told = monitor_.tell(message);
  }
  return told;
}

void Unit::onClientCall(ClientTaker taker) {
  const std::lock_guard lock(clientMutex_);
  clientTaker_ = std::move(taker);
}

std::optional<std::uint32_t> Unit::callClient(const ClientCall& call) const {
  ClientTaker taker;
  {
    const std::lock_guard lock(clientMutex_);
    taker = clientTaker_;
  }
  return taker ? std::optional(taker(call)) : std::nullopt;
}

void Unit::endTasks() {
  monitor_.end();
  platform_.joinTasks();
}

Unit::~Unit() {
  endTasks();
  currentUnit = nullptr;
  if (ownsDirectory_) {
    std::error_code ignored;
    std::filesystem::remove_all(directory_, ignored);
  }
}

Unit* Unit::Current() {
  return currentUnit;
}

}  // namespace virtual_onu
