/// @file
/// The command that shows the registers of a port's PHY, and its link.
#include <cstdint>
#include <string>

#include "base/text.h"
#include "commands/command_rows.h"
#include "language/failure.h"
#include "phy/register_text.h"
#include "report/link_report.h"
#include "report/text_table.h"
#include "session/session.h"

namespace onu {

namespace {

using virtual_onu::HexNumber;
using virtual_onu::Phy;

std::uint32_t PortNumber(Session& session, const Arguments& arguments) {
  const std::uint32_t port = arguments.number("N");
  const std::uint32_t ports = session.unit().interfaces().count();
  if (port < 1 || port > ports) {
    throw WrongUse("N: expected the number of a UNI port from 1 to " + std::to_string(ports) +
                   ", got " + Quote(arguments.word("N")));
  }
  return port;
}

Words BitsOf(std::uint32_t reg, std::uint16_t value) {
  const auto names = virtual_onu::RegisterBits(reg, value);
  return {names.begin(), names.end()};
}

/// Looking at a register does not clear what is latched in it. A register of the maker's is listed
/// for people when it holds something.
Result ShowPhy(Session& session, const Arguments& arguments) {
  const std::uint32_t port = PortNumber(session, arguments);
  const Phy& phy = session.unit().phy(port);
  Result result;
  result.json["port"] = virtual_onu::PortId::Uni(port).name();
  result.json["partner"] = phy.partner().present;
  result.json["link"] = LinkToJson(phy.link());
  Json& list = result.json["registers"] = Json::array();
  TextTable table({"register", "name", "value", "set"});
  for (std::uint32_t reg = 0; reg < virtual_onu::kMiiRegisters; ++reg) {
    const std::uint16_t value = phy.peek(reg);
    const std::string name(virtual_onu::RegisterName(reg));
    const Words bits = BitsOf(reg, value);
    list.push_back({{"register", reg}, {"name", name}, {"value", HexNumber(value)}, {"set", bits}});
    if (!name.empty() || value != 0) {
      table.add({std::to_string(reg), name.empty() ? "-" : name, HexNumber(value),
                 bits.empty() ? "-" : Join(bits, " ")});
    }
  }
  result.text = table.text("");
  return result;
}

}  // namespace

const Command kShowPhy = {{"show phy",
                           {{"N", ArgumentType::Number, "UNI port, from 1"}},
                           "lists the registers of a port's PHY",
                           {"show phy 1", "Init\nshow phy 2"}},
                          ShowPhy};

}  // namespace onu
