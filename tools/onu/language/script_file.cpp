/// @file
/// Reading of scripts.
#include "language/script_file.h"

#include <cerrno>
#include <cstring>
#include <iostream>

#include "language/failure.h"

namespace onu {

ScriptFile::ScriptFile(const std::string& path)
    : lines_(path == "-" ? std::cin : file_), name_(path == "-" ? "stdin" : path) {
  if (path == "-") {
    return;
  }
  file_.open(path);
  file_.peek();  // a directory opens, and then cannot be read
  if (!file_.is_open() || file_.bad()) {
    throw WorkFailed("cannot read the script " + path + ": " + std::strerror(errno));
  }
}

std::optional<ScriptLine> ScriptFile::next() {
  ScriptLine line;
  if (!std::getline(lines_, line.text)) {
    return std::nullopt;
  }
  line.place = name_ + ":" + std::to_string(++number_);
  return line;
}

}  // namespace onu
