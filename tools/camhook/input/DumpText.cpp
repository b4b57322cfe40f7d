#include "tools/camhook/input/DumpText.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <ostream>
#include <sstream>
#include <string>

#include "common/NumberText.h"
#include "common/tags/TagCatalogue.h"
#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/MetadataJson.h"

namespace camhook {
namespace {

/// The head of an entry: "  vendor.HESK_CONTROL_HISFRAME (c0030085): int32[2]".
struct EntryHead {
  std::uint32_t tag = 0;
  std::string_view type;
  std::size_t count = 0;
};

/// The number that a text begins with, behind which `end` must follow.
template <typename T>
std::optional<T> numberBefore(std::string_view text, std::string_view end, int base = 10) {
  T number{};
  const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
  const auto length = static_cast<std::size_t>(stop - text.data());
  if (error != std::errc() || !text.substr(length).starts_with(end)) return {};
  return number;
}

std::optional<EntryHead> entryHead(std::string_view line) {
  const std::size_t tag = line.rfind(" (");
  const std::size_t type = line.rfind("): ");
  const std::size_t count = line.rfind('[');
  constexpr std::size_t kNone = std::string_view::npos;
  if (tag == kNone || type == kNone || count == kNone || count < type) return {};
  const auto value = numberBefore<std::uint32_t>(line.substr(tag + 2), "): ", 16);
  const auto items = numberBefore<std::size_t>(line.substr(count + 1), "]");
  if (!value || !items) return {};
  return EntryHead{*value, line.substr(type + 3, count - type - 3), *items};
}

/// The lines of a dump, and the place in it for complaints.
class Lines {
 public:
  explicit Lines(std::string_view text) : mText(text) {}

  std::optional<std::string_view> next() {
    if (mText.empty()) return {};
    const std::size_t end = std::min(mText.find('\n'), mText.size());
    const std::string_view line = mText.substr(0, end);
    mText.remove_prefix(std::min(end + 1, mText.size()));
    ++mNumber;
    return line;
  }

  [[noreturn]] void fail(const std::string& problem) const {
    throw InputError("line " + std::to_string(mNumber) + ": " + problem);
  }

 private:
  std::string_view mText;
  std::size_t mNumber = 0;
};

/// One value of a row.
Json valueFromText(const std::string& text, std::string_view type, const Lines& lines) {
  if (type == "float") {
    if (text == "nan" || text == "-nan") return "nan";
    if (text == "inf" || text == "-inf") return text;
    const auto number = hesk::leadingNumber<float>(text);
    if (number && hesk::lengthOfDecimal(text) == text.size()) return jsonFromFloat(*number);
  } else {
    const char* const end = text.data() + text.size();
    std::int64_t number = 0;
    if (std::from_chars(text.data(), end, number).ptr == end) return number;
  }
  lines.fail(jsonText(text) + " is no number");
}

/// The values of an entry, from the rows "[1 2 3 4 ]" or "[(1 / 2) (3 / 4) ]" below its head.
Json valuesOf(const EntryHead& head, Lines& lines) {
  const std::size_t wanted = head.type == "rational" ? 2 * head.count : head.count;
  Json values = Json::array();
  while (values.size() < wanted) {
    const auto line = lines.next();
    if (!line || entryHead(*line)) {
      lines.fail(tagText(head.tag) + " has " + std::to_string(values.size()) + " values of " +
                 std::to_string(wanted));
    }
    std::string row(*line);
    for (char& letter : row) {
      if (std::string_view("[]()/").find(letter) != std::string_view::npos) letter = ' ';
    }
    std::istringstream words(row);
    for (std::string word; words >> word;) {
      values.push_back(valueFromText(word, head.type, lines));
    }
  }
  return values;
}

/// What a scenario calls a type of the dump; empty where it knows none.
std::string_view itemType(std::string_view type) {
  if (type == "byte") return "uint8";
  const bool isKnown = type == "int32" || type == "int64" || type == "float" || type == "rational";
  return isKnown ? type : "";
}

/// The values in groups of `size`, an item each.
Json grouped(const Json& values, std::size_t size) {
  Json items = Json::array();
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (i % size == 0) items.push_back(Json::array());
    items.back().push_back(values[i]);
  }
  return items;
}

/// The items of an entry, in the short form where they are of the catalogue's type.
Json entryJson(const EntryHead& head, const Json& values) {
  const hesk::TagDescription* info = hesk::findTag(head.tag);
  std::string_view type = itemType(head.type);
  Json items = values;
  if (type == "rational") items = grouped(values, 2);
  // A dump shows a rectangle as its numbers.
  if (info != nullptr && info->type == "rect" && type == "int32" && head.count % 4 == 0) {
    type = "rect";
    items = grouped(values, 4);
  }
  if (info == nullptr || info->type != type) return {{"type", type}, {"items", items}};
  return items.size() == 1 ? items.front() : items;
}

/// How many entries the first line announces: "Camera metadata: 12 entries".
std::size_t announcedEntries(Lines& lines) {
  const std::string_view line = lines.next().value_or("");
  const std::size_t colon = line.find(": ");
  if (colon != std::string_view::npos) {
    if (const auto count = numberBefore<std::size_t>(line.substr(colon + 2), " entr")) {
      return *count;
    }
  }
  lines.fail("no dump of metadata, which begins with the number of its entries");
}

/// The head of the next entry; what else a phone says before it is passed over.
std::optional<EntryHead> nextEntry(Lines& lines) {
  while (const auto line = lines.next()) {
    if (const auto head = entryHead(*line)) return head;
  }
  return {};
}

}  // namespace

Json metadataFromDump(std::string_view text, std::ostream& notes) {
  Lines lines(text);
  Json metadata = Json::object();
  for (std::size_t missing = announcedEntries(lines); missing > 0; --missing) {
    const auto head = nextEntry(lines);
    if (!head) lines.fail("entries missing: " + std::to_string(missing));
    if (head->type == "double") {
      notes << "left out, of doubles: " << tagText(head->tag) << '\n';
      valuesOf({.tag = head->tag, .type = "float", .count = head->count}, lines);
      continue;
    }
    if (itemType(head->type).empty()) lines.fail("unknown type " + jsonText(head->type));
    metadata[tagText(head->tag)] = entryJson(*head, valuesOf(*head, lines));
  }
  return metadata;
}

}  // namespace camhook
