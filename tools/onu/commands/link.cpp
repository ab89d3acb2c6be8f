/// @file
/// The command that plugs a link partner into a port, or out of it.
#include <algorithm>
#include <array>
#include <string>

#include "commands/command_rows.h"
#include "language/failure.h"
#include "report/link_report.h"
#include "session/port_argument.h"
#include "session/session.h"

namespace onu {

namespace {

using virtual_onu::Advertisement;
using virtual_onu::LinkMode;
using virtual_onu::LinkPartner;

/// The one mode that a partner advertises.
struct ModeRow {
  LinkMode mode;
  std::uint16_t base;
  std::uint16_t gigabit;
};

constexpr std::array<ModeRow, 6> kModes = {{
    {{10, false}, virtual_onu::kAbility10Half, 0},
    {{10, true}, virtual_onu::kAbility10Full, 0},
    {{100, false}, virtual_onu::kAbility100Half, 0},
    {{100, true}, virtual_onu::kAbility100Full, 0},
    {{1000, false}, 0, virtual_onu::kAdvertise1000Half},
    {{1000, true}, 0, virtual_onu::kAdvertise1000Full},
}};

std::uint16_t Combine(unsigned left, unsigned right) {
  return static_cast<std::uint16_t>(left | right);
}

/// A partner that negotiates: every mode, or the one that the arguments name.
LinkPartner PartnerOf(const Arguments& arguments) {
  LinkPartner partner;
  Advertisement& offer = partner.advertisement;
  if (arguments.has("SPEED")) {
    const LinkMode mode = {arguments.number("SPEED"), arguments.word("DUPLEX") == "full"};
    const ModeRow& row = *std::ranges::find(kModes, mode, &ModeRow::mode);
    offer = {Combine(virtual_onu::kSelector8023, row.base), row.gigabit};
  }
  if (arguments.has("PAUSE")) {
    offer.base = Combine(offer.base, virtual_onu::kAbilityPause);
  }
  return partner;
}

void Check(const Arguments& arguments) {
  const bool down = arguments.word("STATE") == "down";
  if (down && (arguments.has("SPEED") || arguments.has("PAUSE"))) {
    throw WrongUse("expected nothing behind \"down\": a port without a partner has no mode");
  }
  if (arguments.has("SPEED") && !arguments.has("DUPLEX")) {
    throw WrongUse("argument DUPLEX is missing: expected full or half behind the speed");
  }
}

std::string LinkText(const Json& link) {
  return link.is_null()
             ? "link down"
             : "link up, " + link["speed"].dump() + " Mbit/s " + link["duplex"].get<std::string>() +
                   " duplex, pause " + link["pause"].get<std::string>();
}

Result ChangeLink(Session& session, const Arguments& arguments) {
  const std::uint32_t uni = UniPortArgument(session, arguments);
  Check(arguments);
  Words words = {"link"};
  for (const char* name : {"PORT", "STATE", "SPEED", "DUPLEX", "PAUSE"}) {
    const Words given = arguments.words(name);
    words.insert(words.end(), given.begin(), given.end());
  }
  LinkPartner partner = PartnerOf(arguments);
  partner.present = arguments.word("STATE") == "up";
  virtual_onu::Phy& phy = session.unit().phy(uni);
  phy.setPartner(partner);
  const bool told = session.unit().tellLinks();
  session.noteChange(words);

  const Json link = LinkToJson(phy.link());
  return {{{"port", arguments.word("PORT")},
           {"partner", partner.present},
           {"link", link},
           {"told", told}},
          arguments.word("PORT") + ": " + (partner.present ? "partner, " : "no partner, ") +
              LinkText(link) + "\n"};
}

}  // namespace

const Command kLink = {
    {"link",
     {{"PORT", ArgumentType::UniPort, "whose cable"},
      {"STATE", ArgumentType::LinkState, "up plugs a link partner in, down unplugs it"},
      {"SPEED", ArgumentType::Speed, "the only speed that the partner offers; without it, all",
       Presence::Optional},
      {"DUPLEX", ArgumentType::Duplex, "the only duplex mode that the partner offers",
       Presence::Optional},
      {"PAUSE", ArgumentType::Flag, "the partner offers pause frames", Presence::Optional,
       "pause"}},
     "changes what a port's cable leads to: a partner that negotiates, or none; "
     "the kernel tells the library's task of a link that changes",
     {"link uni1 down\nGetPortLinkState 1", "link uni1 up 100 full\nGetPortNegResult 1",
      "link uni2 up pause\nshow ports"}},
    ChangeLink,
    true};

}  // namespace onu
