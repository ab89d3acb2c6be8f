/// @file
/// The one place that makes a log line. It supplies the module's handle, the source path, the
/// function name and the line, and holds the rule for 32-bit values in "%lu" and "%ld".
#ifndef HAL_BCM6838X_LOG_H
#define HAL_BCM6838X_LOG_H

#include <cstddef>
#include <cstdint>

#include <platform_log.h>

namespace hal {

/// Handle of the log module.
extern "C" uint32_t g_bcm6838xLogId;

/// Path of a source file from the repository's root, computed at compile time.
struct SourcePath {
  char text[96] = {};
};

/// Places a source file's name under the library's source folder, however the build named the file.
template <size_t size>
constexpr SourcePath MakeSourcePath(const char (&file)[size]) {
  SourcePath path;
  size_t end = 0;
  for (const char c : "hal/switch/bcm6838x/src/") {
    if (c != '\0') {
      path.text[end++] = c;
    }
  }
  size_t name = 0;
  for (size_t i = 0; i < size; ++i) {
    if (file[i] == '/') {
      name = i + 1;
    }
  }
  while (name < size) {
    path.text[end++] = file[name++];
  }
  return path;
}

/// The file being compiled, as log lines name it.
static constexpr SourcePath kSourcePath = MakeSourcePath(__BASE_FILE__);

/// A value for "%lu", which has 32 bits on the target and shows them unsigned on every machine.
constexpr unsigned long AsUnsignedLong(uint32_t value) {
  return value;
}

/// A value for "%ld", which has 32 bits on the target and shows them signed on every machine.
constexpr long AsLong(uint32_t value) {
  return static_cast<int32_t>(value);
}

/// A value for "%d" whose operand is a 32-bit word: the word's bits, shown signed.
constexpr int AsInt(uint32_t value) {
  return static_cast<int>(value);
}

/// Whether any of the pointers is null.
template <typename... Pointer>
constexpr bool IsAnyNull(Pointer... pointer) {
  return ((pointer == nullptr) || ...);
}

}  // namespace hal

// Macros, because only a macro sees the caller's function and line and lets the compiler hold the
// arguments against the format.

/// Logs one line.
#define HAL_LOG(level, ...) \
  _LOG_Print(hal::g_bcm6838xLogId, (level), hal::kSourcePath.text, __LINE__, __VA_ARGS__)

/// Logs one line whose format begins with the function name and the line, under the name of the
/// operation for which a helper works.
#define HAL_LOG_AS(function, level, format, ...) \
  HAL_LOG(level, format, function, __LINE__ __VA_OPT__(, ) __VA_ARGS__)

/// Logs one line whose format begins with the function name and the line.
#define HAL_LOG_HERE(level, format, ...) \
  HAL_LOG_AS(__func__, level, format __VA_OPT__(, ) __VA_ARGS__)

/// Whether any of the caller's pointers is null, which is then logged under the name of an operation;
/// the operation returns without having done anything.
#define HAL_IS_NULL_AS(function, ...) \
  (hal::IsAnyNull(__VA_ARGS__) &&     \
   (HAL_LOG_AS(function, LOG_LEVEL_INVALID, "%s(%d), null pointer\r\n"), true))

/// The same under the name of the caller.
#define HAL_IS_NULL(...) HAL_IS_NULL_AS(__func__, __VA_ARGS__)

#endif
