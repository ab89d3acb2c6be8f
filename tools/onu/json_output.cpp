/// @file
/// Writing of JSON documents.
#include "json_output.h"

namespace onu {

std::string Dump(const Json& document) {
  return document.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string DumpIndented(const Json& document) {
  return document.dump(1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace onu
