/// @file
/// What a command yields.
#pragma once

#include <string>

#include "report/json.h"

namespace onu {

/// A result for programs and for people; which one is printed is the session's matter.
struct Result {
  Json json = Json::object();
  std::string text = {};  ///< whole lines
};

}  // namespace onu
