/// @file
/// A shared object that breaks every rule that the library's keeps, to show that the checks see it.
#include <stdexcept>
#include <string>

extern "C" {
void NobodysCall(const char* text);
__attribute__((visibility("default"))) void FaultyOperation();
}

__attribute__((visibility("default"))) void StrayFunction();

void StrayFunction() {}

void FaultyOperation() {
  NobodysCall("hal/switch/bcm6838x/src/nowhere.cpp");
  // Not __FILE__: a compiler cache may hand the compiler a relative path.
  throw std::runtime_error(std::string("thrown by ") + FAULTY_OBJECT_SOURCE);
}
