// A log message, checked against its arguments at compile time.

#pragma once

#include <array>
#include <cstddef>
#include <string_view>
#include <type_traits>

namespace hesk::log {

/// What a placeholder takes, as far as the caller and printf must agree on it.
enum class Placeholder { none, int32, int64, floating, text, address };

/// The placeholder that takes a `T`.
template <typename T>
consteval Placeholder placeholderFor() {
  if constexpr (std::is_integral_v<T>) {
    return sizeof(T) <= sizeof(int) ? Placeholder::int32 : Placeholder::int64;
  } else if constexpr (std::is_floating_point_v<T>) {
    return Placeholder::floating;
  } else if constexpr (std::is_convertible_v<T, const char*>) {
    return Placeholder::text;
  } else {
    static_assert(std::is_pointer_v<T>, "printf does not take arguments of this type");
    return Placeholder::address;
  }
}

/// Takes the next placeholder off the front of `text`, with all that stands before it; none where
/// there is none left. Knows the conversions that the library uses: d, u, x, c, f, s and p.
consteval Placeholder takePlaceholder(std::string_view& text) {
  while (true) {
    const std::size_t percent = text.find('%');
    if (percent == std::string_view::npos) return Placeholder::none;
    text.remove_prefix(percent + 1);
    if (!text.starts_with('%')) break;
    text.remove_prefix(1);
  }
  text.remove_prefix(text.find_first_not_of("-+ #.0123456789"));
  const bool isLong = text.starts_with('l');
  text.remove_prefix(text.find_first_not_of('l'));
  const char conversion = text.front();
  text.remove_prefix(1);
  switch (conversion) {
    case 'd':
    case 'u':
    case 'x': return isLong ? Placeholder::int64 : Placeholder::int32;
    case 'c': return Placeholder::int32;
    case 'f': return Placeholder::floating;
    case 's': return Placeholder::text;
    case 'p': return Placeholder::address;
    default: throw "the message has a conversion that the log does not know";
  }
}

/// A message for arguments of these types. A message that begins with "[%s]" begins with the
/// operation's name, which is not among them.
template <typename... Args>
class Message {
 public:
  template <std::size_t Size>
  // Implicit, so that a call of the log reads as one of printf.
  consteval Message(const char (&text)[Size])
      : mText(text), mNamesOperation(std::string_view(text).starts_with("[%s]")) {
    std::string_view rest(text);
    if (mNamesOperation) takePlaceholder(rest);
    // One more than there are arguments: behind the last the message must have no placeholder left.
    for (const Placeholder argument :
         std::array<Placeholder, sizeof...(Args) + 1>{placeholderFor<Args>()...}) {
      if (takePlaceholder(rest) != argument) throw "the arguments do not fit the message";
    }
  }

  [[nodiscard]] const char* text() const noexcept { return mText; }
  [[nodiscard]] bool namesOperation() const noexcept { return mNamesOperation; }

 private:
  const char* mText;
  bool mNamesOperation;
};

}  // namespace hesk::log
