/// @file
/// The rows of the operations that bcm6838x_igmp.h declares. A new operation is one more row.
#include <bcm6838x_igmp.h>

#include "operation_rows.h"

namespace onu {

namespace {

using enum ResultKind;

const std::vector<Operation> kRows = {
    {{"BCM6838X_InitIgmp", {}, "clears the multicast tables", {"InitIgmp"}},
     Status,
     Bind(BCM6838X_InitIgmp)},
};

}  // namespace

const std::vector<Operation>& IgmpOperations() {
  return kRows;
}

}  // namespace onu
