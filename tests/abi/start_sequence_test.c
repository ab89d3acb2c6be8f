/// @file
/// A C program that links with the archive and puts its own operations in the place of those that
/// the start calls in other areas, to hold their order and arguments. What they do is tested
/// elsewhere.
#include <stdint.h>
#include <stdio.h>
#include <string.h>

#include <hal_bcm6838x.h>

#include "c_platform.h"

// The linker directs the calls of the library's start to these (--wrap).
// NOLINTBEGIN(bugprone-reserved-identifier): the linker's names
uint32_t __wrap_BCM6838X_InitIgmp(void);
uint32_t __wrap_BCM6838X_InitPort(void);
uint32_t __wrap_BCM6838X_InitQoS(void);
uint32_t __wrap_BCM6838X_InitVlan(void);
uint32_t __wrap_BCM6838X_RdpaIcInit(void);
uint32_t __wrap_BCM6838X_RdpaIcInit_Perf(void);
int32_t __wrap_BCM6838X_SetPortAdminState(uint32_t port, uint32_t state);

static uint32_t Fail(const char* operation) {
  Note("%s\n", operation);
  return BCM6838X_FAILED;
}

uint32_t __wrap_BCM6838X_InitIgmp(void) {
  return Fail("InitIgmp");
}

uint32_t __wrap_BCM6838X_InitPort(void) {
  return Fail("InitPort");
}

uint32_t __wrap_BCM6838X_InitQoS(void) {
  return Fail("InitQoS");
}

uint32_t __wrap_BCM6838X_InitVlan(void) {
  return Fail("InitVlan");
}

uint32_t __wrap_BCM6838X_RdpaIcInit(void) {
  return Fail("RdpaIcInit");
}

uint32_t __wrap_BCM6838X_RdpaIcInit_Perf(void) {
  return Fail("RdpaIcInit_Perf");
}

int32_t __wrap_BCM6838X_SetPortAdminState(uint32_t port, uint32_t state) {
  Note("SetPortAdminState %u %u\n", (unsigned)port, (unsigned)state);
  return BCM6838X_FAILED;
}
// NOLINTEND(bugprone-reserved-identifier)

#define PORTS_DOWN          \
  "SetPortAdminState 1 0\n" \
  "SetPortAdminState 2 0\n" \
  "SetPortAdminState 3 0\n" \
  "SetPortAdminState 4 0\n"

/// Starts the library and compares the journal; failures on the way do not end the start.
static int Start(const char* expected) {
  g_platform.journal[0] = 0;
  const uint32_t result = BCM6838X_Init();
  if (result == BCM6838X_OK && strcmp(g_platform.journal, expected) == 0) {
    return 0;
  }
  fprintf(stderr, "expected result 0 and:\n%sgot result %u and:\n%s", expected, (unsigned)result,
          g_platform.journal);
  return 1;
}

int main(void) {
  int failures = Start(PORTS_DOWN
                       "command 0\n"
                       "InitPort\n"
                       "InitVlan\n"
                       "InitIgmp\n"
                       "RdpaIcInit\n"
                       "command 127\n"
                       "InitQoS\n");
  g_platform.markerPresent = 1;
  failures += Start(PORTS_DOWN
                    "command 0\n"
                    "InitPort\n"
                    "InitVlan\n"
                    "InitIgmp\n"
                    "RdpaIcInit_Perf\n"
                    "command 127\n"
                    "InitQoS\n");
  return failures;
}
