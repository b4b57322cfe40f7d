#include "tools/camhook/input/Value.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/JsonParser.h"

namespace camhook {
namespace {

/// "calls[3]" and "meta" as "calls[3].meta".
std::string joinPlaces(std::string outer, std::string_view inner) {
  if (!outer.empty() && !inner.empty() && inner.front() != '[') outer += '.';
  return outer.append(inner);
}

/// The path from `value` to the value or key at an address in it: "meta.HESK_CONTROL_ISO[1]".
std::optional<std::string> findIn(const Json& value, const void* wanted) {
  if (&value == wanted) return "";
  const auto findItem = [&](const std::string& step,
                            const Json& item) -> std::optional<std::string> {
    const auto rest = findIn(item, wanted);
    return rest ? std::optional(joinPlaces(step, *rest)) : std::nullopt;
  };
  if (value.isList()) {
    for (std::size_t i = 0; i < value.size(); ++i) {
      if (auto found = findItem('[' + std::to_string(i) + ']', value[i])) return found;
    }
  } else if (value.isObject()) {
    for (const auto& [key, member] : value.members()) {
      const std::string step = printable(key);
      if (&key == wanted) return step;
      if (auto found = findItem(step, member)) return found;
    }
  }
  return {};
}

}  // namespace

Fault Located::faultAt(std::string problem, std::string_view key) const {
  std::string place = mSource->call ? "calls[" + std::to_string(*mSource->call) + ']' : "";
  place = joinPlaces(std::move(place), findIn(mSource->root, mPlace).value_or(""));
  place = joinPlaces(std::move(place), key);
  if (mSource->text == nullptr) return {.place = std::move(place), .problem = std::move(problem)};
  return camhook::faultAt(*mSource->text, mOffset, std::move(place), std::move(problem));
}

std::string Value::shown() const {
  constexpr std::size_t kMostColumns = 40;
  if (mJson->isText()) return '"' + printable(mJson->text(), kMostColumns) + '"';
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
