#include "tools/camhook/input/DumpEntry.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <system_error>
#include <utility>
#include <variant>

#include "common/NumberText.h"
#include "host/AndroidTags.h"
#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/Json.h"
#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/TagCatalogue.h"
#include "tools/camhook/input/WholeNumber.h"

namespace camhook {
namespace {

using NSCam::IMetadata;
using NSCam::MRational;
using NSCam::MRect;

constexpr std::size_t kNone = std::string_view::npos;

/// A text of the dump for a message, cut where it grows out of all proportion.
std::string shortened(std::string_view text) {
  constexpr std::size_t kMost = 60;
  return text.size() <= kMost ? printable(text) : printable(text.substr(0, kMost)) + "...";
}

/// Without what is no text at its end.
std::string_view trimmed(std::string_view line) {
  const auto isText = [](char letter) { return letter > ' ' && letter < '\x7f'; };
  while (!line.empty() && !isText(line.back())) line.remove_suffix(1);
  return line;
}

bool isLetterOrDigit(char letter) {
  return (letter >= '0' && letter <= '9') || (letter >= 'a' && letter <= 'z');
}

/// What stands in square brackets at the end of a line, and what stands before it.
struct Bracketed {
  std::string_view before;
  std::string_view inside;
};

std::optional<Bracketed> bracketedEnd(std::string_view line) {
  line = trimmed(line);
  if (!line.ends_with(']')) return {};
  const std::size_t open = line.rfind('[');
  if (open == kNone) return {};
  return Bracketed{line.substr(0, open), line.substr(open + 1, line.size() - open - 2)};
}

/// No items yet, of a dump's type in the types of a scenario. None where a scenario has none such.
std::optional<host::ItemList> itemsOfType(std::string_view type) {
  if (type == "byte") return std::vector<std::uint8_t>();
  if (type == "int32") return std::vector<std::int32_t>();
  if (type == "int64") return std::vector<std::int64_t>();
  if (type == "float") return std::vector<float>();
  if (type == "rational") return std::vector<MRational>();
  return {};
}

// Each reads one value and returns what is wrong with it, null where nothing is.
constexpr const char* kNoNumber = " is no number, nor a name whose number is known";
constexpr const char* kDoesNotFit = " does not fit the type";

template <typename T>
const char* readValue(T& value, std::string_view text) {
  const char* const end = text.data() + text.size();
  std::int64_t number = 0;
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (stop != end || error == std::errc::invalid_argument) return kNoNumber;
  if (error != std::errc() || !std::in_range<T>(number)) return kDoesNotFit;
  value = static_cast<T>(number);
  return nullptr;
}

const char* readValue(float& value, std::string_view text) {
  const bool isNegative = text.starts_with('-');
  const std::string_view word = text.substr(isNegative ? 1 : 0);
  if (word == "nan") {
    value = std::numeric_limits<float>::quiet_NaN();
  } else if (word == "inf") {
    value = isNegative ? -std::numeric_limits<float>::infinity()
                       : std::numeric_limits<float>::infinity();
  } else {
    if (text.empty() || hesk::lengthOfDecimal(text) != text.size()) return kNoNumber;
    value = std::strtof(std::string(text).c_str(), nullptr);
    if (std::isinf(value)) return kDoesNotFit;
  }
  return nullptr;
}

/// "(1 / 2)".
const char* readValue(MRational& value, std::string_view text) {
  const std::size_t slash = text.find(" / ");
  if (slash == kNone || !text.starts_with('(') || !text.ends_with(')')) return kNoNumber;
  const char* problem = readValue(value.numerator, text.substr(1, slash - 1));
  if (problem != nullptr) return problem;
  return readValue(value.denominator, text.substr(slash + 3, text.size() - slash - 4));
}

/// No dump says that its numbers are a rectangle.
const char* readValue(MRect& /*value*/, std::string_view /*text*/) { return kNoNumber; }

template <typename T>
IMetadata::IEntry entryOf(std::uint32_t tag, const std::vector<T>& items) {
  IMetadata::IEntry entry(tag);
  for (const T& item : items) entry.push_back(item, NSCam::Type2Type<T>());
  return entry;
}

std::vector<MRect> rectanglesOf(const std::vector<std::int32_t>& numbers) {
  std::vector<MRect> rectangles;
  for (std::size_t i = 0; i < numbers.size(); i += 4) {
    rectangles.push_back({numbers[i], numbers[i + 1], numbers[i + 2], numbers[i + 3]});
  }
  return rectangles;
}

}  // namespace

std::optional<DumpHead> dumpHeadOf(std::string_view line) {
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
  std::string_view name = end->before.substr(0, open);
  if (const std::size_t blank = name.find_last_of(" \t"); blank != kNone) {
    name.remove_prefix(blank + 1);
  }
  const bool isNamed = name.find('.') != kNone;
  const bool isTyped = !type.empty() && std::ranges::all_of(type, isLetterOrDigit);
  if (!tag || !count || !isNamed || !isTyped) return {};
  return DumpHead{name, *tag, type, *count};
}

std::optional<std::string_view> dumpRowOf(std::string_view line) {
  const auto end = bracketedEnd(line);
  if (!end || !end->inside.ends_with(' ')) return {};
  if (!end->before.empty() && end->before.back() > ' ') return {};
  return end->inside;
}

DumpEntry::DumpEntry(const DumpHead& head)
    : mName(shortened(head.name)), mTag(head.tag), mType(shortened(head.type)), mCount(head.count) {
  if (auto items = itemsOfType(head.type)) {
    mItems = *std::move(items);
  } else {
    mProblem = "a scenario has no values of type " + mType;
  }
}

void DumpEntry::addRow(std::string_view row) {
  while (!row.empty()) {
    const bool isInBrackets = row.starts_with('(');
    const std::size_t end = std::min(row.find(isInBrackets ? ')' : ' '), row.size() - 1);
    const std::string_view value = row.substr(0, end + (isInBrackets ? 1 : 0));
    // In lists of tags the name stands in brackets behind the number.
    const bool isName = isInBrackets && mType != "rational";
    if (!value.empty() && !isName) addValue(value);
    row.remove_prefix(end + 1);
  }
}

void DumpEntry::addValue(std::string_view text) {
  ++mSeen;
  if (!mProblem.empty() || mSeen > mCount) return;
  std::string number;
  if (const host::AndroidTag* known = host::findAndroidTag(mTag)) {
    if (const auto named = known->numberOf(text)) number = std::to_string(*named);
  }
  const char* problem = std::visit(
      [&]<typename T>(std::vector<T>& items) {
        return readValue(items.emplace_back(), number.empty() ? text : number);
      },
      mItems);
  if (problem != nullptr) mProblem = jsonText(shortened(text)) + problem;
}

std::string DumpEntry::title() const {
  std::string number = hexadecimal(mTag).substr(2);
  number.erase(0, std::min(number.find_first_not_of('0'), number.size() - 5));
  return shortened(mName) + " (" + number + ")";
}

std::string DumpEntry::problem(bool isCutOff) const {
  if (!mProblem.empty()) return mProblem;
  if (mCount == 0) return "has no values";
  if (mSeen == mCount) return {};
  // A dump of verbosity 0 shows no value, one of verbosity 1 the first 16.
  const bool isCutByVerbosity = !isCutOff && (mSeen == 0 || (mSeen == 16 && mCount > 16));
  return "has " + std::to_string(mSeen) + " values of " + std::to_string(mCount) +
         (isCutByVerbosity ? ", cut by the dump's verbosity" : "");
}

IMetadata::IEntry DumpEntry::take() const {
  const TagDescription* info = findTag(mTag);
  const auto* numbers = std::get_if<std::vector<std::int32_t>>(&mItems);
  if (info != nullptr && info->type == "rect" && numbers != nullptr && numbers->size() % 4 == 0) {
    return entryOf(mTag, rectanglesOf(*numbers));
  }
  return std::visit([this](const auto& items) { return entryOf(mTag, items); }, mItems);
}

std::string DumpEntry::doubt(const IMetadata::IEntry& taken) const {
  const TagDescription* info = findTag(mTag);
  if (info == nullptr) return {};
  const host::AndroidTag* known = host::findAndroidTag(mTag);
  const bool isAndroids = mName.starts_with("android.");
  const std::string_view type = host::typeName(host::MetadataAccess::itemsOf(taken));
  std::string doubt;
  if (isAndroids && (known == nullptr || known->name != mName)) {
    doubt = " stands under the number of " + std::string(info->name);
  }
  if (!taken.isEmpty() && type != info->type) {
    doubt += (doubt.empty() ? " is " : ", and is ") + std::string(type) + ", in the catalogue " +
             std::string(info->type);
  }
  return doubt;
}

}  // namespace camhook
