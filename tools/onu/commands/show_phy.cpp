/// @file
/// The command that shows the registers of a port's PHY, and its link.
#include <cstdint>
#include <string>
#include <vector>

#include "base/text.h"
#include "commands/command_rows.h"
#include "language/failure.h"
#include "phy/register_text.h"
#include "report/link_report.h"
#include "report/report_table.h"
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

struct Register {
  std::uint32_t number;
  std::string name;  ///< empty for a register of the maker's
  std::uint16_t value;
};

Cell BitsOf(const Register& reg) {
  const auto names = virtual_onu::RegisterBits(reg.number, reg.value);
  return {names, names.empty() ? "-" : Join({names.begin(), names.end()}, " ")};
}

const Columns<Register> kRegisters = {
    {"register", "register", &Register::number},
    {"name", "name",
     [](const auto& reg) { return Cell(reg.name, reg.name.empty() ? "-" : reg.name); }},
    {"value", "value", [](const auto& reg) { return HexNumber(reg.value); }},
    {"set", "set", BitsOf},
};

/// Looking at a register does not clear what is latched in it. A register of the maker's is listed
/// for people when it holds something.
Result ShowPhy(Session& session, const Arguments& arguments) {
  const std::uint32_t port = PortNumber(session, arguments);
  const Phy& phy = session.unit().phy(port);
  std::vector<Register> registers;
  for (std::uint32_t number = 0; number < virtual_onu::kMiiRegisters; ++number) {
    registers.push_back({number, std::string(virtual_onu::RegisterName(number)), phy.peek(number)});
  }
  const Json all = Table(kRegisters, registers).json();
  std::erase_if(registers, [](const Register& reg) { return reg.name.empty() && reg.value == 0; });
  return Result()
      .add("port", virtual_onu::PortId::Uni(port).name())
      .add("partner", phy.partner().present)
      .add("link", LinkToJson(phy.link()))
      .add("registers", all)
      .add("", Table(kRegisters, registers));
}

}  // namespace

const Command kShowPhy = {{"show phy",
                           {{"N", ArgumentType::Number, "UNI port, from 1"}},
                           "lists the registers of a port's PHY",
                           {"show phy 1", "Init\nshow phy 2"}},
                          ShowPhy};

}  // namespace onu
