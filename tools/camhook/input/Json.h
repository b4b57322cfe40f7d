// JSON values in memory.

#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <ranges>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace camhook {

/// A member of an object. A template, because `Json` is incomplete where it names its members.
template <typename Value>
struct JsonMember {
  std::string key;
  Value value;

  friend bool operator==(const JsonMember& left, const JsonMember& right) = default;
};

/// Objects keep the order of their keys.
class Json {
 public:
  using Member = JsonMember<Json>;
  using List = std::vector<Json>;
  using Object = std::vector<Member>;

  Json() = default;  // null
  Json(std::nullptr_t) {}
  template <std::same_as<bool> T>
  Json(T value) : mValue(value) {}
  template <std::integral T>
  requires(!std::same_as<T, bool>) Json(T number) {
    if (std::in_range<std::int64_t>(number)) {
      mValue = static_cast<std::int64_t>(number);
    } else {
      mValue = static_cast<std::uint64_t>(number);
    }
  }
  Json(double number) : mValue(number) {}
  /// The shortest number that reads back as the same float; "nan", "inf" and "-inf" are texts.
  Json(float number);
  Json(std::string text) : mValue(std::move(text)) {}
  Json(std::string_view text) : mValue(std::string(text)) {}
  Json(const char* text) : mValue(std::string(text)) {}
  Json(List items) : mValue(std::move(items)) {}
  Json(Object members) : mValue(std::move(members)) {}
  /// An object: Json{{"width", 640}, {"height", 480}}.
  Json(std::initializer_list<Member> members) : mValue(Object(members)) {}
  /// A list of values that convert to Json.
  template <std::ranges::range T>
  requires(!std::convertible_to<T, std::string_view> && !std::same_as<T, List> &&
           !std::same_as<T, Object>) Json(const T& list)
      : Json(List(std::ranges::begin(list), std::ranges::end(list))) {}

  [[nodiscard]] bool isNull() const { return is<std::monostate>(); }
  [[nodiscard]] bool isBoolean() const { return is<bool>(); }
  [[nodiscard]] bool isInteger() const { return is<std::int64_t>() || is<std::uint64_t>(); }
  [[nodiscard]] bool isNumber() const { return isInteger() || is<double>(); }
  [[nodiscard]] bool isText() const { return is<std::string>(); }
  [[nodiscard]] bool isList() const { return is<List>(); }
  [[nodiscard]] bool isObject() const { return is<Object>(); }

  [[nodiscard]] bool isTrue() const { return isBoolean() && std::get<bool>(mValue); }

  /// An integer that fits the type; nullopt for any other value.
  template <std::integral T>
  [[nodiscard]] std::optional<T> integer() const {
    if (const auto* number = std::get_if<std::int64_t>(&mValue)) {
      if (std::in_range<T>(*number)) return static_cast<T>(*number);
    } else if (const auto* large = std::get_if<std::uint64_t>(&mValue)) {
      if (std::in_range<T>(*large)) return static_cast<T>(*large);
    }
    return {};
  }

  // These throw std::bad_variant_access for a value of another kind.
  [[nodiscard]] double number() const;
  [[nodiscard]] const std::string& text() const { return std::get<std::string>(mValue); }
  [[nodiscard]] const List& items() const { return std::get<List>(mValue); }
  [[nodiscard]] List& items() { return std::get<List>(mValue); }
  [[nodiscard]] const Object& members() const { return std::get<Object>(mValue); }
  [[nodiscard]] Object& members() { return std::get<Object>(mValue); }

  /// The number of items or members; 0 for any other value.
  [[nodiscard]] std::size_t size() const;

  /// The value of an object's key; a null pointer if there is none, and for any other value.
  [[nodiscard]] const Json* find(std::string_view key) const;
  [[nodiscard]] Json* find(std::string_view key) {
    return const_cast<Json*>(std::as_const(*this).find(key));
  }

  /// Like `find`, but returns a null value if there is none.
  [[nodiscard]] const Json& operator[](std::string_view key) const;
  /// Returns the value of a key, which is added if there is none. Null becomes an object.
  Json& operator[](std::string_view key);

  [[nodiscard]] const Json& operator[](std::size_t index) const { return items().at(index); }
  Json& operator[](std::size_t index) { return items().at(index); }

  /// Removes a key and its value, if the object has it.
  void erase(std::string_view key);

  /// Adds an item to a list. Null becomes a list.
  void push_back(Json item);

  /// Where a parsed value and its key begin in the text; not part of the value.
  struct Offsets {
    std::uint32_t value = 0;
    std::uint32_t key = 0;
  };
  Offsets offsets;

  /// 0.0 and -0.0 differ.
  friend bool operator==(const Json& left, const Json& right);

 private:
  friend class JsonWriter;

  using Variant = std::variant<std::monostate, bool, std::int64_t, std::uint64_t, double,
                               std::string, List, Object>;

  template <typename T>
  [[nodiscard]] bool is() const {
    return std::holds_alternative<T>(mValue);
  }

  Variant mValue;
};

/// Parses a document. Throws InputError with the place of each fault. A repeated key of an object
/// is a fault.
Json parseJson(const std::string& text);

/// 32 bits as "0x0001000d".
std::string hexadecimal(std::uint32_t value);

}  // namespace camhook
