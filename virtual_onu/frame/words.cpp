/// @file
/// Reading a frame in words: taking each word, then checking that they go together.
#include "frame/words.h"

#include <algorithm>
#include <array>

#include "base/text.h"
#include "frame/builder.h"
#include "frame/protocols.h"
#include "frame/word_rules.h"

namespace virtual_onu {
namespace {

/// Nothing when all is well.
using Error = std::optional<std::string>;

/// A person's word as it can stand in a line: short, and without control characters.
std::string Quoted(std::string_view word) {
  constexpr std::size_t kLongest = 40;
  std::string text = "\"";
  for (const char character : word.substr(0, kLongest)) {
    text += character < ' ' || character > '~' ? '?' : character;
  }
  return text + (word.size() > kLongest ? "...\"" : "\"");
}

std::string At(std::size_t position, std::string_view word) {
  return "word " + std::to_string(position) + " " + Quoted(word) + ": ";
}

std::string At(const WordUse& use) {
  return At(use.position, use.rule->help.word);
}

std::string AllWords() {
  std::string text;
  for (const WordRule& rule : WordRules()) {
    text += text.empty() ? "" : ", ";
    text += rule.help.word;
  }
  return text;
}

const WordRule* FindRule(std::string_view word) {
  const std::span<const WordRule> rules = WordRules();
  const auto rule = std::find_if(rules.begin(), rules.end(), [word](const WordRule& candidate) {
    return candidate.help.word == word;
  });
  return rule != rules.end() ? &*rule : nullptr;
}

const WordUse* FindUse(const FrameDraft& draft, const WordRule& rule) {
  const auto use = std::find_if(draft.uses.begin(), draft.uses.end(),
                                [&rule](const WordUse& other) { return other.rule == &rule; });
  return use != draft.uses.end() ? &*use : nullptr;
}

/// Refuses a word that may not stand where it stands.
Error CheckPlace(const FrameDraft& draft, const WordRule& rule) {
  if (rule.need == Need::TagBefore && draft.parts.tags.empty()) {
    return "expected a vlan or svlan before it";
  }
  if (rule.protocol && draft.parts.protocol) {
    return "expected one protocol, the frame is " + std::string(draft.parts.protocol->name) +
           " already";
  }
  const WordUse* before = FindUse(draft, rule);
  if (before && !rule.repeatable) {
    return "expected once, stands at word " + std::to_string(before->position) + " already";
  }
  return std::nullopt;
}

/// Takes the word at the front of `words`, with its argument.
/// @param[in,out] words  what is left to read
Error TakeWord(FrameDraft& draft, std::size_t position, std::span<const std::string>& words) {
  const std::string& word = words.front();
  words = words.subspan(1);
  const WordRule* rule = FindRule(word);
  if (!rule) {
    return "expected one of " + AllWords();
  }
  if (Error error = CheckPlace(draft, *rule)) {
    return error;
  }
  draft.uses.push_back({rule, position, std::nullopt});
  if (rule->protocol) {
    draft.parts.protocol = rule->protocol;
    return std::nullopt;
  }
  std::string_view argument;
  if (!rule->help.argument.empty()) {
    if (words.empty()) {
      return "expected " + std::string(rule->expected) + ", got nothing";
    }
    argument = words.front();
    words = words.subspan(1);
  }
  if (!rule->apply(draft, argument)) {
    return "expected " + std::string(rule->expected) + ", got " + Quoted(argument);
  }
  return std::nullopt;
}

Error TakeWords(FrameDraft& draft, std::span<const std::string> words) {
  for (std::span<const std::string> rest = words; !rest.empty();) {
    const std::size_t position = words.size() - rest.size() + 1;
    if (const Error error = TakeWord(draft, position, rest)) {
      return At(position, words[position - 1]) + *error;
    }
  }
  return std::nullopt;
}

struct NeedRule {
  Need need;
  bool (*met)(const FrameProtocol& protocol);
  std::string_view expected;
};

constexpr std::array kNeeds = {
    NeedRule{Need::Ip, [](const FrameProtocol& protocol) { return protocol.overIp(); },
             "expected a frame with an IP header"},
    NeedRule{Need::Addresses, [](const FrameProtocol& protocol) { return protocol.hasAddresses; },
             "expected a frame with an IP header or arp"},
    NeedRule{Need::Ports, [](const FrameProtocol& protocol) { return protocol.hasPorts; },
             "expected udp, tcp or dhcp in the frame"},
    NeedRule{Need::Payload, [](const FrameProtocol& protocol) { return protocol.hasPayload; },
             "expected a protocol that carries a payload"},
};

/// Without the name of a protocol the frame is an IP packet if a word speaks of IP.
void ChooseProtocol(FrameDraft& draft) {
  if (draft.parts.protocol) {
    return;
  }
  const bool ip = std::any_of(draft.uses.begin(), draft.uses.end(), [](const WordUse& use) {
    return use.rule->need == Need::Ip || use.rule->need == Need::Addresses;
  });
  draft.parts.protocol = ip ? &kIpProtocol : &kPlainProtocol;
}

Error CheckNeeds(const FrameDraft& draft) {
  for (const WordUse& use : draft.uses) {
    for (const NeedRule& rule : kNeeds) {
      if (rule.need == use.rule->need && !rule.met(*draft.parts.protocol)) {
        return At(use) + std::string(rule.expected);
      }
    }
  }
  return std::nullopt;
}

/// The version that the protocol goes with; nothing when it goes with both.
std::optional<std::uint32_t> VersionOf(const FrameProtocol& protocol) {
  if (protocol.overIpv4 && protocol.overIpv6) {
    return std::nullopt;
  }
  return protocol.overIpv6 ? 6 : 4;
}

Error ChooseVersion(FrameDraft& draft) {
  std::optional<std::uint32_t> version = VersionOf(*draft.parts.protocol);
  for (const WordUse& use : draft.uses) {
    if (version && use.version && *use.version != *version) {
      return At(use) + "expected IPv" + std::to_string(*version) + " as in the rest of the frame";
    }
    version = version ? version : use.version;
  }
  draft.parts.ipVersion = version.value_or(4);
  return std::nullopt;
}

/// The finished frame, padded to its length.
FrameOrError Finish(const FrameDraft& draft) {
  const WordRule* lengthRule = FindRule("length");
  const WordUse* length = lengthRule ? FindUse(draft, *lengthRule) : nullptr;
  const std::size_t wanted = draft.length;
  Bytes frame = AssembleFrame(draft.parts);
  if (length && wanted < frame.size()) {
    return At(*length) + "expected at least " + std::to_string(frame.size()) +
           ", the length of the frame without padding, got \"" + std::to_string(wanted) + "\"";
  }
  if (frame.size() > kMaxFrameLength) {
    return "frame: expected at most " + std::to_string(kMaxFrameLength) + " bytes, got " +
           std::to_string(frame.size());
  }
  frame.resize(std::max(frame.size(), wanted));
  return frame;
}

bool IsHexDigits(std::string_view word) {
  return !word.empty() &&
         word.find_first_not_of("0123456789abcdefABCDEF") == std::string_view::npos;
}

FrameOrError FrameOfDigits(std::string_view digits) {
  constexpr std::size_t kFewest = 2 * kEthernetHeaderSize;
  const std::optional<Bytes> frame = ParseHex(digits);
  if (!frame || digits.size() < kFewest || frame->size() > kMaxFrameLength) {
    return At(1, digits) +
           "expected an even number of hexadecimal digits, at least 28 and at most 18432, got " +
           std::to_string(digits.size());
  }
  return *frame;
}

std::vector<FrameWord> HelpOfRules() {
  std::vector<FrameWord> help;
  for (const WordRule& rule : WordRules()) {
    help.push_back(rule.help);
  }
  return help;
}

}  // namespace

std::span<const FrameWord> FrameWords() {
  static const std::vector<FrameWord> words = HelpOfRules();
  return words;
}

FrameOrError BuildFrame(std::span<const std::string> words) {
  if (words.empty()) {
    return "frame: expected words such as \"udp vlan 100 dport 67\", or hexadecimal digits";
  }
  if (words.size() == 1 && IsHexDigits(words.front())) {
    return FrameOfDigits(words.front());
  }
  FrameDraft draft;
  if (const Error error = TakeWords(draft, words)) {
    return *error;
  }
  ChooseProtocol(draft);
  if (const Error error = CheckNeeds(draft)) {
    return *error;
  }
  if (const Error error = ChooseVersion(draft)) {
    return *error;
  }
  return Finish(draft);
}

}  // namespace virtual_onu
