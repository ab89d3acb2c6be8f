/// @file
/// What the calls of the C interface test share: expectations that end the process, and the call of
/// every operation that the list marks as built.
#ifndef C_CALLS_H
#define C_CALLS_H

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "c_platform.h"

#define EXPECT(condition)                                             \
  do {                                                                \
    if (!(condition)) {                                               \
      fprintf(stderr, "%s:%d: %s\n", __FILE__, __LINE__, #condition); \
      exit(1);                                                        \
    }                                                                 \
  } while (0)

/// The record of the last command, as its structure.
#define LAST_RECORD(record)                 \
  EXPECT(g_platform.len == sizeof(record)); \
  memcpy(&(record), g_platform.record, sizeof(record))

// A call without a mark in the list has no declaration here, which the compiler refuses.
#define OPERATION(name) void call_##name(void);
#include "built_operations.inc"
#undef OPERATION

/// Opens the device, and counts commands from there on.
void OpenDevice(void);

#endif
