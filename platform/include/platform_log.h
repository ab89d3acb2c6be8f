/// @file
/// Logging calls of the device platform, supplied by the program that loads the library.
#ifndef PLATFORM_LOG_H
#define PLATFORM_LOG_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Value that LOG_Create returns when it cannot create the module.
#define LOG_ID_NONE 32U

/// Levels of log lines that the library uses.
enum {
  LOG_LEVEL_TRACE = 1,   ///< traces and most errors
  LOG_LEVEL_INVALID = 4  ///< invalid parameters
};

/// Registers a log module.
///
/// @param[in] name name of the module
/// @param[in] a the platform's
/// @param[in] b the platform's
/// @return the handle for _LOG_Print, or LOG_ID_NONE
uint32_t LOG_Create(const char* name, uint32_t a, int32_t b);

/// Writes one log line, formatted like printf.
///
/// @param[in] id handle from LOG_Create
/// @param[in] level LOG_LEVEL_TRACE or LOG_LEVEL_INVALID
/// @param[in] file source file, as a path from the repository's root
/// @param[in] line source line of the call
/// @param[in] format printf format with its arguments
void _LOG_Print(uint32_t id, uint32_t level, const char* file, uint32_t line, const char* format,
                ...) __attribute__((format(printf, 5, 6)));

#ifdef __cplusplus
}
#endif

#endif
