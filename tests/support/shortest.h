/// @file
/// Shortening of a failing sequence of steps, so that a failure found by chance can be read.
#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <vector>

namespace hal_test {

/// Takes pieces out of a sequence as long as it still fails, large pieces first; in the result
/// every single step is needed.
template <typename Step>
std::vector<Step> Shortest(std::vector<Step> failing,
                           const std::function<bool(const std::vector<Step>&)>& fails) {
  for (std::size_t piece = std::max<std::size_t>(failing.size() / 2, 1); piece > 0;) {
    bool shortened = false;
    for (std::size_t at = 0; at < failing.size();) {
      std::vector<Step> shorter(failing.begin(), failing.begin() + static_cast<long>(at));
      const std::size_t rest = std::min(at + piece, failing.size());
      shorter.insert(shorter.end(), failing.begin() + static_cast<long>(rest), failing.end());
      if (fails(shorter)) {
        failing = std::move(shorter);
        shortened = true;
      } else {
        at += piece;
      }
    }
    piece = piece == 1 && shortened ? 1 : piece / 2;
  }
  return failing;
}

}  // namespace hal_test
