/// @file
/// Frames, records and events from the words of a line.
#include "operations/packet_call.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include <bcm6838x_igmp.h>

#include "device/event_record.h"
#include "device/records.h"
#include "frame/summary.h"
#include "language/frame_input.h"
#include "report/record_report.h"
#include "report/verdict_report.h"
#include "unit/unit.h"

namespace onu {

namespace {

using virtual_onu::Bytes;
using virtual_onu::ByteView;
using Rows = std::span<const Argument>;

Bytes FrameOf(const Arguments& given) {
  return ReadFrame(given.words(kFrameArgument)).frame.bytes;
}

/// The frame in a record's data field, as far as it goes; its length is told whole.
template <std::size_t size>
std::uint32_t Put(const Bytes& frame, std::uint8_t (&data)[size]) {
  std::copy_n(frame.begin(), std::min(frame.size(), size), &data[0]);
  return static_cast<std::uint32_t>(frame.size());
}

/// The numbers of the rows in front of the frame.
std::vector<std::uint32_t> NumbersOf(const Arguments& given, Rows rows) {
  std::vector<std::uint32_t> numbers;
  for (const Argument& row : rows) {
    if (row.name != kFrameArgument) {
      numbers.push_back(given.number(row.name));
    }
  }
  return numbers;
}

CallOutcome Outcome(std::uint32_t value) {
  CallOutcome outcome;
  outcome.value = value;
  return outcome;
}

void ReportFrame(const Bytes& frame, CallOutcome& outcome) {
  outcome.outputs["frame"] = FrameToJson(frame);
  outcome.text +=
      "  frame " + virtual_onu::ToHex(frame) + " (" + virtual_onu::SummarizeFrame(frame) + ")\n";
}

BrmgrEvent EventOf(std::uint32_t type, std::uint32_t port, const Bytes& frame) {
  constexpr std::uint32_t kFlow = 0;
  return virtual_onu::MakeEvent(type, port, kFlow, frame);
}

/// Hands the event that a line describes to the device's reader.
void QueueEvent(const Arguments& given) {
  const BrmgrEvent event = EventOf(given.number("TYPE"), given.number("PORT"), FrameOf(given));
  const auto* const first = reinterpret_cast<const std::uint8_t*>(&event);
  virtual_onu::Unit::Current()->device().sendEvent(ByteView(first, sizeof(event)));
}

}  // namespace

Binding BindPredicate(FramePredicate predicate) {
  return {[predicate](const Arguments& given, Rows /*rows*/) {
            RdpaPkt packet = {};
            packet.size = Put(FrameOf(given), packet.data);
            return Outcome(predicate(packet.data, packet.size));
          },
          {}};
}

Binding BindChange(FrameChange change) {
  return {[change](const Arguments& given, Rows rows) {
            RdpaPkt packet = {};
            packet.size = Put(FrameOf(given), packet.data);
            CallOutcome outcome = Outcome(change(packet, NumbersOf(given, rows)));
            const std::size_t length = std::min<std::size_t>(packet.size, sizeof(packet.data));
            ReportFrame(Bytes(packet.data, packet.data + length), outcome);
            return outcome;
          },
          {}};
}

Binding BindRelay(std::uint32_t (*send)(const RelayPkt* record)) {
  return {[send](const Arguments& given, Rows /*rows*/) {
            RelayPkt record = {};
            record.desPort = given.number("port");
            record.length = Put(FrameOf(given), record.data);
            return Outcome(send(&record));
          },
          {}};
}

Binding BindEvent(std::uint32_t (*take)(const BrmgrEvent* event), std::uint32_t type) {
  return {[take, type](const Arguments& given, Rows /*rows*/) {
            const BrmgrEvent event = EventOf(type, given.number("port"), FrameOf(given));
            return Outcome(take(&event));
          },
          {}};
}

Binding BindGetTag() {
  return {[](const Arguments& given, Rows /*rows*/) {
            RdpaPkt packet = {};
            Put(FrameOf(given), packet.data);
            std::uint16_t vid = 0;
            std::uint16_t priority = 0;
            CallOutcome outcome = Outcome(BCM6838X_GetTag(packet.data, &vid, &priority));
            outcome.outputs["vid"] = vid;
            outcome.outputs["pri"] = priority;
            outcome.text =
                "  vid = " + std::to_string(vid) + "\n  pri = " + std::to_string(priority) + "\n";
            return outcome;
          },
          {}};
}

Binding BindDispatchIgmpPacket() {
  return {[](const Arguments& given, Rows /*rows*/) {
            const Bytes frame = FrameOf(given);
            return Outcome(BCM6838X_DispatchIgmpPacket(
                frame.data(), static_cast<std::uint32_t>(frame.size()), 0, given.number("port")));
          },
          {}};
}

Binding BindSendPacket() {
  return {
      [](const Arguments& given, Rows /*rows*/) {
        const Bytes frame = FrameOf(given);
        return Outcome(BCM6838X_SendPacket(frame.data(), static_cast<std::uint32_t>(frame.size()),
                                           0, 0, given.number("port")));
      },
      {}};
}

Binding BindRdpaSendIgmpPkt() {
  return {[](const Arguments& given, Rows /*rows*/) {
            RdpaPkt packet = {};
            packet.size = Put(FrameOf(given), packet.data);
            packet.desPort = given.number("port");
            return Outcome(BCM6838X_RdpaSendIgmpPkt(&packet));
          },
          {}};
}

Binding BindGetEvent() {
  return {[](const Arguments& given, Rows /*rows*/) {
            QueueEvent(given);
            BrmgrEvent event = {};
            CallOutcome outcome = Outcome(BCM6838X_GetEvent(&event));
            const auto* const first = reinterpret_cast<const std::uint8_t*>(&event);
            const Bytes bytes(first, first + offsetof(BrmgrEvent, data));
            const virtual_onu::RecordInfo& record = *virtual_onu::FindRecord("BrmgrEvent");
            outcome.outputs["event"] = FieldsToJson(record, bytes);
            outcome.text = "  " + RecordToText(record, bytes) + "\n";
            return outcome;
          },
          {}};
}

Binding BindCapturePacket() {
  return {[](const Arguments& given, Rows /*rows*/) {
            QueueEvent(given);
            return Outcome(BCM6838X_CapturePacket());
          },
          {}};
}

}  // namespace onu
