#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "host/AndroidTags.h"
#include "tools/camhook/commands/Commands.h"
#include "tools/camhook/explain/HookSteps.h"
#include "tools/camhook/input/Joined.h"
#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/NearNames.h"
#include "tools/camhook/input/TagCatalogue.h"
#include "tools/camhook/input/WholeNumber.h"
#include "tools/camhook/show/Terminal.h"

namespace camhook {
namespace {

bool isValue(std::string_view text, std::uint32_t value) {
  const bool isHexadecimal = text.starts_with("0x");
  if (isHexadecimal) text.remove_prefix(2);
  return wholeNumber<std::uint32_t>(text, isHexadecimal ? 16 : 10) == value;
}

/// The tag with this name or value; if there is none, the tags whose name or meaning contains the
/// text.
std::vector<TagDescription> tagsMatching(std::string_view text) {
  const std::string part = inLowerCase(text);
  const auto contains = [&](std::string_view words) {
    return inLowerCase(words).find(part) != std::string::npos;
  };
  std::vector<TagDescription> tags;
  for (const TagDescription& tag : kAllTags) {
    if (tag.name == text || isValue(text, tag.value)) return {tag};
    if (contains(tag.name) || contains(tag.meaning)) tags.push_back(tag);
  }
  return tags;
}

/// "int32[2]", "uint8[n]".
std::string formOf(const TagDescription& tag) {
  const std::string count = tag.count == kAnyCount ? "n" : std::to_string(tag.count);
  return std::string(tag.type) + "[" + count + "]";
}

/// Writes the names of a tag's values, then the steps that read and write the tag.
void writeDetails(const TagDescription& tag, Style style) {
  Columns values;
  if (const host::AndroidTag* const known = host::findAndroidTag(tag.value)) {
    for (const auto& [number, name] : known->values) {
      values.add({std::to_string(number), std::string(name)});
    }
  }
  values.write(std::cout, 2);
  using Place = std::tuple<std::string_view, std::string_view, bool>;
  std::map<Place, std::vector<std::string>> steps;
  for (const auto& [hook, step, isWrite, group, member] : kHookAccesses) {
    if (member == tag.name) steps[{hook, group, isWrite}].emplace_back(step);
  }
  Columns rows;
  for (const auto& [place, names] : steps) {
    const auto& [hook, group, isWrite] = place;
    rows.add({style.heading(hook), std::string(group), isWrite ? "written by" : "read by",
              joined(names, ", ")});
  }
  rows.write(std::cout, 2);
}

void writeText(const std::vector<TagDescription>& tags, Style style) {
  Columns columns;
  for (const TagDescription& tag : tags) {
    columns.add(
        {style.heading(tag.name), hexadecimal(tag.value), formOf(tag), style.faint(tag.meaning)});
  }
  columns.write(std::cout, 0);
  if (tags.size() == 1) writeDetails(tags.front(), style);
}

void writeList(const std::vector<TagDescription>& tags) {
  Json::List list;
  for (const auto& [name, value, type, count, meaning] : tags) {
    list.push_back({{"name", name},
                    {"value", hexadecimal(value)},
                    {"type", type},
                    {"count", count == kAnyCount ? Json() : Json(count)},
                    {"meaning", meaning}});
  }
  writeJson(std::cout, list);
}

int listTags(const std::string& text, bool json) {
  const std::vector<TagDescription> tags = tagsMatching(text);
  if (json) {
    writeList(tags);
  } else {
    writeText(tags, Style::forStandardOutput());
  }
  if (!tags.empty()) return 0;
  std::cerr << "camhook: no tag matches " << jsonText(text) << nearTags(text) << '\n';
  return 1;
}

}  // namespace

void writeTagsMarkdown(std::ostream& out) {
  out << "# Metadata tags\n\n"
         "All tags that the library reads or writes. A tag without a published name is listed by "
         "its value.\nWritten by `./camhook reference`.\n\n"
         "| Name | Value | Items | Meaning |\n|---|---|---|---|\n";
  for (const TagDescription& tag : kAllTags) {
    out << "| `" << tag.name << "` | `" << hexadecimal(tag.value) << "` | " << formOf(tag) << " | "
        << tag.meaning << " |\n";
  }
}

void addTags(CLI::App& app, int& status) {
  const auto text = std::make_shared<std::string>();
  const auto json = std::make_shared<bool>(false);
  CLI::App* command = app.add_subcommand("tags", "List the metadata tags, or describe one");
  command->add_option("TEXT", *text,
                      "Tag name or value (0x0001000d), or part of a name or meaning");
  command->add_flag("--json", *json, "Write the list as JSON");
  command->footer("Example:\n  camhook tags MTK_HESK_FRAME_COUNT");
  command->callback([text, json, &status] { status = listTags(*text, *json); });
}

}  // namespace camhook
