/// @file
/// Scripts: lines in a file or on standard input.
#pragma once

#include <cstddef>
#include <fstream>
#include <iosfwd>
#include <optional>
#include <string>

namespace onu {

struct ScriptLine {
  std::string text;
  std::string place;  ///< "NAME:LINE"
};

class ScriptFile {
 public:
  /// Opens a script; throws a Failure when it cannot be read.
  /// @param[in] path  of the script, or "-" for standard input
  explicit ScriptFile(const std::string& path);

  /// The next line, or nothing at the end.
  std::optional<ScriptLine> next();

 private:
  std::ifstream file_;
  std::istream& lines_;
  const std::string name_;
  std::size_t number_ = 0;
};

}  // namespace onu
