/// @file
/// The call of BCM6838X_Ioctl, whose record depends on the command.
#pragma once

#include <span>

#include "language/argument.h"
#include "operations/binding.h"

namespace onu {

/// Builds the record from the arguments CMD, FIELD=VALUE, HEX, N and F, and sends it.
CallOutcome SendIoctl(const Arguments& given, std::span<const Argument> rows);

}  // namespace onu
