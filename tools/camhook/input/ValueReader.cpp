#include "tools/camhook/input/ValueReader.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iomanip>
#include <iterator>
#include <sstream>

#include "tools/camhook/input/WholeNumber.h"

namespace camhook {
namespace {

/// Reads a list with a number for each of `targets`.
template <typename... Numbers>
void readTuple(const Value& value, const char* shape, Numbers&... targets) {
  std::array<std::int32_t*, sizeof...(targets)> numbers{&targets...};
  if (!value.isList() || value.size() != numbers.size()) return value.failUnless(shape);
  std::size_t index = 0;
  value.forEachItem([&](const Value& item) { readValue(item, *numbers[index++]); });
}

}  // namespace

std::optional<std::uint64_t> numberFromHexadecimal(std::string_view text) {
  if (!text.starts_with("0x")) return {};
  return wholeNumber<std::uint64_t>(text.substr(2), 16);
}

std::optional<std::tm> timeFrom(const std::string& text) {
  constexpr const char* kFormat = "%Y-%m-%dT%H:%M:%S";
  std::tm time{};
  std::istringstream(text) >> std::get_time(&time, kFormat);
  // UTC has no daylight saving time. timegm changes an invalid date to a valid one, which then
  // differs from the text.
  std::tm normal = time;
  if (timegm(&normal) == -1) return {};
  std::ostringstream again;
  again << std::put_time(&normal, kFormat);
  return again.str() == text ? std::optional(normal) : std::nullopt;
}

void readValue(const Value& value, bool& target) {
  if (!value.json().isBoolean()) return value.failUnless("true or false");
  target = value.json().isTrue();
}

void readValue(const Value& value, std::string& target) {
  if (!value.isText()) return value.failUnless("a text");
  target = value.text();
}

void readValue(const Value& value, float& target) {
  constexpr std::string_view kTexts[] = {"inf", "-inf", "nan"};
  if (value.json().isNumber()) {
    const double number = value.json().number();
    if (std::abs(number) >= kFirstBeyondFloats) {
      return value.fail("does not fit a float: " + value.shown());
    }
    target = static_cast<float>(number);
  } else if (value.isText() && std::ranges::find(kTexts, value.text()) != std::end(kTexts)) {
    target = std::strtof(value.text().c_str(), nullptr);
  } else {
    value.failUnless(R"(a number, or "inf", "-inf", "nan")");
  }
}

void readValue(const Value& value, NSCam::MSize& target) {
  readTuple(value, "[width, height]", target.w, target.h);
}

void readValue(const Value& value, NSCam::MRect& target) {
  readTuple(value, "[x, y, width, height]", target.x, target.y, target.w, target.h);
}

void readValue(const Value& value, NSCam::MRational& target) {
  readTuple(value, "[numerator, denominator]", target.numerator, target.denominator);
}

void readValue(const Value& value, std::array<std::int32_t, 2>& target) {
  readTuple(value, "a pair [a, b]", target[0], target[1]);
}

}  // namespace camhook
