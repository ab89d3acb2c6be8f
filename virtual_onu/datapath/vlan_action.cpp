/// @file
/// The tag operations of a VLAN action.
#include "datapath/vlan_action.h"

#include <array>
#include <cstdint>

#include "base/text.h"
#include "frame/frame.h"

namespace virtual_onu {
namespace {

constexpr std::uint16_t kVidMask = 0xFFF;
constexpr std::uint8_t kPcpMask = 0x7;

VlanTag TagOf(const VlanTagSpec& spec) {
  return {.tpid = spec.tpid != 0 ? spec.tpid : kTpidCustomer,
          .pcp = static_cast<std::uint8_t>(spec.pbit & kPcpMask),
          .dei = false,
          .vid = static_cast<std::uint16_t>(spec.vid & kVidMask)};
}

bool Pop(Bytes& frame, const VlanTag& /*tag*/) {
  return PopTag(frame);
}

bool Push(Bytes& frame, const VlanTag& tag) {
  PushTag(frame, tag);
  return true;
}

bool ReplaceVid(Bytes& frame, const VlanTag& tag) {
  return SetOuterVid(frame, tag.vid);
}

bool ReplacePriority(Bytes& frame, const VlanTag& tag) {
  return SetOuterPcp(frame, tag.pcp);
}

std::string TagText(const VlanTag& tag) {
  const std::array<std::uint8_t, 2> tpid = {static_cast<std::uint8_t>(tag.tpid >> 8U),
                                            static_cast<std::uint8_t>(tag.tpid)};
  return "tpid 0x" + ToHex(tpid) + " vid " + std::to_string(tag.vid) + " pcp " +
         std::to_string(tag.pcp);
}

struct Operation {
  std::uint32_t bit;
  bool (*apply)(Bytes& frame, const VlanTag& tag);  ///< false: there was no tag to work on
  std::string (*text)(const VlanTag& tag);
};

// Required: action-operations-in-order
constexpr std::array kOperations = {
    Operation{BRMGR_TAG_POP, Pop,
              [](const VlanTag& /*tag*/) { return std::string("pop the outer tag"); }},
    Operation{BRMGR_TAG_PUSH, Push,
              [](const VlanTag& tag) { return "push a tag with " + TagText(tag); }},
    Operation{BRMGR_TAG_REPLACE_VID, ReplaceVid,
              [](const VlanTag& tag) { return "set the outer vid to " + std::to_string(tag.vid); }},
    Operation{BRMGR_TAG_REPLACE_PRIORITY, ReplacePriority,
              [](const VlanTag& tag) { return "set the outer pcp to " + std::to_string(tag.pcp); }},
};

}  // namespace

void ApplyVlanAction(const VlanActionRule& action, Bytes& frame, std::vector<std::string>* steps) {
  const VlanTag tag = TagOf(action.tag[0]);
  std::uint32_t unknown = action.cmd;
  for (const Operation& operation : kOperations) {
    if ((action.cmd & operation.bit) == 0) {
      continue;
    }
    unknown &= ~operation.bit;
    const bool done = operation.apply(frame, tag);
    if (steps) {
      steps->push_back(operation.text(tag) + (done ? "" : ": no tag, nothing changed"));
    }
  }
  if (steps && unknown != 0) {
    steps->push_back("unknown operation " + HexNumber(unknown) + ": nothing changed");
  }
}

}  // namespace virtual_onu
