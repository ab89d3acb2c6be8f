/// @file
/// The command that lists the frames that the library sent.
#include <vector>

#include "commands/command_rows.h"
#include "report/packet_report.h"
#include "report/report_table.h"
#include "session/session.h"

namespace onu {

namespace {

using virtual_onu::Transmission;

Result ShowTransmitted(Session& session, const Arguments& arguments) {
  std::vector<Transmission> sent = session.unit().transmissions();
  const std::size_t newest = arguments.optionalNumber("N").value_or(sent.size());
  if (newest < sent.size()) {
    sent.erase(sent.begin(), sent.end() - static_cast<std::ptrdiff_t>(newest));
  }
  return Result().add("transmitted", TransmissionTable(sent), kNoTransmission);
}

}  // namespace

const Command kShowTransmitted = {
    {"show transmitted",
     {{"N", ArgumentType::Number, "only the newest N frames", Presence::Optional}},
     "lists the frames that the library sent, with the port that each was for",
     {"Init\nSetPortAdminState 2 1\nSendPacket 2 tests/data/stp.pcap#1\nshow transmitted"}},
    ShowTransmitted};

}  // namespace onu
