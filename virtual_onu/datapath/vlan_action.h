/// @file
/// What a VLAN action of the chip does to the tags of a frame.
#pragma once

#include <string>
#include <vector>

#include <brmgr_record.h>

#include "base/bytes.h"

namespace virtual_onu {

/// Applies the tag operations of an action, in the order pop, push, VID, priority. An
/// operation on a tag that is not there, or one that is not known, changes nothing.
/// @param[out] steps  one line for each operation in words, appended; null when nobody reads them
void ApplyVlanAction(const VlanActionRule& action, Bytes& frame, std::vector<std::string>* steps);

}  // namespace virtual_onu
