/// @file
/// Lines for tests in which frames pass between two UNI ports.
#pragma once

#include <cstddef>
#include <string>

#include "run_lines.h"

namespace onu::test {

/// Forwards all untagged frames of UNI ports 1 and 2. Nobody has powered the PHYs down.
inline const Words kForwarding = {
    "InitDrv", "RdpaIcInit", "Ioctl FLOW_ADD dir=us icIndex=0 ingressPort=2 vlanNum=0 forward=pass",
    "Ioctl FLOW_ADD dir=us icIndex=0 ingressPort=3 vlanNum=0 forward=pass"};

/// The port's element of "show ports" behind the lines.
inline Json PortAfter(const Words& lines, std::size_t uni) {
  return Last(With(lines, {"show ports"}))["ports"].at(uni - 1);
}

/// The outcome of the frame that the last line sends.
inline std::string OutcomeAfter(const Words& lines) {
  return Last(lines)["frames"].at(0)["outcome"].get<std::string>();
}

}  // namespace onu::test
