#include "tools/camhook/input/Json.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace camhook {

Json::Json(float number) {
  if (std::isfinite(number)) {
    std::array<char, 32> digits{};
    std::to_chars(digits.data(), digits.data() + digits.size(), number);
    mValue = std::strtod(digits.data(), nullptr);
  } else {
    mValue = std::isnan(number) ? "nan" : number < 0 ? "-inf" : "inf";
  }
}

double Json::number() const {
  if (const auto* number = std::get_if<std::int64_t>(&mValue)) return static_cast<double>(*number);
  if (const auto* large = std::get_if<std::uint64_t>(&mValue)) return static_cast<double>(*large);
  return std::get<double>(mValue);
}

std::size_t Json::size() const {
  if (isList()) return items().size();
  return isObject() ? members().size() : 0;
}

const Json* Json::find(std::string_view key) const {
  if (!isObject()) return nullptr;
  const auto found = std::ranges::find(members(), key, &Member::key);
  return found != members().end() ? &found->value : nullptr;
}

const Json& Json::operator[](std::string_view key) const {
  static const Json kNull;
  const Json* found = find(key);
  return found != nullptr ? *found : kNull;
}

Json& Json::operator[](std::string_view key) {
  if (isNull()) mValue = Object();
  if (Json* found = find(key)) return *found;
  return members().emplace_back(Member{std::string(key), {}}).value;
}

void Json::erase(std::string_view key) {
  if (isObject()) std::erase_if(members(), [&](const Member& member) { return member.key == key; });
}

void Json::push_back(Json item) {
  if (isNull()) mValue = List();
  items().push_back(std::move(item));
}

bool operator==(const Json& left, const Json& right) {
  return left.mValue == right.mValue &&
         (!left.is<double>() || std::signbit(left.number()) == std::signbit(right.number()));
}

std::string hexadecimal(std::uint32_t value) {
  std::array<char, 11> text{};
  std::snprintf(text.data(), text.size(), "0x%08x", value);
  return text.data();
}

}  // namespace camhook
