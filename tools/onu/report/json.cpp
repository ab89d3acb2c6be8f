/// @file
/// JSON values.
#include "report/json.h"

#include <algorithm>
#include <ostream>
#include <stdexcept>

namespace onu {

namespace {

const JsonMember* Find(const Json::Object& members, std::string_view name) {
  const auto found =
      std::ranges::find_if(members, [name](const auto& member) { return member.name == name; });
  return found == members.end() ? nullptr : &*found;
}

}  // namespace

Json::Json() = default;
Json::Json(const Json& other) = default;
Json::Json(Json&& other) noexcept = default;
Json& Json::operator=(const Json& other) = default;
Json& Json::operator=(Json&& other) noexcept = default;
Json::~Json() = default;

Json::Json(std::nullptr_t /*null*/) {}
Json::Json(bool value) : value_(value) {}
Json::Json(double value) : value_(value) {}
Json::Json(Tag /*tag*/, std::string_view text) : value_(std::string(text)) {}
Json::Json(Tag /*tag*/, Array items) : value_(std::move(items)) {}
Json::Json(std::initializer_list<JsonMember> members) : value_(Object(members)) {}

// One form for each number, so that equal numbers are equal values.
Json::Json(Tag /*tag*/, std::uint64_t value, bool negative) : value_(value) {
  if (negative) {
    value_ = static_cast<std::int64_t>(value);
  }
}

Json Json::array(std::initializer_list<Json> items) {
  Json json;
  json.value_ = Array(items);
  return json;
}

Json Json::object() {
  Json json;
  json.value_ = Object();
  return json;
}

std::size_t Json::size() const {
  const auto* members = std::get_if<Object>(&value_);
  return members != nullptr ? members->size() : static_cast<std::size_t>(end() - begin());
}

const Json* Json::begin() const {
  const auto* items = std::get_if<Array>(&value_);
  return items == nullptr ? nullptr : items->data();
}

const Json* Json::end() const {
  const auto* items = std::get_if<Array>(&value_);
  return items == nullptr ? nullptr : items->data() + items->size();
}

Json* Json::begin() {
  return const_cast<Json*>(std::as_const(*this).begin());
}

Json* Json::end() {
  return const_cast<Json*>(std::as_const(*this).end());
}

bool Json::contains(std::string_view member) const {
  const auto* members = std::get_if<Object>(&value_);
  return members != nullptr && Find(*members, member) != nullptr;
}

Json& Json::operator[](std::string_view member) {
  if (is_null()) {
    value_ = Object();
  }
  auto& members = std::get<Object>(value_);
  const auto found =
      std::ranges::find_if(members, [member](const auto& one) { return one.name == member; });
  return found != members.end() ? found->value : members.emplace_back(member, Json()).value;
}

const Json& Json::operator[](std::string_view member) const {
  const auto* members = std::get_if<Object>(&value_);
  const JsonMember* found = members == nullptr ? nullptr : Find(*members, member);
  if (found == nullptr) {
    throw std::out_of_range("JSON has no member \"" + std::string(member) + "\"");
  }
  return found->value;
}

const Json& Json::at(std::size_t index) const {
  if (!is_array() || index >= size()) {
    throw std::out_of_range("JSON has no item " + std::to_string(index));
  }
  return begin()[index];
}

Json& Json::operator[](std::size_t index) {
  return const_cast<Json&>(at(index));
}

void Json::push_back(Json item) {
  if (is_null()) {
    value_ = Array();
  }
  std::get<Array>(value_).push_back(std::move(item));
}

void Json::erase(std::size_t index) {
  (void)at(index);
  auto& items = std::get<Array>(value_);
  items.erase(items.begin() + static_cast<std::ptrdiff_t>(index));
}

void Json::update(const Json& other) {
  for (const auto& [name, value] : other.items()) {
    (*this)[name] = value;
  }
}

bool operator==(const Json& left, const Json& right) {
  return left.value_ == right.value_;
}

std::ostream& operator<<(std::ostream& stream, const Json& json) {
  return stream << json.dump();
}

}  // namespace onu
