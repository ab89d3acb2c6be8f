/// @file
/// How the program's own errors travel: thrown where they are found, printed as one line where the
/// command was read. Results of the library's operations are not errors.
#pragma once

#include <stdexcept>
#include <string>

namespace onu {

enum class ExitStatus { Done = 0, WorkFailed = 1, WrongUse = 2 };

/// One line that says what failed, what was expected and what came, and how to mend it.
class Failure : public std::runtime_error {
 public:
  Failure(ExitStatus status, const std::string& text) : std::runtime_error(text), status_(status) {}

  [[nodiscard]] ExitStatus status() const { return status_; }

  /// The same failure with the place in front: "PLACE: TEXT".
  [[nodiscard]] Failure at(const std::string& place) const {
    return {status_, place + ": " + what()};
  }

 private:
  ExitStatus status_;
};

/// The command was understood and could not be done.
inline Failure WorkFailed(const std::string& text) {
  return {ExitStatus::WorkFailed, text};
}

/// The command was not understood.
inline Failure WrongUse(const std::string& text) {
  return {ExitStatus::WrongUse, text};
}

}  // namespace onu
