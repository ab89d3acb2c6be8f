/// @file
/// Classification rules from words. What a rule does is the library's matter.
#pragma once

#include <cstdint>
#include <string>

#include <bcm6838x_qos.h>

namespace onu {

/// Makes a rule of a word "PRECEDENCE[@PORT],PRIORITY[,CONDITION]...", where a condition is
/// FIELD=VALUE or FIELD:OPERATOR=VALUE with the names of the listing, in any case, or their
/// numbers. A value is a number, a MAC or an IP address, as the field has it. The rule's queue is
/// its priority. Throws a Failure that names what is wrong with the word.
/// @param[in] port  of a rule that names none; the low 8 bits count
QosClassRule ParseQosRule(std::uint32_t port, std::uint32_t type, const std::string& word);

}  // namespace onu
