#include "tools/camhook/explain/Wanted.h"

#include <algorithm>
#include <cstddef>

#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/MetadataJson.h"
#include "tools/camhook/input/TagCatalogue.h"

namespace camhook {
namespace {

/// The value as JSON, with null for each `_`.
Json jsonFrom(const std::string& text) {
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

/// The form of a tag's value: "[_, 30]".
std::string formOf(std::size_t count, const Json& last) {
  std::string form = "[";
  for (std::size_t i = 1; i < count; ++i) form += "_, ";
  return form + lineOfJson(last) + "]";
}

}  // namespace

Wanted::Wanted(const std::string& text, const Question& question) {
  Json json = jsonFrom(text);
  if (question.container.empty() || (json.isNull() && text != "_")) {
    mValue = AnyValue(std::move(json));
    return;
  }
  if (!json.isList() && !json.isObject()) json = Json(Json::List(1, json));
  Json& items = json.isObject() ? json["items"] : json;
  if (items.isList()) {
    const TagDescription* const tag = findTag(question.tag);
    if (tag != nullptr && items.size() > 0 && items.size() < tag->count && !items[0].isList() &&
        tag->type != "rect" && tag->type != "rational") {
      throw InputError("camhook: --want: " + std::string(tag->name) + " has " +
                       std::to_string(tag->count) +
                       " items: " + formOf(tag->count, items.items().back()));
    }
    for (Json& item : items.items()) {
      mIsAny.push_back(item.isNull());
      if (item.isNull()) item = 0;
    }
  }
  mValue = AnyValue(entryFromJson(question.tag, json, "--want"));
}

bool Wanted::isMetBy(const AnyValue& value) const {
  if (value == mValue) return true;
  const bool hasAny = std::ranges::find(mIsAny, true) != mIsAny.end();
  if (!hasAny || value.entry().count() != mIsAny.size()) return false;
  const Json wanted = mValue.json();
  Json json = value.json();
  for (std::size_t i = 0; i < mIsAny.size(); ++i) {
    if (mIsAny[i]) json["items"][i] = wanted["items"][i];
  }
  return json == wanted;
}

}  // namespace camhook
