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
  throw InputError("camhook: --want: " + std::string(tag.name) + " has " +
                   std::to_string(tag.count) + " items: " + form +
                   lineOfJson(items.items().back()) + "]");
}

}  // namespace

Wanted::Wanted(const std::string& text, const Question& question) {
  const bool isReturn = question.container.empty();
  const bool isMode =
      isReturn && std::holds_alternative<DecideSensorScenario>(question.askedCall());
  mValue = isMode ? Json(sensorModeFrom(text)) : jsonFrom(text);
  if (isReturn || (mValue.isNull() && text != "_")) return;
  if (!mValue.isList() && !mValue.isObject()) mValue = Json(Json::List(1, mValue));
  std::vector<std::size_t> anyItems;
  Json& items = mValue.isObject() ? mValue["items"] : mValue;
  if (items.isList()) {
    if (const TagDescription* const tag = findTag(question.tag)) checkCount(items, *tag);
    for (std::size_t i = 0; i < items.size(); ++i) {
      if (!items[i].isNull()) continue;
      anyItems.push_back(i);
      items[i] = 0;
    }
  }
  mValue = jsonFromEntry(entryFromJson(question.tag, mValue, "camhook: --want"));
  for (const std::size_t i : anyItems) {
    if (i < mValue["items"].size()) mValue["items"][i] = nullptr;
  }
}

bool Wanted::isMetBy(const Json& value) const {
  if (!mValue.isObject() || value.size() != mValue.size()) return value == mValue;
  const auto isMet = [](const Json& wanted, const Json& item) {
    return wanted.isNull() || wanted == item;
  };
  return value["type"] == mValue["type"] &&
         std::ranges::equal(mValue["items"].items(), value["items"].items(), isMet);
}

}  // namespace camhook
