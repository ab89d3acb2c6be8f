/// @file
/// The hex dump of the multicast code.
#include <cstdint>
#include <cstdio>

#include <bcm6838x_igmp.h>

#include "hal_bcm6838x_log.h"

using namespace hal;

namespace {

constexpr uint32_t kRowBytes = 16;

/// The bytes of one row; those behind the end are blank, in the columns of the others.
void PrintDigits(const uint8_t* bytes, uint32_t count) {
  constexpr uint32_t kHalfRow = kRowBytes / 2;
  for (uint32_t column = 0; column < kRowBytes; ++column) {
    if (column < count) {
      printf("%02X ", bytes[column]);
    } else {
      printf("   ");
    }
    if (column + 1 == kHalfRow) {
      printf("  ");
    }
  }
}

/// The bytes of one row as characters.
void PrintCharacters(const uint8_t* bytes, uint32_t count) {
  constexpr uint8_t kFirst = 32;
  // Required: hex-prints-128
  constexpr uint8_t kLast = 128;
  for (uint32_t column = 0; column < count; ++column) {
    const uint8_t byte = bytes[column];
    putchar(byte >= kFirst && byte <= kLast ? byte : '.');
  }
}

}  // namespace

void BCM6838X_PrintHex(const void* buffer, uint32_t length) {
  if (buffer == nullptr || length == 0) {
    return;
  }
  const auto* bytes = static_cast<const uint8_t*>(buffer);
  printf(
      "\r\n%08X  00 01 02 03 04 05 06 07   08 09 0A 0B 0C 0D 0E 0F ; ASCII [%ld bytes]\r\n"
      "------------------------------------------------------------------------------\r\n",
      static_cast<uint32_t>(reinterpret_cast<uintptr_t>(buffer)), AsLong(length));
  // Required: hex-ends-with-blank-row
  for (uint32_t row = 0; row <= length / kRowBytes; ++row) {
    const uint32_t offset = row * kRowBytes;
    const uint32_t count = length - offset < kRowBytes ? length - offset : kRowBytes;
    printf("%08X: ", offset);
    PrintDigits(bytes + offset, count);
    printf("; ");
    PrintCharacters(bytes + offset, count);
    printf("\r\n");
  }
}
