/// @file
/// Rendering of trace events, kind by kind.
#include "report/event_report.h"

#include <variant>

#include "device/records.h"
#include "language/words.h"
#include "report/record_report.h"

namespace onu {

namespace {

using virtual_onu::CallEvent;
using virtual_onu::CommandEvent;
using virtual_onu::CommandInfo;
using virtual_onu::FindCommand;
using virtual_onu::LogEvent;
using virtual_onu::MessageEvent;
using virtual_onu::RecordInfo;
using virtual_onu::ShellEvent;
using virtual_onu::TraceEvent;

/// The record that a command carries, or null when it is not described.
const RecordInfo* RecordOf(std::uint32_t code) {
  const CommandInfo* command = FindCommand(code);
  return command == nullptr ? nullptr : command->record;
}

std::string WithReason(const std::string& reason) {
  return reason.empty() ? "" : " (" + reason + ")";
}

/// Adds the members of each kind of event.
struct JsonWriter {
  Json& json;

  void operator()(const CommandEvent& command) const {
    json["kind"] = "command";
    json["code"] = command.code;
    json["name"] = virtual_onu::CommandName(command.code);
    json["length"] = command.length;
    json["flag"] = command.flag;
    json["before"] = WireHex(command.code, command.before);
    json["after"] = WireHex(command.code, command.after);
    json["result"] = command.result;
    json["reason"] = command.reason;
  }

  void operator()(const LogEvent& line) const {
    json["kind"] = "log";
    json.update(LogToJson(line));
  }

  void operator()(const ShellEvent& shell) const {
    json["kind"] = "shell";
    json["line"] = shell.line;
    json["result"] = shell.result;
    json["reason"] = shell.reason;
  }

  void operator()(const MessageEvent& message) const {
    json["kind"] = "message";
    json["module"] = message.module;
    json["code"] = message.code;
    json["message"] = virtual_onu::ToHex(message.message);
  }

  void operator()(const CallEvent& call) const {
    json["kind"] = "call";
    json["call"] = call.call;
    json["result"] = call.result;
  }
};

/// What stands behind sequence number and time.
struct TextWriter {
  std::string operator()(const CommandEvent& command) const {
    std::string text = "command " + std::to_string(command.code) + " " +
                       virtual_onu::CommandName(command.code) + ", length " +
                       std::to_string(command.length) + ", flag " + std::to_string(command.flag) +
                       " = " + std::to_string(command.result) + WithReason(command.reason) + "\n";
    const RecordInfo* record = RecordOf(command.code);
    text += "       sent     " + sent(command, record) + "\n";
    if (command.after != command.before) {
      text += "       returned " +
              (record == nullptr ? virtual_onu::ToHex(command.after)
                                 : ChangesToText(*record, command.before, command.after)) +
              "\n";
    }
    return text;
  }

  std::string operator()(const LogEvent& line) const { return LogToText(line); }

  std::string operator()(const ShellEvent& shell) const {
    return "shell " + Quote(shell.line) + " = " + std::to_string(shell.result) +
           WithReason(shell.reason) + "\n";
  }

  std::string operator()(const MessageEvent& message) const {
    return "message to module " + std::to_string(message.module) + ", code " +
           std::to_string(message.code) + ": " + virtual_onu::ToHex(message.message) + "\n";
  }

  std::string operator()(const CallEvent& call) const {
    return "call " + call.call + " = " + std::to_string(call.result) + "\n";
  }

 private:
  static std::string sent(const CommandEvent& command, const RecordInfo* record) {
    if (command.before.empty()) {
      return "no record";
    }
    return record == nullptr ? virtual_onu::ToHex(command.before)
                             : RecordToText(*record, command.before);
  }
};

}  // namespace

Json EventToJson(const TraceEvent& event) {
  Json json = {{"sequence", event.sequence}, {"milliseconds", event.milliseconds}};
  std::visit(JsonWriter{json}, event.detail);
  return json;
}

Result ReportEvent(const TraceEvent& event) {
  Json json = EventToJson(event);
  const auto* command = std::get_if<CommandEvent>(&event.detail);
  const RecordInfo* record = command == nullptr ? nullptr : RecordOf(command->code);
  if (record != nullptr) {
    json["record"] = record->name;
    json["sent"] = FieldsToJson(*record, command->before);
    json["returned"] = FieldsToJson(*record, command->after);
  }
  return {json, std::to_string(event.sequence) + " at " + std::to_string(event.milliseconds) +
                    " ms: " + std::visit(TextWriter(), event.detail)};
}

Json LogToJson(const LogEvent& line) {
  return {{"id", line.id},
          {"level", line.level},
          {"file", line.file},
          {"line", line.line},
          {"text", line.text}};
}

std::string LogToText(const LogEvent& line) {
  std::string text = line.text;
  while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) {
    text.pop_back();
  }
  return "log level " + std::to_string(line.level) + " " + line.file + ":" +
         std::to_string(line.line) + ": " + text + "\n";
}

}  // namespace onu
