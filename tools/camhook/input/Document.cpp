#include "tools/camhook/input/Document.h"

#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

#include <algorithm>
#include <limits>
#include <utility>

namespace camhook {
namespace {

constexpr std::uint32_t kOpen = std::numeric_limits<std::uint32_t>::max();
constexpr std::string_view kByteOrderMark = "\xef\xbb\xbf";
constexpr std::string_view kBetweenValues = " \t\r\n,:";

std::string_view expectedAt(rapidjson::ParseErrorCode error) {
  switch (error) {
    case rapidjson::kParseErrorDocumentEmpty: return "a value must stand here";
    case rapidjson::kParseErrorDocumentRootNotSingular: return "nothing may follow the document";
    case rapidjson::kParseErrorObjectMissName: return "a key in quotes must stand here";
    case rapidjson::kParseErrorObjectMissColon: return "a colon must stand behind a key";
    case rapidjson::kParseErrorObjectMissCommaOrCurlyBracket:
      return "a comma or } must stand behind a member";
    case rapidjson::kParseErrorArrayMissCommaOrSquareBracket:
      return "a comma or ] must stand behind an item";
    case rapidjson::kParseErrorStringUnicodeEscapeInvalidHex:
      return "\\u takes four hexadecimal digits";
    case rapidjson::kParseErrorStringUnicodeSurrogateInvalid: return "half of a pair of \\u";
    case rapidjson::kParseErrorStringEscapeInvalid:
      return "neither an escape nor a letter that needs none";
    case rapidjson::kParseErrorStringMissQuotationMark: return "the text has no end";
    case rapidjson::kParseErrorStringInvalidEncoding:
      return "a byte that cannot stand in a text, which is UTF-8";
    case rapidjson::kParseErrorNumberMissFraction: return "digits must stand behind the point";
    case rapidjson::kParseErrorNumberMissExponent: return "digits must stand in the exponent";
    default: return "a value must stand here";
  }
}

/// What stands at a byte of a text, for people.
std::string shownAt(std::string_view text, std::size_t byte) {
  if (byte >= text.size()) return "the end";
  return '"' + printable(text.substr(byte, firstCodePoint(text.substr(byte)).length)) + '"';
}

}  // namespace

/// Told of the values by the parser. It does not say where they begin: between two of them stand
/// blanks, commas and colons alone.
class Document::Writer {
 public:
  Writer(Document& document, const rapidjson::MemoryStream& stream, std::size_t begin)
      : mDocument(document), mStream(stream), mEnd(begin) {}

  [[nodiscard]] bool isTooDeep() const { return mIsTooDeep; }

  // The names are the parser's.
  // NOLINTBEGIN(readability-identifier-naming)
  bool Null() { return addWord(Kind::null, 4, 0); }
  bool Bool(bool value) { return addWord(Kind::boolean, value ? 4 : 5, value ? 1 : 0); }
  bool RawNumber(const char* /*digits*/, rapidjson::SizeType length, bool /*copy*/) {
    return addWord(Kind::number, length, length);
  }

  bool String(const char* letters, rapidjson::SizeType length, bool /*copy*/) {
    const std::size_t begin = nextValue();
    mEnd = static_cast<std::size_t>(mStream.Tell());
    // An escape is longer than what it stands for.
    constexpr std::size_t kQuotes = 2;
    if (mEnd - begin == length + kQuotes) {
      add(Kind::text, begin, length);
    } else {
      add(Kind::escapedText, begin, length);
      mDocument.mNodes.back().next = static_cast<std::uint32_t>(mDocument.mUnescaped.size());
      mDocument.mUnescaped.emplace_back(letters, length);
    }
    return true;
  }

  bool Key(const char* letters, rapidjson::SizeType length, bool copy) {
    return String(letters, length, copy);
  }

  bool StartObject() { return open(Kind::object); }
  bool StartArray() { return open(Kind::list); }
  bool EndArray(rapidjson::SizeType count) { return close(count); }
  bool EndObject(rapidjson::SizeType count) {
    const std::uint32_t object = mOpen.back();
    close(count);
    mDocument.findRepeatedKeys(object, mKeys);
    return true;
  }

  // Numbers come as their digits.
  static bool Int(int /*number*/) { return false; }
  static bool Uint(unsigned /*number*/) { return false; }
  static bool Int64(std::int64_t /*number*/) { return false; }
  static bool Uint64(std::uint64_t /*number*/) { return false; }
  static bool Double(double /*number*/) { return false; }
  // NOLINTEND(readability-identifier-naming)

 private:
  [[nodiscard]] std::size_t nextValue() const {
    return std::min(mDocument.mText.find_first_not_of(kBetweenValues, mEnd),
                    mDocument.mText.size());
  }

  void add(Kind kind, std::size_t begin, std::size_t length) {
    mDocument.mNodes.push_back({.start = static_cast<std::uint32_t>(begin),
                                .length = static_cast<std::uint32_t>(length),
                                .kind = kind});
  }

  bool addWord(Kind kind, std::size_t bytes, std::size_t length) {
    const std::size_t begin = nextValue();
    mEnd = begin + bytes;
    add(kind, begin, length);
    return true;
  }

  bool open(Kind kind) {
    mOpen.push_back(static_cast<std::uint32_t>(mDocument.mNodes.size()));
    const std::size_t begin = nextValue();
    mEnd = begin + 1;
    add(kind, begin, 0);
    mDocument.mNodes.back().next = kOpen;
    mIsTooDeep = mOpen.size() > kDeepestNesting;
    return !mIsTooDeep;
  }

  bool close(std::size_t count) {
    mEnd = nextValue() + 1;
    Node& node = mDocument.mNodes[mOpen.back()];
    node.length = static_cast<std::uint32_t>(count);
    node.next = static_cast<std::uint32_t>(mDocument.mNodes.size());
    mOpen.pop_back();
    return true;
  }

  Document& mDocument;
  const rapidjson::MemoryStream& mStream;
  std::size_t mEnd;
  bool mIsTooDeep = false;
  std::vector<std::uint32_t> mOpen;  // the objects and lists around what comes next
  std::vector<std::uint32_t> mKeys;  // room for those of an object
};

Document::Document(std::string_view text, Faults& faults) : mText(text), mFaults(faults) {
  constexpr std::size_t kBytesOfValue = 8;  // a guess, in most scenarios more
  const auto refuse = [&](std::size_t byte, const std::string& problem) {
    mFaults.add(faultAt(byte, "", problem));
  };
  if (const std::size_t zero = text.find('\0'); zero != std::string_view::npos) {
    refuse(zero, "not JSON: a zero byte");
    return;
  }
  mNodes.reserve(text.size() / kBytesOfValue);

  const std::size_t begin = text.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0;
  rapidjson::MemoryStream stream(text.data(), text.size());
  for (std::size_t i = 0; i < begin; ++i) stream.Take();
  Writer writer(*this, stream, begin);
  rapidjson::Reader reader;
  constexpr unsigned kFlags = rapidjson::kParseIterativeFlag |
                              rapidjson::kParseValidateEncodingFlag |
                              rapidjson::kParseNumbersAsStringsFlag;
  const rapidjson::ParseResult result = reader.Parse<kFlags>(stream, writer);
  mIsWhole = !result.IsError();
  if (writer.isTooDeep()) {
    Value(*this, static_cast<std::uint32_t>(mNodes.size()) - 1).fail("nested too deep");
  } else if (result.Code() == rapidjson::kParseErrorNumberTooBig) {
    mNodes.push_back({.start = static_cast<std::uint32_t>(result.Offset())});
    Value(*this, static_cast<std::uint32_t>(mNodes.size()) - 1).fail("no number is this large");
  } else if (result.IsError()) {
    refuse(result.Offset(), "not JSON: " + std::string(expectedAt(result.Code())) + ", not " +
                                shownAt(mText, result.Offset()));
  }
}

Value Document::root() const { return {*this, 0}; }

Fault Document::faultAt(std::size_t byte, std::string place, std::string problem) const {
  const std::string_view before = mText.substr(0, byte);
  const std::size_t line = before.rfind('\n');
  std::string_view row = before.substr(line == std::string_view::npos ? 0 : line + 1);
  std::size_t column = 1;
  for (; !row.empty(); row.remove_prefix(firstCodePoint(row).length)) ++column;
  return {.line = 1 + static_cast<std::size_t>(std::ranges::count(before, '\n')),
          .column = column,
          .place = std::move(place),
          .problem = std::move(problem)};
}

std::uint32_t Document::nextOf(std::uint32_t node) const {
  const Node& at = mNodes[node];
  return at.kind == Kind::list || at.kind == Kind::object ? at.next : node + 1;
}

std::string_view Document::textOf(std::uint32_t node) const {
  const Node& at = mNodes[node];
  if (at.kind == Kind::escapedText) return mUnescaped[at.next];
  return mText.substr(at.kind == Kind::text ? at.start + 1 : at.start, at.length);
}

/// From the document itself down to the node, which may be a key.
std::string Document::placeOf(std::uint32_t node) const {
  std::string place;
  for (std::uint32_t around = 0; around != node;) {
    std::uint32_t inside = around + 1;
    if (mNodes[around].kind == Kind::list) {
      std::size_t index = 0;
      for (; nextOf(inside) <= node; ++index) inside = nextOf(inside);
      place += '[' + std::to_string(index) + ']';
    } else {
      while (nextOf(inside + 1) <= node) inside = nextOf(inside + 1);
      if (!place.empty()) place += '.';
      place += printable(textOf(inside));
      if (inside == node) break;
      ++inside;
    }
    around = inside;
  }
  return place;
}

void Document::findRepeatedKeys(std::uint32_t object, std::vector<std::uint32_t>& keys) {
  keys.clear();
  Value(*this, object).forEachMember([&](const Value& key, const Value&) {
    keys.push_back(key.mNode);
  });
  // Any order will do that keeps equal ones together, the first of them in front.
  std::ranges::sort(keys, [this](std::uint32_t left, std::uint32_t right) {
    if (mNodes[left].length != mNodes[right].length) {
      return mNodes[left].length < mNodes[right].length;
    }
    const int order = textOf(left).compare(textOf(right));
    return order != 0 ? order < 0 : left < right;
  });
  for (std::size_t i = 1; i < keys.size(); ++i) {
    if (textOf(keys[i - 1]) == textOf(keys[i])) Value(*this, keys[i]).fail("given twice");
  }
}

}  // namespace camhook
