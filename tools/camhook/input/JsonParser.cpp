#include "tools/camhook/input/JsonParser.h"

#include <rapidjson/error/en.h>
#include <rapidjson/reader.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace camhook {
namespace {

constexpr std::string_view kByteOrderMark = "\xef\xbb\xbf";
constexpr std::size_t kDeepestNesting = 100;

/// Builds values from the parser's events.
class Builder : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, Builder> {
 public:
  Builder(const rapidjson::StringStream& stream, const UseItem& useItem)
      : mStream(stream), mUseItem(useItem) {
    constexpr std::size_t kUsual = 16;
    mOpen.reserve(kUsual);
    mValues.reserve(kUsual);
    mKeys.reserve(kUsual);
  }

  Json take() { return std::move(mValues.back()); }

  /// The place of the value at which the parser stopped: "calls[3].meta".
  [[nodiscard]] std::string place() const {
    std::string place;
    for (std::size_t i = 0; i < mOpen.size(); ++i) {
      const bool isLast = i + 1 == mOpen.size();
      const std::size_t values = isLast ? mValues.size() : mOpen[i + 1].values;
      const std::size_t keys = isLast ? mKeys.size() : mOpen[i + 1].keys;
      if (mOpen[i].isList) {
        const std::size_t used = mIsInItems && i == 1 ? mUsedItems : 0;
        place += '[' + std::to_string(used + values - mOpen[i].values) + ']';
      } else if (keys > mOpen[i].keys) {
        place += (place.empty() ? "" : ".") + printable(mKeys[keys - 1].text);
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
    mKeys.push_back({{letters, length}, offset()});
    return true;
  }
  bool StartObject() { return open(false); }
  bool StartArray() {
    if (mUseItem && mOpen.size() == 1 && mKeys.size() > mValues.size() &&
        mKeys.back().text == "calls") {
      mIsInItems = true;
    }
    return open(true);
  }
  bool EndObject(rapidjson::SizeType count) {
    const std::size_t firstKey = mKeys.size() - count;
    const std::size_t firstValue = mValues.size() - count;
    Json::Object members;
    members.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
      auto& [key, offset] = mKeys[firstKey + i];
      mValues[firstValue + i].offsets.key = offset;
      members.push_back({std::move(key), std::move(mValues[firstValue + i])});
    }
    mKeys.resize(firstKey);
    mValues.resize(firstValue);
    return close(std::move(members));
  }
  bool EndArray(rapidjson::SizeType /*count*/) {
    const auto first = mValues.begin() + static_cast<std::ptrdiff_t>(mOpen.back().values);
    Json::List items(std::make_move_iterator(first), std::make_move_iterator(mValues.end()));
    mValues.erase(first, mValues.end());
    if (isInItems()) mIsInItems = false;
    return close(std::move(items));
  }
  // NOLINTEND(readability-identifier-naming)

 private:
  struct PendingKey {
    std::string text;
    std::uint32_t offset = 0;
  };

  /// A list or an object that is not complete.
  struct Open {
    std::uint32_t offset = 0;
    bool isList = false;
    std::size_t values = 0;  // before it
    std::size_t keys = 0;
  };

  /// True if the innermost open list is the one whose items are used one by one.
  [[nodiscard]] bool isInItems() const { return mIsInItems && mOpen.size() == 2; }

  /// The offset of the current token, after `taken` bytes of it were read. The parser reads numbers
  /// and texts from a copy of the stream, so the stream is still at their beginning.
  [[nodiscard]] std::uint32_t offset(std::size_t taken = 0) const {
    static_assert(rapidjson::StreamTraits<rapidjson::StringStream>::copyOptimization == 1);
    return static_cast<std::uint32_t>(mStream.Tell() - taken);
  }

  bool add(const auto& value, std::size_t taken = 0) {
    addComplete(value, offset(taken));
    return true;
  }

  bool open(bool isList) {
    mOpen.push_back({offset(1), isList, mValues.size(), mKeys.size()});
    return mOpen.size() <= kDeepestNesting;
  }

  bool close(auto structure) {
    const std::uint32_t begin = mOpen.back().offset;
    mOpen.pop_back();
    addComplete(std::move(structure), begin);
    return true;
  }

  template <typename T>
  void addComplete(T&& value, std::uint32_t offset) {
    mValues.emplace_back(std::forward<T>(value)).offsets.value = offset;
    if (!isInItems()) return;
    mUseItem(mValues.back());
    mValues.pop_back();
    ++mUsedItems;
  }

  const rapidjson::StringStream& mStream;
  const UseItem& mUseItem;
  bool mIsInItems = false;
  std::size_t mUsedItems = 0;
  std::vector<Open> mOpen;
  std::vector<Json> mValues;  // complete values in open lists and objects
  std::vector<PendingKey> mKeys;
};

constexpr unsigned kFlags = rapidjson::kParseFullPrecisionFlag;

rapidjson::StringStream streamAt(const std::string& text, std::size_t offset) {
  rapidjson::StringStream stream(text.c_str());
  stream.src_ += offset;
  return stream;
}

}  // namespace

std::optional<Json> parseDocument(const std::string& text, Faults& faults, const UseItem& useItem) {
  if (const std::size_t zero = text.find('\0'); zero != std::string::npos) {
    faults.add(faultAt(text, zero, "", "not JSON: a zero byte"));
    return {};
  }
  const std::size_t begin = text.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0;
  rapidjson::StringStream stream = streamAt(text, begin);
  Builder builder(stream, useItem);
  const rapidjson::ParseResult result =
      rapidjson::Reader().Parse<kFlags | rapidjson::kParseValidateEncodingFlag>(stream, builder);
  if (!result.IsError()) return builder.take();
  const auto code = result.Code();
  std::string problem = std::string("not JSON: ") + rapidjson::GetParseError_En(code);
  if (code == rapidjson::kParseErrorTermination) problem = "nested too deep";
  if (code == rapidjson::kParseErrorNumberTooBig) problem = "the number is too large";
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
