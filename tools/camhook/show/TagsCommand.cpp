#include "tools/camhook/show/TagsCommand.h"

#include <algorithm>
#include <cctype>
#include <ostream>
#include <string>
#include <vector>

#include "host/AndroidTags.h"
#include "tools/camhook/input/Json.h"
#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/TagCatalogue.h"
#include "tools/camhook/input/WholeNumber.h"

namespace camhook {
namespace {

bool holdsIgnoringCase(std::string_view text, std::string_view part) {
  const auto sameLetter = [](unsigned char left, unsigned char right) {
    return std::toupper(left) == std::toupper(right);
  };
  return part.empty() ||
         std::search(text.begin(), text.end(), part.begin(), part.end(), sameLetter) != text.end();
}

bool isValue(std::string_view text, std::uint32_t value) {
  const bool isHexadecimal = text.starts_with("0x");
  if (isHexadecimal) text.remove_prefix(2);
  return wholeNumber<std::uint32_t>(text, isHexadecimal ? 16 : 10) == value;
}

std::string countText(const TagDescription& tag) {
  return tag.count == kAnyCount ? "n" : std::to_string(tag.count);
}

void writeText(std::ostream& out, const std::vector<TagDescription>& tags, Style style) {
  Columns columns;
  for (const TagDescription& tag : tags) {
    columns.add({style.heading(tag.name), hexadecimal(tag.value),
                 std::string(tag.type) + "[" + countText(tag) + "]", style.faint(tag.meaning)});
  }
  columns.write(out, 0);
  const auto* const android = tags.size() == 1 ? host::findAndroidTag(tags[0].value) : nullptr;
  if (android == nullptr) return;
  Columns values;
  for (const auto& [number, name] : android->values) {
    values.add({std::to_string(number), std::string(name)});
  }
  values.write(out, 2);
}

void writeJsonList(std::ostream& out, const std::vector<TagDescription>& tags) {
  Json::List list;
  for (const TagDescription& tag : tags) {
    const bool varies = tag.count == kAnyCount;
    list.push_back(Json::Object{{"name", tag.name},
                                {"value", hexadecimal(tag.value)},
                                {"type", tag.type},
                                {"count", varies ? Json() : Json(tag.count)},
                                {"meaning", tag.meaning}});
  }
  writeJson(out, list);
}

void writeMarkdown(std::ostream& out, const std::vector<TagDescription>& tags) {
  out << "# Metadata tags\n\n"
         "All tags that the library reads or writes. A tag without a published name is listed by "
         "its value.\nWritten by `./camhook reference`.\n\n"
         "| Name | Value | Items | Meaning |\n|---|---|---|---|\n";
  for (const TagDescription& tag : tags) {
    out << "| `" << tag.name << "` | `" << hexadecimal(tag.value) << "` | " << tag.type << '['
        << countText(tag) << "] | " << tag.meaning << " |\n";
  }
}

}  // namespace

bool listTags(std::ostream& out, std::string_view filter, TagsFormat format, Style style) {
  std::vector<TagDescription> tags;
  std::ranges::copy_if(kAllTags, std::back_inserter(tags), [&](const TagDescription& tag) {
    return holdsIgnoringCase(tag.name, filter) || holdsIgnoringCase(tag.meaning, filter) ||
           isValue(filter, tag.value);
  });
  switch (format) {
    case TagsFormat::text: writeText(out, tags, style); break;
    case TagsFormat::json: writeJsonList(out, tags); break;
    case TagsFormat::markdown: writeMarkdown(out, tags); break;
  }
  return !tags.empty();
}

}  // namespace camhook
