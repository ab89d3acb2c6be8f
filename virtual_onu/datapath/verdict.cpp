/// @file
/// Views of a verdict.
#include "datapath/verdict.h"

namespace virtual_onu {

std::vector<PortId> Verdict::egress() const {
  std::vector<PortId> ports;
  ports.reserve(deliveries.size());
  for (const Delivery& delivery : deliveries) {
    ports.push_back(delivery.port);
  }
  return ports;
}

}  // namespace virtual_onu
