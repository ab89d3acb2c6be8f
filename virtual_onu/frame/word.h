/// @file
/// What help and completion tell about a word of the frame language.
#pragma once

#include <string_view>

namespace virtual_onu {

struct FrameWord {
  std::string_view word;
  std::string_view argument;  ///< empty when the word stands alone
  std::string_view text;
};

}  // namespace virtual_onu
