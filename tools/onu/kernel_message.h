/// @file
/// Messages of the kernel to the task of the library that waits for them.
#pragma once

#include "base/bytes.h"
#include "session.h"

namespace onu {

/// Sends a datagram and waits until the task has carried it out; false when no task listens.
bool TellKernelTask(Session& session, virtual_onu::ByteView datagram);

}  // namespace onu
