/// @file
/// Writing events as lines.
#include "support/left.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <iterator>

#include "device/records.h"

namespace hal_test {

namespace {

using virtual_onu::CallEvent;
using virtual_onu::CommandEvent;
using virtual_onu::CommandInfo;
using virtual_onu::LogEvent;
using virtual_onu::MessageEvent;
using virtual_onu::ShellEvent;

/// The record as the target would send it; records without a description are shown as they are.
virtual_onu::Bytes Wire(const CommandEvent& event) {
  const CommandInfo* command = virtual_onu::FindCommand(event.code);
  return command == nullptr || command->record == nullptr
             ? event.before
             : virtual_onu::ToWire(*command->record, event.before);
}

std::string Line(const CommandEvent& event) {
  std::string line = "command " + virtual_onu::CommandName(event.code) + " len " +
                     std::to_string(event.length) + " flag " + std::to_string(event.flag);
  return event.before.empty()
             ? line
             : line + " " + ShowRecord(virtual_onu::CommandName(event.code), Wire(event));
}

bool IsPartOfWord(const std::string& text, std::size_t place) {
  return place < text.size() && (std::isalnum(text[place]) != 0 || text[place] == '_');
}

/// The text with the first such word replaced.
std::string WithWord(std::string text, const std::string& word, const std::string& replacement) {
  std::size_t place = text.find(word);
  while (place != std::string::npos && ((place > 0 && IsPartOfWord(text, place - 1)) ||
                                        IsPartOfWord(text, place + word.size()))) {
    place = text.find(word, place + 1);
  }
  return place == std::string::npos ? text : text.replace(place, word.size(), replacement);
}

std::string Line(const LogEvent& event) {
  return "log " + std::to_string(event.level) + " " + event.file + " " +
         WithWord(event.text, std::to_string(event.line), "<line>");
}

std::string Line(const ShellEvent& event) {
  return "shell " + event.line;
}

std::string Line(const MessageEvent& event) {
  return "message " + std::to_string(event.module) + " " + std::to_string(event.code) + " " +
         virtual_onu::ToHex(event.message);
}

std::string Line(const CallEvent& event) {
  return "call " + event.call;
}

}  // namespace

std::string ShowRecord(const std::string& command, const virtual_onu::Bytes& wire) {
  constexpr std::size_t kLongest = 4096;
  if (wire.size() <= kLongest) {
    return virtual_onu::ToHex(wire);
  }
  std::string text = virtual_onu::Digest(wire);
  const CommandInfo* known = virtual_onu::FindCommand(command);
  if (known == nullptr || known->record == nullptr) {
    return text;
  }
  const virtual_onu::Bytes record = virtual_onu::FromWire(*known->record, wire);
  for (const auto& field : virtual_onu::DecodeRecord(*known->record, record)) {
    text += field.zero ? "" : " " + field.name + "=" + field.value;
  }
  return text;
}

std::string Describe(const virtual_onu::TraceEvent& event) {
  return std::visit([](const auto& detail) { return Line(detail); }, event.detail);
}

std::vector<std::string> Left(const virtual_onu::Unit& unit, std::uint64_t from) {
  std::vector<std::string> lines;
  std::ranges::transform(unit.trace().events(from), std::back_inserter(lines), Describe);
  return lines;
}

std::vector<std::string> OfKind(const std::vector<std::string>& lines, const std::string& kind) {
  std::vector<std::string> found;
  std::ranges::copy_if(lines, std::back_inserter(found),
                       [&kind](const std::string& line) { return line.starts_with(kind + " "); });
  return found;
}

}  // namespace hal_test
