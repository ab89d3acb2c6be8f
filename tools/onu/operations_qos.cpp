/// @file
/// The rows of the operations that bcm6838x_qos.h declares. A new operation is one more row.
#include <bcm6838x_qos.h>

#include "operation_rows.h"

namespace onu {

namespace {

using enum ResultKind;

const std::vector<Operation> kRows = {
    {{"BCM6838X_InitQoS", {}, "initialises the QoS bookkeeping", {"InitQoS"}},
     Status,
     Bind(BCM6838X_InitQoS)},
};

}  // namespace

const std::vector<Operation>& QosOperations() {
  return kRows;
}

}  // namespace onu
