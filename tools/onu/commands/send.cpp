/// @file
/// The command that offers frames to the data path.
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "commands/command_rows.h"
#include "datapath/outcome.h"
#include "frame/summary.h"
#include "language/frame_input.h"
#include "report/packet_report.h"
#include "report/report_table.h"
#include "report/verdict_report.h"
#include "session/port_argument.h"
#include "session/session.h"

namespace onu {

namespace {

using virtual_onu::Disposition;
using virtual_onu::PortId;
using virtual_onu::Verdict;

/// Offers one frame, notes it in the journal, and reports it.
Json Offer(Session& session, PortId port, const InputFrame& input, Verdict& verdict) {
  const virtual_onu::Bytes& bytes = input.frame.bytes;
  const Observation seen = session.observe([&] { verdict = session.unit().receive(port, bytes); });
  Json json = ReportVerdict(verdict).json;
  json["frame"] = FrameToJson(verdict.frame);
  json["event"] = EventOf(port, verdict).json;
  session.journal().add({"send", port.name(), virtual_onu::ToHex(bytes)}, json, seen.events);
  return json;
}

/// Where a frame goes: ports, the unit itself with the event that it becomes, or nowhere.
std::string Destination(PortId port, const Verdict& verdict) {
  const std::string event = EventOf(port, verdict).text;
  return DestinationOf(verdict) + (event.empty() ? "" : ", " + event);
}

/// What people read of a frame.
struct FrameRow {
  std::size_t number;
  std::string_view done;
  std::string_view outcome;
  std::string to;
  std::string frame;
};

const Columns<FrameRow> kFrames = {
    {"", "frame", &FrameRow::number},           {"", "done", &FrameRow::done},
    {"", "outcome", &FrameRow::outcome},        {"", "to", &FrameRow::to},
    {"", "frame as offered", &FrameRow::frame},
};

/// Writes the frame to the capture of each place that it left by.
void WriteCaptures(CaptureDirectory& captures, const Verdict& verdict, const timeval& time) {
  if (virtual_onu::Describe(verdict.outcome).disposition == Disposition::Trap) {
    captures.write("trap", {verdict.frame, time});
  }
  for (const virtual_onu::Delivery& delivery : verdict.deliveries) {
    captures.write(delivery.port.name(), {delivery.frame, time});
  }
  for (const virtual_onu::MirrorCopy& copy : verdict.copies) {
    if (copy.outcome == virtual_onu::Outcome::Mirrored) {
      captures.write(copy.port.name(), {copy.frame, time});
    }
  }
}

/// Counts frames by disposition.
struct Counts {
  Json json = {{"frames", 0}, {"forward", 0}, {"trap", 0}, {"drop", 0}};

  void add(Disposition disposition) {
    for (const std::string& member : {std::string("frames"), std::string(Name(disposition))}) {
      json[member] = json[member].get<std::size_t>() + 1;
    }
  }

  [[nodiscard]] std::string text() const {
    return json["frames"].dump() + (json["frames"] == 1 ? " frame: " : " frames: ") +
           json["forward"].dump() + " forwarded, " + json["trap"].dump() + " trapped, " +
           json["drop"].dump() + " dropped\n";
  }
};

Result SendFrames(Session& session, const Arguments& arguments) {
  const PortId port = PortArgument(session, arguments);
  const std::vector<InputFrame> frames = ReadFrames(arguments.words("FRAME"));
  std::optional<CaptureDirectory> captures;
  if (arguments.has("DIR")) {
    captures.emplace(arguments.word("DIR"));
  }

  Json list = Json::array();
  std::vector<FrameRow> rows;
  Counts counts;
  for (const InputFrame& input : frames) {
    Verdict verdict;
    Json json = Offer(session, port, input, verdict);
    json["source"] = input.source;
    list.push_back(json);
    const virtual_onu::OutcomeInfo& outcome = virtual_onu::Describe(verdict.outcome);
    counts.add(outcome.disposition);
    rows.push_back({list.size(), DispositionDone(outcome.disposition), outcome.name,
                    Destination(port, verdict) + CopiesOf(verdict),
                    virtual_onu::SummarizeFrame(input.frame.bytes)});
    if (captures) {
      WriteCaptures(*captures, verdict, input.frame.time);
    }
  }
  const std::size_t pending = session.unit().device().pendingEvents();
  Result result;
  result.add("port", port.name())
      .add("frames", std::move(list))
      .add("", Table(kFrames, rows), "no frames")
      .add("counts", counts.json, counts.text())
      .add("pending", pending, counts.json["trap"] == 0 ? "" : PendingToText(pending));
  if (captures) {
    result.add("captures", captures->finish());
  }
  return result;
}

}  // namespace

const Command kSend = {
    {"send",
     {kPort,
      kFrame,
      {"DIR", ArgumentType::Directory, "writes what left each port to captures there",
       Presence::Optional, "--out"}},
     "offers frames to the data path and tells what became of each",
     {"Init\nSetPortAdminState 1 1\nsend uni1 tests/data/dhcp.pcap",
      "Init\nSetPortAdminState 1 1\nsend uni1 tests/data/stp.pcap#1",
      "Init\nsend wan udp vlan 100 pcp 5 dport 67",
      "Init\nSetPortAdminState 1 1\nsend uni1 tests/data/stp.pcap --out captures"}},
    SendFrames,
    true};

}  // namespace onu
