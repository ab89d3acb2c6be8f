/// @file
/// The program's entry point.
#include "program.h"

// The line editor's library keeps two strings of its set-up to the end; the leak sanitizer, where
// it is built in, asks for such exceptions under this name.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
extern "C" const char* __lsan_default_suppressions();

extern "C" const char* __lsan_default_suppressions() {
  return "leak:wcsdup\n";
}
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)

int main(int argc, char** argv) {
  return onu::RunProgram(argc, argv);
}
