/// @file
/// The lines of the data-path shell "bs": VLAN objects, port attributes, port actions, schedulers.
#include "shell/bs_lines.h"

#include <array>
#include <cstdint>
#include <optional>

#include <brmgr_record.h>

#include "base/text.h"

namespace virtual_onu {
namespace {

using Arguments = std::span<const Argument>;

constexpr std::uint32_t kMinVid = 1;
constexpr std::uint32_t kMaxVid = 4095;
constexpr std::uint32_t kFirstScheduler = 11;
constexpr std::uint32_t kLastScheduler = 18;
constexpr std::uint32_t kMaxWeight = 255;

constexpr std::string_view kWan = "wan0";
constexpr std::string_view kLan = "lan";

/// Reversed boards number their four LAN ports from the other end.
constexpr std::uint32_t kReversedPorts = 4;

/// The UNI port behind a LAN port object; nothing when there is none.
std::optional<std::uint32_t> LanPort(const Workplace& place, std::string_view object) {
  if (!object.starts_with(kLan)) {
    return std::nullopt;
  }
  const auto index = ParseDecimal(object.substr(kLan.size()));
  if (!index || object != std::string(kLan) + std::to_string(*index)) {
    return std::nullopt;
  }
  const std::uint32_t ports = place.board.interfaces.count();
  if (place.board.portRevert == 0) {
    return *index < ports ? std::optional(*index + 1) : std::nullopt;
  }
  const bool exists = *index < kReversedPorts && kReversedPorts - *index <= ports;
  return exists ? std::optional(kReversedPorts - *index) : std::nullopt;
}

std::string NoPortObject(std::string_view object) {
  return "no port object " + std::string(object);
}

/// The object of that name, or null.
VlanObject* FindVlan(const Workplace& place, std::string_view name) {
  const auto found = place.objects.vlans.find(std::string(name));
  return found == place.objects.vlans.end() ? nullptr : &found->second;
}

std::string NoVlan(std::string_view name) {
  return "no VLAN object " + std::string(name);
}

std::string CreateVlan(const Workplace& place, Arguments arguments) {
  const std::string name(arguments[0].text);
  const std::string_view object = arguments[1].text;
  const auto uni = object == kWan ? std::optional<std::uint32_t>(0) : LanPort(place, object);
  if (!uni) {
    return NoPortObject(object);
  }
  if (!place.objects.vlans.try_emplace(name, VlanObject{std::string(object), *uni, {}}).second) {
    return "VLAN object " + name + " exists already";
  }
  return {};
}

std::string EnableVid(const Workplace& place, Arguments arguments) {
  VlanObject* const vlan = FindVlan(place, arguments[0].text);
  if (vlan == nullptr) {
    return NoVlan(arguments[0].text);
  }
  const std::uint32_t vid = arguments[1].number;
  if (vid < kMinVid || vid > kMaxVid) {
    return OutOfRange("VID " + std::to_string(vid), kMinVid, kMaxVid);
  }
  if (arguments[2].number != 0) {
    vlan->vids.insert(static_cast<std::uint16_t>(vid));
  } else {
    vlan->vids.erase(static_cast<std::uint16_t>(vid));
  }
  return {};
}

std::string DestroyVlan(const Workplace& place, Arguments arguments) {
  return place.objects.vlans.erase(std::string(arguments[0].text)) != 0 ? std::string()
                                                                        : NoVlan(arguments[0].text);
}

std::string SetTransparent(const Workplace& place, Arguments arguments) {
  const auto uni = LanPort(place, arguments[0].text);
  if (!uni) {
    return NoPortObject(arguments[0].text);
  }
  if (arguments[1].number != 0) {
    place.objects.transparentPorts.insert(*uni);
  } else {
    place.objects.transparentPorts.erase(*uni);
  }
  return {};
}

/// Arguments: class, flow, port object.
std::string ChangePortAction(const Workplace& place, Arguments arguments,
                             std::uint32_t vlanActionIndex) {
  const auto uni = LanPort(place, arguments[2].text);
  if (!uni) {
    return NoPortObject(arguments[2].text);
  }
  return place.board.device
      .setPortAction(arguments[0].number, {arguments[1].number, *uni}, vlanActionIndex)
      .reason;
}

std::string AttachAction(const Workplace& place, Arguments arguments) {
  return ChangePortAction(place, arguments, arguments[3].number);
}

/// Detaching where nothing is attached is done too: the attribute has its new value.
std::string DetachAction(const Workplace& place, Arguments arguments) {
  return ChangePortAction(place, arguments, BRMGR_INDEX_NONE);
}

/// Arguments: scheduler, queue, threshold, weight.
std::string SetScheduler(const Workplace& place, Arguments arguments) {
  const std::uint32_t index = arguments[0].number;
  const std::uint32_t weight = arguments[3].number;
  if (index < kFirstScheduler || index > kLastScheduler) {
    return OutOfRange("upstream scheduler " + std::to_string(index), kFirstScheduler,
                      kLastScheduler);
  }
  if (weight > kMaxWeight) {
    return OutOfRange("weight " + std::to_string(weight), 0, kMaxWeight);
  }
  place.objects.schedulers[index] = {
      .queueId = arguments[1].number, .dropThreshold = arguments[2].number, .weight = weight};
  return {};
}

constexpr std::array kLines = {
    LineRow{"bs /b/n vlan/name=$word port/index=$word", CreateVlan},
    LineRow{"bs /b/c vlan/name=$word vid_enable[$number]=$switch", EnableVid},
    LineRow{"bs /b/d vlan/name=$word", DestroyVlan},
    LineRow{"bs /b/c port/index=$word transparent=$switch", SetTransparent},
    LineRow{"bs /b/c ingress_class/dir=ds,index=$number port_action[{flow=$number,port=$word}]="
            "{{vlan_action={vlan_action/dir=ds,index=$number},drop=no}}",
            AttachAction},
    LineRow{"bs /b/c ingress_class/dir=ds,index=$number port_action[{flow=$number,port=$word}]="
            "{{vlan_action=null,drop=no}}",
            DetachAction},
    LineRow{"bs /b/c egress_tm/dir=us,index=$number rl={af=0}, "
            "queue_cfg[0]={queue_id=$number,weight=0,drop_alg=dt,drop_threshold=$number,"
            "red_high_threshold=0,red_low_threshold=0}, weight=$number",
            SetScheduler},
};

}  // namespace

std::span<const LineRow> BsLines() {
  return kLines;
}

}  // namespace virtual_onu
