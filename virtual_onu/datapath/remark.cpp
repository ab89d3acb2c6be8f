/// @file
/// The priorities before and behind a VLAN action.
#include "datapath/remark.h"

#include "frame/frame.h"

namespace virtual_onu {

std::optional<Remark> RemarkOf(const VlanActionRule& action, ByteView before, ByteView after) {
  if ((action.cmd & BRMGR_TAG_REPLACE_PRIORITY) == 0) {
    return std::nullopt;
  }
  FrameHeaders old;
  FrameHeaders changed;
  ParseFrame(before, old);
  ParseFrame(after, changed);
  if (old.tags.empty() || changed.tags.empty()) {
    return std::nullopt;
  }
  constexpr unsigned kDscpShift = 2;  // behind it stand the two bits of congestion notification
  Remark remark = {old.tags.front().pcp, changed.tags.front().pcp, std::nullopt};
  if (changed.tos) {
    remark.dscp = static_cast<std::uint8_t>(*changed.tos >> kDscpShift);
  }
  return remark;
}

}  // namespace virtual_onu
