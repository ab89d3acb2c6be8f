/// @file
/// Holds the library's tables against what exists in the chip and in the data path, and against one
/// another. It reads both and changes nothing.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <brmgr_record.h>

#include "consistency/library_tables.h"
#include "device/chip_tables.h"
#include "shell/path_objects.h"

namespace virtual_onu {

/// What the library's tables are held against.
struct BoardTables {
  const ChipTables& chip;
  const PathObjects& objects;
};

/// One line for each finding: objects of the VLAN modes and of multicast that exist on one side
/// only, and references that do not add up. Flows that hand frames to the unit itself and objects
/// of QoS are nobody's finding. After commands that were refused, findings are to be expected: the
/// library skips what failed and goes on.
std::vector<std::string> CheckConsistency(const LibraryTables& library, const BoardTables& board);

/// One line for each difference between a port's VLAN configuration and its upstream flows: frames
/// that the configuration lets in and no flow does, and the other way round.
/// @param[in] uni  UNI port, from 1
std::vector<std::string> CompareWithConfiguration(const PortVlanInfo& info, std::uint32_t uni,
                                                  const ChipTables& chip);

}  // namespace virtual_onu
