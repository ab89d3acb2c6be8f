/// @file
/// Why a frame became what it did: every class, flow and key that was tried.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "datapath/verdict.h"

namespace virtual_onu {

/// One key of a flow held against the frame.
struct KeyComparison {
  std::string key;  ///< field of the flow record, "outerVid"; or "unknown key"
  std::string flowValue;
  std::string frameValue;  ///< "none" when the frame has no such field
  bool equal = false;
};

struct FlowTrial {
  std::uint32_t flowIndex = 0;
  std::vector<KeyComparison> keys;
  bool matched = false;
};

struct ClassTrial {
  std::uint32_t icIndex = 0;
  std::uint32_t priority = 0;
  std::uint32_t fieldMask = 0;
  std::vector<FlowTrial> flows;  ///< up to and including the one that matched
};

struct Explanation {
  Verdict verdict;
  std::vector<ClassTrial> classes;       ///< in the order tried
  std::vector<std::string> actionSteps;  ///< the operations of the VLAN action, in words
};

}  // namespace virtual_onu
