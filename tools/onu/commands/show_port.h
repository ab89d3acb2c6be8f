/// @file
/// What `show port` and `show config` say of one UNI port.
#pragma once

#include "report/result.h"
#include "session/session.h"

namespace onu {

/// The VLAN configuration of the UNI port N as the driver was told it; throws a Failure when the unit
/// has no such port.
Result ShowVlanConfig(Session& session, const Arguments& arguments);

}  // namespace onu
