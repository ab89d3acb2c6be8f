/// @file
/// Classification: the search for the flow that decides about a frame. What the decision does is
/// not known here.
#pragma once

#include <cstdint>
#include <vector>

#include <brmgr_record.h>

#include "datapath/explanation.h"
#include "datapath/key_fields.h"
#include "device/chip_tables.h"

namespace virtual_onu {

struct Classification {
  std::uint32_t icIndex = 0;
  std::uint32_t flowIndex = 0;
  const IngressFlowRule* flow = nullptr;  ///< null when no flow matched
};

/// Tries the classes in descending priority (equal priorities by ascending index), in each class
/// the flows by ascending index; the first flow whose keys all equal the frame's decides.
/// @param[out] trials  everything that was tried, appended; null when nobody reads it
Classification Classify(const DirectionTables& tables, const ReceivedFrame& frame,
                        std::vector<ClassTrial>* trials);

}  // namespace virtual_onu
