/// @file
/// The types of the language itself.
#include "language/argument_type.h"

#include <algorithm>
#include <charconv>
#include <initializer_list>
#include <iterator>
#include <optional>

#include "base/text.h"
#include "datapath/port_id.h"
#include "device/records.h"
#include "frame/words.h"

namespace onu {

namespace {

std::optional<double> ReadFraction(const std::string& word) {
  double fraction = 0;
  const char* const end = word.data() + word.size();
  const auto [stop, error] = std::from_chars(word.data(), end, fraction);
  const bool valid = error == std::errc() && stop == end && fraction >= 0 && fraction <= 1;
  return valid ? std::optional(fraction) : std::nullopt;
}

/// "A:B:C"; nothing when a part is no number or the parts are not `least` to `most`.
std::optional<std::vector<std::uint32_t>> ReadNumbers(const std::string& word, std::size_t least,
                                                      std::size_t most) {
  std::vector<std::uint32_t> numbers;
  for (const std::string& part : SplitAt(word, ':')) {
    const auto number = ParseNumber(part);
    if (!number) {
      return {};
    }
    numbers.push_back(*number);
  }
  const bool valid = numbers.size() >= least && numbers.size() <= most;
  return valid ? std::optional(numbers) : std::nullopt;
}

std::optional<std::uint32_t> ReadCommandCode(const std::string& word) {
  if (const virtual_onu::CommandInfo* info = virtual_onu::FindCommand(std::string_view(word))) {
    return info->code;
  }
  return ParseNumber(word);
}

bool AcceptsFilled(const std::string& word) {
  return !word.empty();
}

bool AcceptsUniPort(const std::string& word) {
  const auto port = virtual_onu::ParsePort(word);
  return port && !port->isWan();
}

std::vector<Choice> CommandCodes() {
  constexpr std::string_view kPrefix = "BRMGR_CMD_";
  std::vector<Choice> choices;
  for (const virtual_onu::CommandInfo& info : virtual_onu::AllCommands()) {
    choices.push_back({info.name.substr(kPrefix.size()), "", info.text});
  }
  return choices;
}

std::vector<Choice> Frames() {
  std::vector<Choice> choices;
  for (const virtual_onu::FrameWord& word : virtual_onu::FrameWords()) {
    choices.push_back({std::string(word.word), std::string(word.argument), std::string(word.text)});
  }
  return choices;
}

/// Words that stand alone and need no explanation.
std::vector<Choice> Plain(std::initializer_list<const char*> words) {
  std::vector<Choice> choices;
  for (const char* word : words) {
    choices.push_back({word, "", ""});
  }
  return choices;
}

std::vector<Choice> Duplexes() {
  return Plain({"full", "half"});
}

std::vector<Choice> LinkStates() {
  return Plain({"up", "down"});
}

std::vector<Choice> Speeds() {
  return Plain({"10", "100", "1000"});
}

std::vector<Choice> Switches() {
  return Plain({"on", "off"});
}

template <std::vector<Choice> (*choices)()>
bool AcceptsChoice(const std::string& word) {
  const std::vector<Choice> all = choices();
  return std::ranges::find(all, word, &Choice::word) != all.end();
}

}  // namespace

constinit const ArgumentType ArgumentType::CommandCode = {
    "the name or the code of a command (FLOW_ADD, 100)",
    [](const std::string& word) { return ReadCommandCode(word).has_value(); }, CommandCodes,
    "Commands of the device"};

constinit const ArgumentType ArgumentType::Directory = {"a directory", AcceptsFilled, NoChoices};

constinit const ArgumentType ArgumentType::Duplex = {"full or half", AcceptsChoice<Duplexes>,
                                                     Duplexes};

constinit const ArgumentType ArgumentType::EntryName = {"the name of a command or an operation",
                                                        AcceptsFilled, NoChoices};

constinit const ArgumentType ArgumentType::FieldWord = {
    "FIELD=VALUE", [](const std::string& word) { return word.find('=') != std::string::npos; },
    NoChoices};

constinit const ArgumentType ArgumentType::File = {"a file", AcceptsFilled, NoChoices};

constinit const ArgumentType ArgumentType::Flag = {"nothing", AcceptsAll, NoChoices};

constinit const ArgumentType ArgumentType::Fraction = {
    "a number from 0 to 1", [](const std::string& word) { return ReadFraction(word).has_value(); },
    NoChoices};

constinit const ArgumentType ArgumentType::Frame = {
    "FILE.pcap, FILE.pcap#N, hexadecimal digits or the words of a frame", AcceptsAll, Frames,
    "Words of a frame"};

constinit const ArgumentType ArgumentType::Hex = {
    "pairs of hexadecimal digits",
    [](const std::string& word) { return virtual_onu::ParseHex(word).has_value(); }, NoChoices};

constinit const ArgumentType ArgumentType::Ip = {
    "an IPv4 or IPv6 address",
    [](const std::string& word) { return virtual_onu::ParseIp(word).has_value(); }, NoChoices};

constinit const ArgumentType ArgumentType::LinkState = {"up or down", AcceptsChoice<LinkStates>,
                                                        LinkStates};

constinit const ArgumentType ArgumentType::Mac = {
    "a MAC address such as 01:80:c2:00:00:00",
    [](const std::string& word) { return virtual_onu::ParseMac(word).has_value(); }, NoChoices};

constinit const ArgumentType ArgumentType::Number = {
    "a number from 0 to 4294967295",
    [](const std::string& word) { return ParseNumber(word).has_value(); }, NoChoices};

constinit const ArgumentType ArgumentType::Port = {
    "uni1 to uni32 or wan",
    [](const std::string& word) { return virtual_onu::ParsePort(word).has_value(); }, NoChoices};

constinit const ArgumentType ArgumentType::Speed = {"10, 100 or 1000", AcceptsChoice<Speeds>,
                                                    Speeds};

constinit const ArgumentType ArgumentType::StackedVlan = {
    "CVID:SVID or CVID:SVID:PARAM",
    [](const std::string& word) { return ReadNumbers(word, 2, 3).has_value(); }, NoChoices};

constinit const ArgumentType ArgumentType::Switch = {"on or off", AcceptsChoice<Switches>,
                                                     Switches};

constinit const ArgumentType ArgumentType::TranslatedVlan = {
    "LOCAL:NET, LOCAL:NET:UP or LOCAL:NET:UP:DOWN",
    [](const std::string& word) { return ReadNumbers(word, 2, 4).has_value(); }, NoChoices};

constinit const ArgumentType ArgumentType::UniPort = {"uni1 to uni32", AcceptsUniPort, NoChoices};

constinit const ArgumentType ArgumentType::Word = {"a word", AcceptsAll, NoChoices};

std::string Expected(const ArgumentType& type) {
  return std::string(type.expected);
}

std::vector<Choice> NoChoices() {
  return {};
}

bool AcceptsAll(const std::string& /*word*/) {
  return true;
}

Words ChoiceWords(const ArgumentType& type) {
  const std::vector<Choice> choices = type.choices();
  Words words;
  std::ranges::transform(choices, std::back_inserter(words), &Choice::word);
  return words;
}

double ParseFraction(const std::string& word) {
  return ReadFraction(word).value();
}

std::vector<std::uint32_t> ParseNumbers(const std::string& word) {
  return ReadNumbers(word, 0, word.size() + 1).value();
}

std::uint32_t ParseCommandCode(const std::string& word) {
  return ReadCommandCode(word).value();
}

}  // namespace onu
