/// @file
/// The seconds of a command that watches something.
#pragma once

#include <memory>

namespace onu {

class Ticker {
 public:
  Ticker() = default;
  virtual ~Ticker() = default;
  Ticker(const Ticker&) = delete;
  Ticker& operator=(const Ticker&) = delete;

  /// Lets a second pass; false when the user has had enough.
  virtual bool second() = 0;
};

/// Waits for real, until an interrupt (SIGINT) ends it. While it lives, an interrupt does not end
/// the program. There is one at a time.
std::unique_ptr<Ticker> MakeRealTicker();

}  // namespace onu
