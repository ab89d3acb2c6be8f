/// @file
/// How the operations of the packet path are called: with a frame that a line gives, in the buffer
/// or record that the operation takes.
#pragma once

#include <cstdint>

#include <hal_bcm6838x.h>

#include "operations/binding.h"

namespace onu {

/// Name of the argument that holds the frame.
constexpr std::string_view kFrameArgument = "FRAME";

/// Looks at a frame: its bytes, with zeros behind them, and its length.
using FramePredicate = std::uint32_t (*)(const std::uint8_t* frame, std::uint32_t length);
Binding BindPredicate(FramePredicate predicate);

/// Changes a frame, which is reported afterwards. The numbers in front of the frame are passed on.
using FrameChange = std::uint32_t (*)(RdpaPkt& packet, std::span<const std::uint32_t> numbers);
Binding BindChange(FrameChange change);

/// Sends a frame, with a port in front of it, as a relay record.
Binding BindRelay(std::uint32_t (*send)(const RelayPkt* record));

/// Takes an event of a type, with a port in front of its frame.
Binding BindEvent(std::uint32_t (*take)(const BrmgrEvent* event), std::uint32_t type);

Binding BindGetTag();
Binding BindSendPacket();
Binding BindRdpaSendIgmpPkt();
Binding BindDispatchIgmpPacket();

/// Puts an event in front of the device's reader, then calls the operation.
Binding BindGetEvent();
Binding BindCapturePacket();

}  // namespace onu
