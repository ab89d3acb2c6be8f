/// @file
/// Behaviour of the device platform of the virtual unit.
#include "platform/platform.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <system_error>
#include <utility>

#include <platform_log.h>

namespace virtual_onu {

namespace {

constexpr const char* kPerformanceMarker = "/var/config/switch_perf";

/// Handle of the first log module; any value but LOG_ID_NONE would do.
constexpr std::uint32_t kFirstLogId = 7;

std::string FormatText(const char* format, std::va_list arguments) {
  std::va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, again);
  va_end(again);
  if (length < 0) {
    return "(a format that cannot be formatted)";
  }
  std::string text(static_cast<std::size_t>(length) + 1, '\0');
  static_cast<void>(std::vsnprintf(text.data(), text.size(), format, arguments));
  text.pop_back();
  return text;
}

std::string Quoted(const char* text) {
  return std::string("\"") + text + "\"";
}

}  // namespace

Platform::Platform(PlatformConfig config, Trace& trace, Clock& clock,
                   std::filesystem::path directory)
    : config_(std::move(config)), trace_(trace), clock_(clock), directory_(std::move(directory)) {}

Platform::~Platform() {
  joinTasks();
}

void Platform::joinTasks() {
  std::vector<std::thread> threads;
  {
    const std::lock_guard lock(mutex_);
    threads.swap(threads_);
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
}

std::uint32_t Platform::createLog(const char* name, std::uint32_t a, std::int32_t b) {
  const std::uint32_t id = config_.logCreateFails ? LOG_ID_NONE : kFirstLogId;
  trace_.add(CallEvent{
      "LOG_Create(" + Quoted(name) + ", " + std::to_string(a) + ", " + std::to_string(b) + ")",
      id});
  return id;
}

void Platform::printLog(std::uint32_t id, std::uint32_t level, const char* file, std::uint32_t line,
                        const char* format, std::va_list arguments) {
  trace_.add(LogEvent{id, level, file, line, FormatText(format, arguments)});
}

std::int32_t Platform::spawnTask(Task task) {
  const std::int32_t result = config_.taskSpawnFails ? -1 : 0;
  std::string call = "VOS_TaskSpawn(" + Quoted(task.name.c_str());
  for (const std::uint32_t number : task.numbers) {
    call += ", " + std::to_string(number);
  }
  trace_.add(CallEvent{call + ", entry, " + std::to_string(task.arg) + ")", result});
  if (result != 0) {
    return result;
  }
  const std::lock_guard lock(mutex_);
  if (config_.runTasks) {
    threads_.emplace_back([this, entry = task.entry] {
      entry();
      if (taskEnd_) {
        taskEnd_();
      }
    });
  }
  tasks_.push_back(std::move(task));
  return result;
}

std::int32_t Platform::runShell(const char* format, std::va_list arguments) {
  ShellEvent event{FormatText(format, arguments), 0, {}};
  if (shellRunner_) {
    event = shellRunner_(std::move(event.line));
  }
  const std::int32_t result = event.result;
  trace_.add(std::move(event));
  return result;
}

std::uint32_t Platform::sendMessage(std::uint32_t module, std::uint32_t code, ByteView message) {
  trace_.add(MessageEvent{module, code, Bytes(message.begin(), message.end())});
  return 0;
}

void Platform::delay(std::uint32_t milliseconds) {
  trace_.add(CallEvent{"VOS_TaskDelay(" + std::to_string(milliseconds) + ")", 0});
  clock_.advance(milliseconds);
}

void Platform::reboot(std::uint32_t reason) {
  trace_.add(CallEvent{"VOS_Reboot(" + std::to_string(reason) + ")", 0});
}

void Platform::resetDefaultConfig() {
  trace_.add(CallEvent{"VOS_ResetDefaultCfg()", 0});
}

std::uint32_t Platform::macAddresses(std::uint8_t* first, std::uint8_t* second) {
  const std::uint32_t result = config_.macQueryFails ? 1 : 0;
  trace_.add(CallEvent{"VOS_OntInfoGetMac()", result});
  if (result == 0) {
    std::ranges::copy(config_.firstMac, first);
    std::ranges::copy(config_.secondMac, second);
  }
  return result;
}

std::uint32_t Platform::boardId(char* buffer, std::uint32_t length) {
  trace_.add(CallEvent{"BCM6838X_sysGetBoardId(" + std::to_string(length) + ")", 0});
  // As strncpy() fills a fixed field: zeros behind a short identifier, none behind one that fills
  // it.
  const std::size_t used = std::min<std::size_t>(length, config_.boardId.size());
  std::memset(buffer, 0, length);
  std::memcpy(buffer, config_.boardId.data(), used);
  return 0;
}

std::filesystem::path Platform::mapPath(const char* path) const {
  return std::strcmp(path, kPerformanceMarker) == 0 ? directory_ / "switch_perf"
                                                    : std::filesystem::path(path);
}

void Platform::setPerformanceMarker(bool present) const {
  const std::filesystem::path marker = mapPath(kPerformanceMarker);
  if (present) {
    const std::ofstream created(marker);
  } else {
    std::filesystem::remove(marker);
  }
}

bool Platform::performanceMarker() const {
  return std::filesystem::exists(mapPath(kPerformanceMarker));
}

std::vector<Task> Platform::tasks() const {
  const std::lock_guard lock(mutex_);
  return tasks_;
}

}  // namespace virtual_onu
