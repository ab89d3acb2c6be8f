/// @file
/// Any datagrams on the kernel monitor's socket. The first byte says how long the first of two is.
#include "fuzz_platform.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  const std::size_t first = input.number(1);
  const fuzz::Bytes rest = input.rest();
  const auto middle = rest.begin() + static_cast<std::ptrdiff_t>(std::min(first, rest.size()));
  fuzz::RunMonitor({fuzz::Bytes(rest.begin(), middle), fuzz::Bytes(middle, rest.end())});
  return 0;
}
