#include "tools/camhook/input/JsonParser.h"

#include <rapidjson/error/en.h>
#include <rapidjson/reader.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include "tools/camhook/input/PlainText.h"

namespace camhook {
namespace {

constexpr std::string_view kByteOrderMark = "\xef\xbb\xbf";
constexpr std::size_t kDeepestNesting = 100;

/// The offset of the first byte that is zero or not UTF-8; the size if there is none.
std::size_t findInvalidByte(std::string_view text) {
  std::size_t at = 0;
  while (at < text.size()) {
    const auto byte = static_cast<unsigned char>(text[at]);
    if (byte > 0 && byte < 0x80) {
      ++at;
      continue;
    }
    const CodePoint letter = firstCodePoint(text.substr(at));
    if (!letter.isValid || letter.value == 0) break;
    at += letter.length;
  }
  return at;
}

/// Builds values from the parser's events.
class Builder : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, Builder> {
 public:
  Builder(const rapidjson::StringStream& stream, const UseItem& useItem)
      : mStream(stream), mUseItem(useItem) {
    constexpr std::size_t kUsual = 12;
    mOpen.reserve(kUsual);
    mMembers.reserve(kUsual);
  }

  Json take() { return std::move(mMembers.back().value); }

  /// The place of the value at which the parser stopped: "calls[3].meta".
  [[nodiscard]] std::string place() const {
    std::string place;
    for (std::size_t i = 0; i < mOpen.size(); ++i) {
      const std::size_t begin = mOpen[i].firstMember;
      const std::size_t end = i + 1 < mOpen.size() ? mOpen[i + 1].firstMember : mMembers.size();
      if (mOpen[i].isList) {
        const std::size_t used = mIsInItems && i == 1 ? mUsedItems : 0;
        place += '[' + std::to_string(used + end - begin) + ']';
      } else if (end > begin) {
        place += (place.empty() ? "" : ".") + printable(mMembers[end - 1].key);
      }
    }
    return place;
  }

  // RapidJSON determines these names.
  // NOLINTBEGIN(readability-identifier-naming)
  bool Null() { return add(nullptr, 4); }
  bool Bool(bool value) { return add(value, value ? 4 : 5); }
  bool Int(int number) { return add(number); }
  bool Uint(unsigned number) { return add(number); }
  bool Int64(std::int64_t number) { return add(number); }
  bool Uint64(std::uint64_t number) { return add(number); }
  bool Double(double number) { return add(number); }
  bool String(const char* letters, rapidjson::SizeType length, bool /*copy*/) {
    return add(std::string_view(letters, length));
  }
  bool Key(const char* letters, rapidjson::SizeType length, bool /*copy*/) {
    mMembers.push_back({{letters, length}, {}});
    mMembers.back().value.offsets.key = tokenBegin();
    return true;
  }
  bool StartObject() { return open(false); }
  bool StartArray() {
    if (mUseItem && mOpen.size() == 1 && isInObject() && mMembers.back().key == "calls") {
      mIsInItems = true;
    }
    return open(true);
  }
  bool EndObject(rapidjson::SizeType /*count*/) {
    const auto first = firstMember();
    return close(Json::Object(std::move_iterator(first), std::move_iterator(mMembers.end())));
  }
  bool EndArray(rapidjson::SizeType count) {
    Json::List items;
    items.reserve(count);
    for (auto item = firstMember(); item != mMembers.end(); ++item) {
      items.push_back(std::move(item->value));
    }
    if (isInItems()) mIsInItems = false;
    return close(std::move(items));
  }
  // NOLINTEND(readability-identifier-naming)

 private:
  /// A list or an object that is not complete.
  struct Open {
    std::uint32_t offset = 0;
    bool isList = false;
    std::size_t firstMember = 0;  // index
  };

  [[nodiscard]] bool isInObject() const { return !mOpen.empty() && !mOpen.back().isList; }

  /// True if the innermost open list is the one whose items are used one by one.
  [[nodiscard]] bool isInItems() const { return mIsInItems && mOpen.size() == 2; }

  /// The first member of the innermost open list or object.
  Json::Object::iterator firstMember() {
    return mMembers.begin() + static_cast<std::ptrdiff_t>(mOpen.back().firstMember);
  }

  /// The offset of the current token. The stream is at its end, `length` bytes later, but still at
  /// its beginning for a number or a text: the parser reads those from a copy of the stream.
  [[nodiscard]] std::uint32_t tokenBegin(std::size_t length = 0) const {
    static_assert(rapidjson::StreamTraits<rapidjson::StringStream>::copyOptimization == 1);
    return static_cast<std::uint32_t>(mStream.Tell() - length);
  }

  bool add(const auto& value, std::size_t length = 0) {
    addComplete(value, tokenBegin(length));
    return true;
  }

  bool open(bool isList) {
    mOpen.push_back({tokenBegin(1), isList, mMembers.size()});
    return mOpen.size() <= kDeepestNesting;
  }

  bool close(auto structure) {
    const std::uint32_t begin = mOpen.back().offset;
    mMembers.erase(firstMember(), mMembers.end());
    mOpen.pop_back();
    addComplete(std::move(structure), begin);
    return true;
  }

  template <typename T>
  void addComplete(T&& value, std::uint32_t offset) {
    Json& target = isInObject() ? mMembers.back().value : mMembers.emplace_back().value;
    const std::uint32_t key = target.offsets.key;
    target = std::forward<T>(value);
    target.offsets = {.value = offset, .key = key};
    if (!isInItems()) return;
    mUseItem(target);
    mMembers.pop_back();
    ++mUsedItems;
  }

  const rapidjson::StringStream& mStream;
  const UseItem& mUseItem;
  bool mIsInItems = false;
  std::size_t mUsedItems = 0;
  std::vector<Open> mOpen;
  Json::Object mMembers;  // of open lists, whose items have no key, and of open objects
};

constexpr unsigned kFlags = rapidjson::kParseFullPrecisionFlag;

rapidjson::StringStream streamAt(const std::string& text, std::size_t offset) {
  rapidjson::StringStream stream(text.c_str());
  stream.src_ += offset;
  return stream;
}

}  // namespace

std::optional<Json> parseDocument(const std::string& text, Faults& faults, const UseItem& useItem) {
  if (const std::size_t invalid = findInvalidByte(text); invalid < text.size()) {
    const char* const problem = text[invalid] == '\0' ? "a zero byte" : "a byte that is not UTF-8";
    faults.add(faultAt(text, invalid, "", std::string("not JSON: ") + problem));
    return {};
  }
  const std::size_t begin = text.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0;
  rapidjson::StringStream stream = streamAt(text, begin);
  Builder builder(stream, useItem);
  const rapidjson::ParseResult result = rapidjson::Reader().Parse<kFlags>(stream, builder);
  if (!result.IsError()) return builder.take();
  const auto code = result.Code();
  std::string problem = std::string("not JSON: ") + rapidjson::GetParseError_En(code);
  if (code == rapidjson::kParseErrorTermination) problem = "nested too deep";
  if (code == rapidjson::kParseErrorNumberTooBig) problem = "the number is too large";
  const bool isEscape = result.Offset() < text.size() && text[result.Offset()] == '\\';
  if (code == rapidjson::kParseErrorStringEscapeInvalid && !isEscape) {
    problem = R"(not JSON: a control character in a text; write \n, \t or \u001b)";
  }
  faults.add(faultAt(text, result.Offset(), builder.place(), std::move(problem)));
  return {};
}

Json parseValue(const std::string& text, std::uint32_t offset) {
  rapidjson::StringStream stream = streamAt(text, offset);
  const UseItem none;
  Builder builder(stream, none);
  thread_local rapidjson::Reader reader;  // keeps its buffer
  reader.Parse<kFlags | rapidjson::kParseStopWhenDoneFlag>(stream, builder);
  return builder.take();
}

Fault faultAt(std::string_view text, std::size_t offset, std::string place, std::string problem) {
  const std::string_view before = text.substr(0, offset);
  const std::size_t line = before.rfind('\n');
  std::string_view row = before.substr(line == std::string_view::npos ? 0 : line + 1);
  std::size_t column = 1;
  for (; !row.empty(); row.remove_prefix(firstCodePoint(row).length)) ++column;
  return {.line = 1 + static_cast<std::size_t>(std::ranges::count(before, '\n')),
          .column = column,
          .place = std::move(place),
          .problem = std::move(problem)};
}

}  // namespace camhook
