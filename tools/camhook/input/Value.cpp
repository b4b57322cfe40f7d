#include "tools/camhook/input/Value.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/JsonParser.h"
#include "tools/camhook/input/PlainText.h"

namespace camhook {
namespace {

/// "calls[3]" and "meta" as "calls[3].meta".
std::string joinPlaces(std::string outer, std::string_view inner) {
  if (!outer.empty() && !inner.empty() && inner.front() != '[') outer += '.';
  return outer.append(inner);
}

/// The path to the value or key at an address in `value`, whose own path is `place`.
std::optional<std::string> findIn(const Json& value, const void* wanted, const std::string& place) {
  if (&value == wanted) return place;
  std::optional<std::string> found;
  if (value.isList()) {
    for (std::size_t i = 0; i < value.size() && !found; ++i) {
      found = findIn(value[i], wanted, place + '[' + std::to_string(i) + ']');
    }
  } else if (value.isObject()) {
    for (const auto& [key, member] : value.members()) {
      const std::string path = joinPlaces(place, printable(key));
      found = &key == wanted ? path : findIn(member, wanted, path);
      if (found) break;
    }
  }
  return found;
}

}  // namespace

Fault Located::faultAt(std::string problem, std::string_view key) const {
  std::string place = mSource->call ? "calls[" + std::to_string(*mSource->call) + ']' : "";
  place = joinPlaces(findIn(mSource->root, mPlace, place).value_or(place), key);
  if (mSource->text == nullptr) return {.place = std::move(place), .problem = std::move(problem)};
  return camhook::faultAt(*mSource->text, mOffset, std::move(place), std::move(problem));
}

std::string Value::shown() const {
  constexpr std::size_t kMaxColumns = 40;
  if (mJson->isText()) return '"' + printable(mJson->text(), kMaxColumns) + '"';
  if (mJson->isList()) return "a list of " + std::to_string(mJson->size());
  return mJson->isObject() ? "an object" : lineOfJson(*mJson);
}

void Value::failUnless(const std::string& expected) const {
  fail("expected " + expected + ", found " + shown());
}

void Value::failRepeatedKeys() const {
  if (mJson->isList()) forEachItem([](const Value& item) { item.failRepeatedKeys(); });
  if (!mJson->isObject()) return;
  std::vector<const Json::Member*> members;
  members.reserve(mJson->size());
  for (const Json::Member& member : mJson->members()) {
    members.push_back(&member);
    Value(*mSource, member.value).failRepeatedKeys();
  }
  // Equal keys become neighbours, in their order in the text. Lengths are faster to compare.
  std::ranges::stable_sort(members, {}, [](const Json::Member* member) {
    return std::pair(member->key.size(), std::string_view(member->key));
  });
  for (std::size_t i = 1; i < members.size(); ++i) {
    if (members[i - 1]->key == members[i]->key) Key(*mSource, *members[i]).fail("duplicate key");
  }
}

void throwFirst(std::string_view place, const Faults& faults) {
  if (faults.isEmpty()) return;
  const Fault& fault = faults.shown().front();
  const std::string at = joinPlaces(std::string(place), fault.place);
  throw InputError(at.empty() ? fault.problem : at + ": " + fault.problem);
}

Json parseJson(const std::string& text) {
  Faults faults;
  std::optional<Json> json = parseDocument(text, faults);
  if (json) Value(Source{.root = *json, .faults = faults, .text = &text}).failRepeatedKeys();
  if (!faults.isEmpty()) throw InputError(std::move(faults));
  return *std::move(json);
}

}  // namespace camhook
