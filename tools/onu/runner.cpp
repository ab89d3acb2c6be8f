/// @file
/// The loop over lines.
#include "runner.h"

#include <cstddef>

namespace onu {

bool Runner::runLine(std::string_view line, const std::string& place) {
  try {
    session_.execute(line);
  } catch (const Failure& failure) {
    errors_(place + ": " + failure.what() + "\n");
    if (status_ == ExitStatus::Done) {
      status_ = failure.status();
    }
    return keepGoing_;
  }
  return !session_.done();
}

void Runner::runScript(std::istream& script, const std::string& name) {
  std::string line;
  std::size_t number = 0;
  bool more = true;
  while (more && std::getline(script, line)) {
    ++number;
    more = runLine(line, name + ":" + std::to_string(number));
  }
}

}  // namespace onu
