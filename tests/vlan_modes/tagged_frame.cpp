/// @file
/// From the notation to the frame and back.
#include "tagged_frame.h"

#include <memory>
#include <sstream>
#include <stdexcept>
#include <tins/dot1q.h>
#include <tins/ethernetII.h>
#include <tins/ip.h>
#include <tins/rawpdu.h>
#include <tins/udp.h>

namespace vlan_modes {
namespace {

constexpr const char* kUntagged = "untagged";
constexpr const char* kPayload = "what the tags surround";
constexpr std::uint16_t kTpidCustomer = 0x8100;
constexpr std::uint16_t kTpidService = 0x88A8;  // the library's own choice around a second tag

Tins::Dot1Q MakeTag(const std::string& text) {
  const std::size_t dot = text.find('.');
  if (dot == std::string::npos) {
    throw std::invalid_argument("expected VID.PRIORITY, got \"" + text + "\"");
  }
  Tins::Dot1Q tag(static_cast<std::uint16_t>(std::stoul(text.substr(0, dot))));
  tag.priority(static_cast<std::uint8_t>(std::stoul(text.substr(dot + 1))));
  return tag;
}

bool IsWhole(const Tins::EthernetII& frame) {
  const auto* const payload = frame.find_pdu<Tins::RawPDU>();
  return frame.find_pdu<Tins::UDP>() != nullptr && payload != nullptr &&
         std::string(payload->payload().begin(), payload->payload().end()) == kPayload;
}

/// A tag's TPID is the type of what stands before it.
bool AnnouncesTag(const Tins::PDU& pdu) {
  const auto* const tag = dynamic_cast<const Tins::Dot1Q*>(&pdu);
  const std::uint16_t type = tag != nullptr
                                 ? tag->payload_type()
                                 : dynamic_cast<const Tins::EthernetII&>(pdu).payload_type();
  return type == kTpidCustomer || type == kTpidService;
}

}  // namespace

std::vector<std::uint8_t> MakeFrame(const std::string& tags) {
  Tins::EthernetII frame("02:00:00:00:00:02", "02:00:00:00:00:01");
  std::istringstream list(tags == kUntagged ? "" : tags);
  for (std::string tag; std::getline(list, tag, '+');) {
    frame /= MakeTag(tag);
  }
  frame /= Tins::IP("192.0.2.2", "192.0.2.1") / Tins::UDP(9, 49152) / Tins::RawPDU(kPayload);
  return frame.serialize();
}

std::string ReadTags(const std::vector<std::uint8_t>& bytes) {
  Tins::EthernetII frame(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
  if (!IsWhole(frame)) {
    return "damaged";
  }
  std::string tags;
  const Tins::PDU* before = &frame;
  for (const Tins::PDU* pdu = frame.inner_pdu();
       const auto* tag = dynamic_cast<const Tins::Dot1Q*>(pdu); pdu = pdu->inner_pdu()) {
    if (!AnnouncesTag(*before)) {
      return "damaged";
    }
    tags += (tags.empty() ? "" : "+") + std::to_string(tag->id()) + "." +
            std::to_string(tag->priority());
    before = pdu;
  }
  return tags.empty() ? kUntagged : tags;
}

}  // namespace vlan_modes
