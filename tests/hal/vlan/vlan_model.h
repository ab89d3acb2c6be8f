/// @file
/// A plain model of the VLAN tables: what each operation returns, counts and says to the shell, and
/// what the device then holds. It knows nothing of how the library keeps its tables, but for the
/// slots of the action pool, whose places callers can tell apart.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace hal_test {

enum class VlanOperation : std::uint8_t {
  kAddAction,  ///< content, count
  kDelAction,  ///< direction, index
  kAddFlow,    ///< VID, tag count, references
  kDelFlow,    ///< VID, tag count
  kAddWan,     ///< port, WAN VID, LAN VID
  kDelWan,     ///< port, WAN VID, LAN VID
  kAddLan,     ///< port, VID
  kDelLan,     ///< port, VID
  kRefuseNext  ///< the driver refuses the next command
};

struct VlanStep {
  VlanOperation operation;
  std::array<std::uint32_t, 3> arguments;
};

std::string ToText(const VlanStep& step);

/// What a step shows.
struct VlanOutcome {
  std::int64_t result = 0;
  std::optional<std::int32_t> count = {};  ///< the reference count that was logged
  std::vector<std::string> shell = {};
  bool operator==(const VlanOutcome&) const = default;
};

std::string ToText(const VlanOutcome& outcome);

/// A VLAN action (`tags` is then 0) or a downstream flow in the device.
struct DeviceObject {
  bool isFlow;
  std::uint32_t where;  ///< direction of an action, class of a flow
  std::uint32_t index;
  std::uint32_t vid;
  std::uint32_t tags;
  bool operator==(const DeviceObject&) const = default;
};

/// Actions, then flows, in the order of place and index.
using DeviceContent = std::vector<DeviceObject>;

/// The VID and the direction of the action with that content number.
std::uint32_t ContentVid(std::uint32_t content);
std::uint32_t ContentDir(std::uint32_t content);

class VlanModel {
 public:
  /// `knowsFreeSlots` false leaves a behaviour out, so that the comparison can be seen to fail: a
  /// delete of downstream action 0 meets a free slot.
  explicit VlanModel(bool knowsFreeSlots = true) : knowsFreeSlots_(knowsFreeSlots) {}

  VlanOutcome apply(const VlanStep& step);
  [[nodiscard]] DeviceContent device() const;

 private:
  static constexpr std::size_t kCapacity = 256;
  static constexpr std::size_t kLanVidsPerPort = 512;

  struct ActionSlot {
    bool used = false;
    std::uint32_t content = 0;
    std::uint32_t index = 0;
    std::uint32_t count = 0;
  };
  struct SharedFlow {
    std::uint32_t index = 0;
    std::uint32_t count = 0;
  };
  using FlowKey = std::pair<std::uint32_t, std::uint32_t>;           // VID, tag count
  using LanVids = std::map<std::uint32_t, std::set<std::uint32_t>>;  // by port

  VlanOutcome addAction(std::uint32_t content, std::uint32_t count);
  VlanOutcome delAction(std::uint32_t dir, std::uint32_t index);
  VlanOutcome addFlow(const FlowKey& key, std::uint32_t count);
  VlanOutcome delFlow(const FlowKey& key);
  VlanOutcome addWan(std::uint32_t port, std::uint32_t wanVid, std::uint32_t lanVid);
  VlanOutcome delWan(std::uint32_t port, std::uint32_t wanVid, std::uint32_t lanVid);
  VlanOutcome addLan(std::uint32_t port, std::uint32_t vid);
  VlanOutcome delLan(std::uint32_t port, std::uint32_t vid);

  /// Whether the driver takes a command now.
  bool driverTakes();
  [[nodiscard]] bool isMet(const ActionSlot& slot, std::uint32_t dir, std::uint32_t index) const;

  bool knowsFreeSlots_;
  bool refusesNext_ = false;
  std::array<ActionSlot, kCapacity> pool_ = {};
  std::map<FlowKey, SharedFlow> flows_;
  std::map<std::uint32_t, LanVids> wan_;
  std::map<std::pair<std::uint32_t, std::uint32_t>, std::uint16_t> lan_;  // by port, VID
  std::array<std::map<std::uint32_t, std::uint32_t>, 2>
      deviceActions_;                                            // index to VID, by direction
  std::array<std::map<std::uint32_t, FlowKey>, 2> deviceFlows_;  // by class
};

}  // namespace hal_test
