#include "tools/camhook/input/DumpEntry.h"

#include <algorithm>

#include "common/NumberText.h"
#include "host/AndroidTags.h"
#include "host/MetadataAccess.h"
#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/MetadataJson.h"
#include "tools/camhook/input/PlainText.h"
#include "tools/camhook/input/TagCatalogue.h"
#include "tools/camhook/input/WholeNumber.h"

namespace camhook {
namespace {

using NSCam::IMetadata;

constexpr std::size_t kNone = std::string_view::npos;

bool isLetterOrDigit(char letter) {
  return (letter >= '0' && letter <= '9') || (letter >= 'a' && letter <= 'z');
}

/// A line that ends with square brackets: the text before and in them.
struct Bracketed {
  std::string_view before;
  std::string_view inside;
};

std::optional<Bracketed> bracketedEnd(std::string_view line) {
  const auto isText = [](char letter) { return letter > ' ' && letter < '\x7f'; };
  while (!line.empty() && !isText(line.back())) line.remove_suffix(1);
  const std::size_t open = line.rfind('[');
  if (!line.ends_with(']') || open == kNone) return {};
  return Bracketed{line.substr(0, open), line.substr(open + 1, line.size() - open - 2)};
}

/// A value in the form of scenarios; a text if it is no value of the type.
Json jsonFromValue(std::string_view type, std::string_view text) {
  const std::size_t slash = text.find(" / ");
  if (type == "rational" && slash != kNone && text.ends_with(')')) {
    return Json::List{jsonFromValue("int32", text.substr(1, slash - 1)),
                      jsonFromValue("int32", text.substr(slash + 3, text.size() - slash - 4))};
  }
  if (type == "float") {
    if (text == "-nan") return "nan";
    const auto number = hesk::leadingNumber<float>(text);
    if (number && hesk::lengthOfDecimal(text) == text.size()) return *number;
  } else if (const auto number = wholeNumber<std::int64_t>(text)) {
    return *number;
  }
  return text;
}

}  // namespace

std::optional<DumpHead> findDumpHead(std::string_view line) {
  constexpr std::size_t kFewestDigits = 5;
  const auto end = bracketedEnd(line);
  if (!end) return {};
  const std::size_t close = end->before.rfind("): ");
  if (close == kNone) return {};
  const std::size_t open = end->before.rfind(" (", close);
  if (open == kNone || close - open - 2 < kFewestDigits) return {};
  const auto tag = wholeNumber<std::uint32_t>(end->before.substr(open + 2, close - open - 2), 16);
  const auto count = wholeNumber<std::size_t>(end->inside);
  const std::string_view type = end->before.substr(close + 3);
  std::string_view title = end->before.substr(0, close + 1);
  std::string_view name = title.substr(0, open);
  if (const std::size_t blank = name.find_last_of(" \t"); blank != kNone) {
    title.remove_prefix(blank + 1);
    name.remove_prefix(blank + 1);
  }
  const bool isNamed = name.find('.') != kNone;
  const bool isTyped = !type.empty() && std::ranges::all_of(type, isLetterOrDigit);
  if (!tag || !count || !isNamed || !isTyped) return {};
  return DumpHead{title, name, *tag, type, *count};
}

std::optional<std::string_view> findDumpRow(std::string_view line) {
  const auto end = bracketedEnd(line);
  if (!end || !end->inside.ends_with(' ')) return {};
  if (!end->before.empty() && end->before.back() > ' ') return {};
  return end->inside;
}

DumpEntry::DumpEntry(const DumpHead& head)
    : mTitle(printable(head.title)),
      mName(head.name),
      mTag(head.tag),
      mType(head.type),
      mCount(head.count) {}

void DumpEntry::addRow(std::string_view row) {
  while (!row.empty()) {
    const bool isInBrackets = row.starts_with('(');
    const std::size_t end = std::min(row.find(isInBrackets ? ')' : ' '), row.size() - 1);
    const std::string_view value = row.substr(0, end + (isInBrackets ? 1 : 0));
    // In lists of tags, the name in brackets follows the number.
    const bool isName = isInBrackets && mType != "rational";
    if (!value.empty() && !isName && mSeen++ < mCount) {
      mItems.push_back(jsonFromValue(mType, value));
    }
    row.remove_prefix(end + 1);
  }
}

void DumpEntry::checkCount(bool isCutOff) const {
  if (mCount == 0) throw InputError("has no values");
  if (mSeen == mCount) return;
  // A dump of verbosity 0 has no values, one of verbosity 1 the first 16.
  const bool isCutByVerbosity = !isCutOff && (mSeen == 0 || (mSeen == 16 && mCount > 16));
  throw InputError("has " + std::to_string(mSeen) + " of " + std::to_string(mCount) + " values" +
                   (isCutByVerbosity ? ", cut by the dump's verbosity" : ""));
}

IMetadata::IEntry DumpEntry::metadataEntry(bool isCutOff) const {
  std::string_view type = mType;
  if (type == "byte") type = "uint8";
  if (type == "double") throw InputError("scenarios have no type double");
  Json::List items = mItems;
  const TagDescription* info = findTag(mTag);
  if (info != nullptr && info->type == "rect" && type == "int32" && items.size() % 4 == 0) {
    type = info->type;
    items.clear();
    for (auto item = mItems.begin(); item != mItems.end(); item += 4) {
      items.emplace_back(Json::List(item, item + 4));
    }
  }
  const Json json = Json::Object{{"type", type}, {"items", std::move(items)}};
  auto entry = entryFromJson(mTag, json, "");
  checkCount(isCutOff);
  return entry;
}

std::string DumpEntry::warning(const IMetadata::IEntry& entry) const {
  const TagDescription* info = findTag(mTag);
  if (info == nullptr) return {};
  const host::AndroidTag* known = host::findAndroidTag(mTag);
  const std::string_view type = host::typeName(host::MetadataAccess::itemsOf(entry));
  std::string problem;
  if (mName.starts_with("android.") && (known == nullptr || known->name != mName)) {
    problem = "has the tag value of " + std::string(info->name);
  }
  if (type != info->type) {
    problem += (problem.empty() ? "has type " : " and type ") + std::string(type) +
               "; the catalogue has " + std::string(info->type);
  }
  return problem;
}

}  // namespace camhook
