#include "tools/camhook/explain/Wanted.h"

#include <algorithm>
#include <cstddef>
#include <regex>
#include <variant>
#include <vector>

#include "tools/camhook/explain/SensorModeRules.h"
#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/Joined.h"
#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/MetadataJson.h"
#include "tools/camhook/input/TagCatalogue.h"
#include "tools/camhook/input/WholeNumber.h"
#include "tools/camhook/show/SensorModeName.h"

namespace camhook {
namespace {

std::int32_t sensorModeFrom(const std::string& text) {
  const auto number = wholeNumber<std::int32_t>(text);
  std::vector<std::string> valid;
  for (const SensorMode& mode : kSensorModes) {
    if (number ? number == mode.number : text == mode.name) return mode.number;
    valid.push_back(sensorModeText(mode.number));
  }
  throw InputError("camhook: --want: unknown sensor mode " + jsonText(text) +
                   "; valid: " + joined(valid, ", "));
}

/// The value as JSON, with null for each `_`.
Json jsonFrom(const std::string& text) {
  static const std::regex name("[A-Za-z]\\w*");
  const bool isWord = text == "null" || text == "true" || text == "false";
  if (!isWord && std::regex_match(text, name)) return text;
  std::string json;
  bool isInText = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '"' && (i == 0 || text[i - 1] != '\\')) isInText = !isInText;
    json += text[i] == '_' && !isInText ? std::string("null") : std::string(1, text[i]);
  }
  try {
    return parseJson(json);
  } catch (const InputError& error) {
    throw InputError("camhook: --want: " + std::string(error.what()));
  }
}

/// Throws InputError if there are fewer items than the tag has.
void checkCount(const Json& items, const TagDescription& tag) {
  if (items.size() == 0 || items.size() >= tag.count || items[0].isList() || tag.type == "rect" ||
      tag.type == "rational") {
    return;
  }
  std::string form = "[";
  for (std::size_t i = 1; i < tag.count; ++i) form += "_, ";
  const Json& last = items.items().back();
  form += last.isNull() ? "_]" : lineOfJson(last) + "]";
  throw InputError("camhook: --want: " + std::string(tag.name) + " has " +
                   std::to_string(tag.count) + " items: " + form);
}

/// Replaces null by `zero`, and in a list each null by 0.
void fillNulls(Json& item, const Json& zero) {
  if (item.isNull()) item = zero;
  for (std::size_t i = 0; item.isList() && i < item.size(); ++i) fillNulls(item[i], 0);
}

/// Sets the places to null that are null in `pattern`.
void copyNulls(const Json& pattern, Json& value) {
  if (pattern.isNull()) value = Json();
  if (!pattern.isList() || !value.isList()) return;
  for (std::size_t i = 0; i < std::min(pattern.size(), value.size()); ++i) {
    copyNulls(pattern[i], value[i]);
  }
}

/// True if the values are equal; null in `wanted` matches any item.
bool matches(const Json& wanted, const Json& value) {
  if (wanted.isNull()) return true;
  if (!wanted.isList() || !value.isList()) return wanted == value;
  return std::ranges::equal(wanted.items(), value.items(), matches);
}

}  // namespace

Wanted::Wanted(const std::string& text, const Question& question) {
  const bool isReturn = question.container.empty();
  const bool isMode =
      isReturn && std::holds_alternative<DecideSensorScenario>(question.askedCall());
  mValue = isMode ? Json(sensorModeFrom(text)) : jsonFrom(text);
  const bool isAny = text.find('_') != std::string::npos;
  if (isReturn || (mValue.isNull() && !isAny)) return;
  if (!mValue.isList() && !mValue.isObject()) mValue = Json(Json::List(1, mValue));
  Json* const items = mValue.isObject() ? mValue.find("items") : &mValue;
  Json pattern = Json::List();
  if (items != nullptr && items->isList()) {
    const TagDescription* const tag = findTag(question.tag);
    if (tag != nullptr) checkCount(*items, *tag);
    const std::size_t parts = tag != nullptr ? partsOf(tag->type) : 1;
    // [x, y, width, height] is one rect.
    const bool isTuple = parts > 1 && items->size() == parts && !(*items)[0].isList();
    if (isTuple) *items = Json(Json::List(1, *items));
    pattern = *items;
    for (Json& item : items->items()) {
      fillNulls(item, parts > 1 ? Json(Json::List(parts, 0)) : Json(0));
    }
  }
  mValue = jsonFromEntry(entryFromJson(question.tag, mValue, "camhook: --want"));
  if (mValue.isObject()) copyNulls(pattern, mValue["items"]);
}

bool Wanted::isMetBy(const Json& value) const {
  if (mValue.isNull() || value.isNull()) return value == mValue;
  if (!mValue.isObject() || !value.isObject()) return matches(mValue, value);
  return value["type"] == mValue["type"] && matches(mValue["items"], value["items"]);
}

}  // namespace camhook
