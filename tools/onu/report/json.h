/// @file
/// JSON values as the program makes, reads and compares them: members in the order in which they
/// were made. The names are those of nlohmann's library, which reads and writes the text; only
/// json_text.cpp knows it, because its header takes longer to compile than a whole file of the program.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iosfwd>
#include <optional>
#include <ranges>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace onu {

/// Version of every document's layout and of the journal's. A reader refuses what it does not know.
constexpr int kJsonVersion = 1;

class Json;
struct JsonMember;

template <typename Type>
concept JsonInteger = std::integral<Type> && !std::same_as<Type, bool>;

template <typename Type>
concept JsonString = std::convertible_to<const Type&, std::string_view>;

/// What becomes an array.
template <typename Type>
concept JsonList = std::ranges::input_range<Type> && !JsonString<Type> && !std::same_as<Type, Json>;

class Json {
 public:
  using Array = std::vector<Json>;
  using Object = std::vector<JsonMember>;

  Json();
  Json(const Json& other);
  Json(Json&& other) noexcept;
  Json& operator=(const Json& other);
  Json& operator=(Json&& other) noexcept;
  ~Json();

  Json(std::nullptr_t null);
  Json(bool value);
  Json(double value);
  // Templates, so that no list in braces is taken for the arguments of a string's constructor.
  template <JsonString String>
  Json(const String& text) : Json(Tag(), std::string_view(text)) {}
  template <JsonInteger Integer>
  Json(Integer value)
      : Json(Tag(), static_cast<std::uint64_t>(value), std::is_signed_v<Integer> && value < 0) {}
  template <JsonList List>
  Json(const List& list) : Json(Tag(), Array(std::ranges::begin(list), std::ranges::end(list))) {}
  /// An object.
  Json(std::initializer_list<JsonMember> members);

  static Json array(std::initializer_list<Json> items = {});
  static Json object();

  /// What the text says; nothing when it is no JSON.
  static std::optional<Json> parse(std::string_view text);

  /// The value on one line. Text that is not UTF-8 is written with replacement characters.
  [[nodiscard]] std::string dump() const;

  /// The value on several lines, for files that people read.
  [[nodiscard]] std::string dumpIndented() const;

  [[nodiscard]] bool is_null() const { return is<std::nullptr_t>(); }
  [[nodiscard]] bool is_boolean() const { return is<bool>(); }
  [[nodiscard]] bool is_string() const { return is<std::string>(); }
  [[nodiscard]] bool is_array() const { return is<Array>(); }
  [[nodiscard]] bool is_object() const { return is<Object>(); }

  /// The value as a boolean, an integer, a text or a list of these; throws std::bad_variant_access
  /// when it is none.
  template <typename Type>
  [[nodiscard]] Type get() const {
    if constexpr (std::same_as<Type, bool>) {
      return std::get<bool>(value_);
    } else if constexpr (JsonInteger<Type>) {
      return static_cast<Type>(is<std::int64_t>()
                                   ? std::get<std::int64_t>(value_)
                                   : static_cast<std::int64_t>(std::get<std::uint64_t>(value_)));
    } else if constexpr (std::same_as<Type, std::string>) {
      return std::get<std::string>(value_);
    } else if constexpr (std::same_as<Type, Array>) {
      return std::get<Array>(value_);
    } else {
      Type list;
      for (const Json& item : std::get<Array>(value_)) {
        list.push_back(item.get<typename Type::value_type>());
      }
      return list;
    }
  }

  /// Number of items or members; 0 of anything else.
  [[nodiscard]] std::size_t size() const;
  [[nodiscard]] bool empty() const { return size() == 0; }

  // The items of an array; none of anything else.
  [[nodiscard]] const Json* begin() const;
  [[nodiscard]] const Json* end() const;
  Json* begin();
  Json* end();

  /// The members of an object; throws std::bad_variant_access when it is none.
  [[nodiscard]] const Object& items() const { return std::get<Object>(value_); }

  [[nodiscard]] bool contains(std::string_view member) const;

  /// A member, which is made where the object has none of this name. A null becomes an object.
  Json& operator[](std::string_view member);
  /// A member; throws std::out_of_range when there is none.
  const Json& operator[](std::string_view member) const;

  /// An item; throws std::out_of_range when there is none.
  [[nodiscard]] const Json& at(std::size_t index) const;
  const Json& operator[](std::size_t index) const { return at(index); }
  Json& operator[](std::size_t index);
  Json& back() { return (*this)[size() - 1]; }
  [[nodiscard]] const Json& back() const { return at(size() - 1); }

  /// Appends an item. A null becomes an array.
  void push_back(Json item);

  /// Takes an item out of an array; throws std::out_of_range when there is none.
  void erase(std::size_t index);

  /// Sets all members that another object has.
  void update(const Json& other);

  friend bool operator==(const Json& left, const Json& right);
  friend std::ostream& operator<<(std::ostream& stream, const Json& json);

 private:
  friend struct JsonText;

  using Value = std::variant<std::nullptr_t, bool, std::int64_t, std::uint64_t, double, std::string,
                             Array, Object>;

  /// Tells the constructors below from the public ones. They are no templates, because a member's
  /// type is complete only behind this class.
  struct Tag {};
  Json(Tag tag, std::string_view text);
  Json(Tag tag, std::uint64_t value, bool negative);
  Json(Tag tag, Array items);

  template <typename Type>
  [[nodiscard]] bool is() const {
    return std::holds_alternative<Type>(value_);
  }

  Value value_;
};

/// Name and value of an object's member.
struct JsonMember {
  template <JsonString String, typename Value>
  JsonMember(const String& memberName, Value&& memberValue)
      : name(memberName), value(std::forward<Value>(memberValue)) {}
  template <JsonString String>
  JsonMember(const String& memberName, std::initializer_list<JsonMember> members)
      : name(memberName), value(members) {}

  friend bool operator==(const JsonMember& left, const JsonMember& right) = default;

  std::string name;
  Json value;
};

/// The value, or null.
template <typename Value>
Json OrNull(const std::optional<Value>& value) {
  return value ? Json(*value) : Json();
}

}  // namespace onu
