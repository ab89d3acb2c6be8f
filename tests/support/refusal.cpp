/// @file
/// The log line of a command that the driver refuses.
#include "support/refusal.h"

namespace hal_test {

std::string RefusalLogged(std::uint32_t code) {
  return "log 1 hal/switch/bcm6838x/src/hal_bcm6838x.cpp BCM6838X_Ioctl :<line>, cmd:" +
         std::to_string(code) + " err:4294967295\r\n";
}

}  // namespace hal_test
