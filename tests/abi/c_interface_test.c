/// @file
/// A C program that calls every built operation through the public headers: each in a process of
/// its own, so that none sees the state that another left. What the operations do in full is tested
/// elsewhere; here they are reached from C, by their names, and answer. The calls are in
/// c_calls_*.c, one file a header.
#include <stdio.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <bcm6838x_api.h>
#include <platform_chip.h>
#include <platform_clients.h>
#include <platform_config.h>
#include <platform_log.h>
#include <platform_vos.h>

#include "c_calls.h"

struct Operation {
  const char* name;
  void (*call)(void);
};

// Made from the list of operations: one that is marked as built must have its call here, and no
// other.
static const struct Operation kOperations[] = {
#define OPERATION(name) {#name, call_##name},
#include "built_operations.inc"
#undef OPERATION
};

/// Runs one call in a process of its own; 0 when it held.
static int Run(const struct Operation* operation) {
  fflush(NULL);
  const pid_t child = fork();
  if (child == 0) {
    operation->call();
    exit(0);
  }
  int status = 0;
  if (child < 0 || waitpid(child, &status, 0) != child || status != 0) {
    fprintf(stderr, "%s: failed with status %#x\n", operation->name, (unsigned)status);
    return 1;
  }
  return 0;
}

int main(void) {
  const size_t count = sizeof(kOperations) / sizeof(kOperations[0]);
  int failures = 0;
  for (size_t i = 0; i < count; ++i) {
    failures += Run(&kOperations[i]);
  }
  printf("%zu operations called, %d failed\n", count, failures);
  return count > 0 && failures == 0 ? 0 : 1;
}
