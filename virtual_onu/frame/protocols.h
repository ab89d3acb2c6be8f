/// @file
/// The protocols that a built frame can carry.
#pragma once

#include "frame/parts.h"

namespace virtual_onu {

extern const FrameProtocol kPlainProtocol;  ///< no protocol: a payload behind an EtherType
extern const FrameProtocol kIpProtocol;     ///< a payload behind an IP header
extern const FrameProtocol kUdpProtocol;
extern const FrameProtocol kTcpProtocol;
extern const FrameProtocol kIcmpProtocol;
extern const FrameProtocol kIgmpProtocol;
extern const FrameProtocol kMldProtocol;
extern const FrameProtocol kDhcpProtocol;
extern const FrameProtocol kArpProtocol;
extern const FrameProtocol kStpProtocol;
extern const FrameProtocol kPppoeProtocol;

}  // namespace virtual_onu
