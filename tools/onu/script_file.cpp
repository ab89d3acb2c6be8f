/// @file
/// Reading of scripts.
#include "script_file.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <iostream>

#include "failure.h"

namespace onu {

void RunScriptFile(Runner& runner, const std::string& path) {
  if (path == "-") {
    runner.runScript(std::cin, "stdin");
    return;
  }
  std::ifstream script(path);
  script.peek();  // a directory opens, and then cannot be read
  if (!script.is_open() || script.bad()) {
    throw WorkFailed("cannot read the script " + path + ": " + std::strerror(errno));
  }
  runner.runScript(script, path);
}

}  // namespace onu
