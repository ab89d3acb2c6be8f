/// @file
/// The text of JSON values, by nlohmann's library, which no other file knows: its header takes longer to
/// compile than a whole file of the program.
#include <nlohmann/json.hpp>

#include "report/json.h"

namespace onu {

namespace {

using Library = nlohmann::ordered_json;

std::string Write(const Library& json, int indent) {
  return json.dump(indent, ' ', false, Library::error_handler_t::replace);
}

}  // namespace

/// Translates values to those of the library and back.
struct JsonText {
  static Library toLibrary(const Json& json) { return std::visit(JsonText(), json.value_); }

  static Json fromLibrary(const Library& json) {
    Json value;
    switch (json.type()) {
      case Library::value_t::boolean:
        return json.get<bool>();
      case Library::value_t::number_integer:
        return json.get<std::int64_t>();
      case Library::value_t::number_unsigned:
        return json.get<std::uint64_t>();
      case Library::value_t::number_float:
        return json.get<double>();
      case Library::value_t::string:
        return json.get<std::string>();
      case Library::value_t::array:
        value = Json::array();
        for (const Library& item : json) {
          value.push_back(fromLibrary(item));
        }
        return value;
      case Library::value_t::object:
        value = Json::object();
        for (const auto& [name, member] : json.items()) {
          value[name] = fromLibrary(member);
        }
        return value;
      default:
        return value;
    }
  }

  template <typename Scalar>
  Library operator()(const Scalar& scalar) const {
    return scalar;
  }

  Library operator()(const Json::Array& items) const {
    Library array = Library::array();
    for (const Json& item : items) {
      array.push_back(toLibrary(item));
    }
    return array;
  }

  Library operator()(const Json::Object& members) const {
    // Names are unique already, so no member is searched for.
    Library::object_t object;
    for (const auto& [name, value] : members) {
      object.emplace_back(name, toLibrary(value));
    }
    return object;
  }
};

std::optional<Json> Json::parse(std::string_view text) {
  const Library json = Library::parse(text, nullptr, false);
  return json.is_discarded() ? std::nullopt : std::optional(JsonText::fromLibrary(json));
}

std::string Json::dump() const {
  return Write(JsonText::toLibrary(*this), -1);
}

std::string Json::dumpIndented() const {
  return Write(JsonText::toLibrary(*this), 1);
}

}  // namespace onu
