/// @file
/// Writing the page, and checking a file against it.
#include "records_page/program.h"

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <fstream>
#include <ostream>
#include <sstream>
#include <string>
#include <string_view>

#include "records_page/page.h"

namespace records_page {
namespace {

/// The number from 1 of the first line in which the texts differ, which they do.
std::size_t FirstDifference(const std::string& left, const std::string& right) {
  std::istringstream left_lines(left);
  std::istringstream right_lines(right);
  std::string a;
  std::string b;
  std::size_t number = 1;
  while (std::getline(left_lines, a) && std::getline(right_lines, b) && a == b) {
    ++number;
  }
  return number;
}

int Check(const char* file, std::ostream& err) {
  std::ifstream stream(file, std::ios::binary);
  if (!stream) {
    err << "records_page: cannot read " << file << ": " << std::strerror(errno) << "\n";
    return 1;
  }
  std::ostringstream text;
  text << stream.rdbuf();
  const std::string page = Page();
  if (text.str() == page) {
    return 0;
  }
  err << "records_page: " << file << " differs from the field tables in line "
      << FirstDifference(text.str(), page)
      << "; to make it again: build/host/tools/records_page/records_page > docs/records.md\n";
  return 1;
}

}  // namespace

int Run(std::span<const char* const> arguments, std::ostream& out, std::ostream& err) {
  if (arguments.empty()) {
    out << Page() << std::flush;
    return out ? 0 : 1;
  }
  if (arguments.size() == 2 && std::string_view(arguments[0]) == "--check") {
    return Check(arguments[1], err);
  }
  err << "records_page: expected no argument or --check FILE, got \"" << arguments[0]
      << "\"; usage: records_page [--check FILE]\n";
  return 2;
}

}  // namespace records_page
