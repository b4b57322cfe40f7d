#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "tools/camhook/input/Document.h"

namespace camhook {

std::optional<Value> Value::find(std::string_view key) const {
  std::uint32_t at = mNode + 1;
  for (std::size_t left = isObject() ? size() : 0; left > 0; --left) {
    if (mDocument->textOf(at) == key) return Value(*mDocument, at + 1);
    at = mDocument->nextOf(at + 1);
  }
  return {};
}

std::string Value::shown() const {
  constexpr std::size_t kMostColumns = 40;
  switch (kind()) {
    case Kind::null: return "null";
    case Kind::boolean: return isTrue() ? "true" : "false";
    case Kind::number: return cutBehind(text(), kMostColumns);
    case Kind::text:
    case Kind::escapedText: return '"' + cutBehind(printable(text()), kMostColumns) + '"';
    case Kind::list: return "a list of " + std::to_string(size());
    case Kind::object: break;
  }
  return "an object";
}

Fault Value::faultHere(std::string problem) const {
  return mDocument->faultAt(node().start, mDocument->placeOf(mNode), std::move(problem));
}

double Value::number() const {
  // Not every library's std::from_chars reads floats. Few numbers have more digits.
  std::array<char, 64> digits{};
  const std::string_view all = text();
  if (all.size() >= digits.size()) return std::strtod(std::string(all).c_str(), nullptr);
  std::ranges::copy(all, digits.begin());
  return std::strtod(digits.data(), nullptr);
}

Json Value::json() const {
  if (isText()) return std::string(text());
  if (isBoolean()) return isTrue();
  if (isNumber()) return jsonFromDigits();
  Json json;
  if (isList()) {
    json = Json::array();
    forEachItem([&](const Value& item) { json.push_back(item.json()); });
  } else if (isObject()) {
    json = Json::object();
    auto& members = membersOf(json);
    forEachMember([&](const Value& key, const Value& value) {
      members.emplace_back(std::string(key.text()), value.json());
    });
  }
  return json;
}

Json Value::jsonFromDigits() const {
  const std::string_view digits = text();
  const char* const end = digits.data() + digits.size();
  if (digits.find_first_of(".eE") == std::string_view::npos) {
    std::int64_t number = 0;
    if (std::from_chars(digits.data(), end, number).ec == std::errc()) {
      // As the parser has it that reads traces back.
      return number < 0 ? Json(number) : Json(static_cast<std::uint64_t>(number));
    }
    std::uint64_t large = 0;
    if (std::from_chars(digits.data(), end, large).ec == std::errc()) return large;
  }
  if (std::isinf(number())) fail("no number is this large");
  return number();
}

void Value::fail(const std::string& problem) const {
  mDocument->mFaults.add(isHeard() ? faultHere(problem) : Fault());
}

void Value::failUnless(const std::string& expected) const {
  if (!isHeard()) return mDocument->mFaults.add({});
  fail("must be " + expected + ", not " + shown());
}

void Value::failAt(std::string_view key, const std::string& problem) const {
  Fault fault;
  if (isHeard()) {
    fault = faultHere(problem);
    if (!fault.place.empty()) fault.place += '.';
    fault.place += printable(key);
  }
  mDocument->mFaults.add(std::move(fault));
}

Json::object_t::Container& membersOf(Json& object) { return object.get_ref<Json::object_t&>(); }

void refuse(const Place& place, const Faults& faults) {
  if (faults.isEmpty()) return;
  const Fault& fault = faults.shown().front();
  std::string at = place.text();
  if (!at.empty() && !fault.place.empty() && fault.place.front() != '[') at += '.';
  at += fault.place;
  throw InputError(at.empty() ? fault.problem : at + ": " + fault.problem);
}

}  // namespace camhook
