/// @file
/// A C program that links with the archive alone and reads the library's state by its names.
#include <stdint.h>
#include <stdio.h>
#include <string.h>

#include <hal_bcm6838x.h>
#include <platform_log.h>

#include "c_platform.h"
#include "support/library_tables.h"

static int g_failures = 0;

static void Expect(int condition, const char* text) {
  if (!condition) {
    fprintf(stderr, "expected %s\n", text);
    ++g_failures;
  }
}

int main(void) {
  Expect(sgHwDevFd == -1, "a closed device before the start");
  Expect(g_bcm6838xLogId == LOG_ID_NONE, "no log module before the start");
  Expect(g_SwitchPerformance == 0, "normal mode before the start");
  g_SwitchPerformance = 1;
  Expect(BCM6838X_PerformanceInit() == BCM6838X_END, "no marker");
  Expect(g_SwitchPerformance == 0, "normal mode without a marker");
  g_platform.markerPresent = 1;
  Expect(BCM6838X_Init() == BCM6838X_OK, "the start to succeed");
  Expect(sgHwDevFd == PLATFORM_DESCRIPTOR, "the platform's descriptor");
  Expect(g_bcm6838xLogId == PLATFORM_LOG_ID, "the platform's log module");
  Expect(g_SwitchPerformance == 1, "performance mode");
  sgHwDevFd = 0;
  Expect(BCM6838X_SFInit() == BCM6838X_NOT_OPEN, "a descriptor of 0 to count as closed");
  Expect(strcmp(g_BoardId, "board") == 0, "the platform's board identifier");
  return g_failures == 0 ? 0 : 1;
}
