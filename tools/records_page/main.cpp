/// @file
/// records_page: writes the reference page of commands and records.
#include <cstddef>
#include <iostream>
#include <span>

#include "records_page/program.h"

int main(int argc, char** argv) {
  const std::span<const char* const> arguments(argv, static_cast<std::size_t>(argc));
  return records_page::Run(arguments.empty() ? arguments : arguments.subspan(1), std::cout,
                           std::cerr);
}
