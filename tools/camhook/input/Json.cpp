#include "tools/camhook/input/Json.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <limits>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "common/NumberText.h"
#include "tools/camhook/input/InputError.h"

namespace camhook {
namespace {

constexpr std::size_t kLineWidth = 100;
constexpr std::size_t kIndentStep = 2;
constexpr std::size_t kDeepestNesting = 100;

/// Follows the parser through the document. Notices a key that stands twice in one object, of which
/// the parser would take the last.
class DocumentWalk {
 public:
  void onEvent(Json::parse_event_t event, const Json& parsed) {
    switch (event) {
      case Json::parse_event_t::object_start: open(false); break;
      case Json::parse_event_t::key: onKey(parsed.get_ref<const std::string&>()); break;
      case Json::parse_event_t::array_start: open(true); break;
      case Json::parse_event_t::object_end:
      case Json::parse_event_t::array_end:
        mOpen.pop_back();
        countItem();
        break;
      case Json::parse_event_t::value: countItem(); break;
    }
  }

  /// Throws InputError for the value that the parser is at.
  [[noreturn]] void fail(const std::string& problem) const { failBelow(0, Place(), problem); }

 private:
  struct Level {
    bool isArray = false;
    std::size_t index = 0;
    std::string key;
    std::set<std::string> keys;
  };

  void open(bool isArray) {
    if (mOpen.size() == kDeepestNesting) fail("nested too deep");
    mOpen.emplace_back().isArray = isArray;
  }

  void countItem() {
    if (!mOpen.empty() && mOpen.back().isArray) ++mOpen.back().index;
  }

  void onKey(const std::string& key) {
    mOpen.back().key = key;
    if (!mOpen.back().keys.insert(key).second) fail("given twice");
  }

  [[noreturn]] void failBelow(std::size_t level, const Place& place,
                              const std::string& problem) const {
    if (level == mOpen.size()) place.fail(problem);
    const Level& at = mOpen[level];
    failBelow(level + 1, at.isArray ? place[at.index] : place[at.key], problem);
  }

  std::vector<Level> mOpen;
};

std::string lineAndColumn(std::string_view text, std::size_t byte) {
  const std::string_view before = text.substr(0, std::min(text.size(), byte > 0 ? byte - 1 : 0));
  const auto line = 1 + std::ranges::count(before, '\n');
  const std::size_t newline = before.rfind('\n');
  const std::size_t column =
      newline == std::string_view::npos ? before.size() + 1 : before.size() - newline;
  return "line " + std::to_string(line) + ", column " + std::to_string(column);
}

bool needsNoEscape(const std::string& text) {
  return std::ranges::all_of(text, [](char letter) {
    return letter >= 0x20 && letter < 0x7f && letter != '"' && letter != '\\';
  });
}

/// As `dump` has it, which sets itself up anew for every value: the common ones are written here.
std::string onOneLine(const Json& value) {
  if (value.is_number_unsigned()) return std::to_string(value.get<std::uint64_t>());
  if (value.is_number_integer()) return std::to_string(value.get<std::int64_t>());
  if (value.is_string()) {
    const auto& text = value.get_ref<const std::string&>();
    if (needsNoEscape(text)) return '"' + text + '"';
  }
  return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

/// Appends a value on one line; cuts it short once the text is longer than `most`.
void appendSpaced(std::string& text, const Json& value, std::size_t most) {
  if (!value.is_structured()) {
    text += onOneLine(value);
    return;
  }
  text += value.is_object() ? '{' : '[';
  for (auto item = value.begin(); item != value.end(); ++item) {
    if (item != value.begin()) text += ", ";
    if (value.is_object()) text.append(onOneLine(item.key())).append(": ");
    appendSpaced(text, item.value(), most);
    if (text.size() > most) return;
  }
  text += value.is_object() ? '}' : ']';
}

std::string spaced(const Json& value, std::size_t most) {
  std::string text;
  appendSpaced(text, value, most);
  return text;
}

/// Whether a value is a list whose items are too small for lines of their own: numbers, texts, or
/// lists of those.
bool isListOfItems(const Json& value) {
  return value.is_array() && std::ranges::all_of(value, [](const Json& item) {
           return !item.is_object() &&
                  (!item.is_array() || std::ranges::none_of(item, &Json::is_structured));
         });
}

/// As many items on each line as fit.
void writeFilled(std::ostream& out, const Json& list, std::size_t indent) {
  const std::string margin(indent + kIndentStep, ' ');
  std::string line;
  out << '[';
  for (auto item = list.begin(); item != list.end(); ++item) {
    std::string text = lineOfJson(*item);
    if (std::next(item) != list.end()) text += ',';
    if (line.empty() || line.size() + 1 + text.size() > kLineWidth) {
      out << line << '\n';
      line = margin + text;
    } else {
      line += ' ' + text;
    }
  }
  out << line << '\n' << std::string(indent, ' ') << ']';
}

void writeBroken(std::ostream& out, const Json& value, std::size_t indent) {
  const std::string margin(indent + kIndentStep, ' ');
  out << (value.is_object() ? "{" : "[");
  for (auto item = value.begin(); item != value.end(); ++item) {
    out << (item != value.begin() ? ",\n" : "\n") << margin;
    if (value.is_object()) out << onOneLine(item.key()) << ": ";
    writeJson(out, item.value(), indent + kIndentStep);
  }
  out << '\n' << std::string(indent, ' ') << (value.is_object() ? '}' : ']');
}

}  // namespace

Json parseJson(std::string_view text) {
  DocumentWalk walk;
  try {
    return Json::parse(text, [&](int /*depth*/, Json::parse_event_t event, Json& parsed) {
      walk.onEvent(event, parsed);
      return true;
    });
  } catch (const Json::parse_error& error) {
    // The parser's text names its own error number and position first; what is wrong stands last.
    const std::string_view problem = error.what();
    const std::size_t at = problem.find(": ");
    throw InputError(lineAndColumn(text, error.byte) + ": not JSON: " +
                     std::string(problem.substr(at == std::string_view::npos ? 0 : at + 2)));
  } catch (const Json::out_of_range&) {
    walk.fail("no number is this large");
  }
}

void writeJson(std::ostream& out, const Json& value, std::size_t indent) {
  const std::string line = spaced(value, kLineWidth);
  if (!value.is_structured() || value.empty() || indent + line.size() < kLineWidth) {
    out << line;
  } else if (isListOfItems(value)) {
    writeFilled(out, value, indent);
  } else {
    writeBroken(out, value, indent);
  }
}

std::string lineOfJson(const Json& value) {
  return spaced(value, std::numeric_limits<std::size_t>::max());
}

Json jsonFromFloat(float value) {
  if (std::isnan(value)) return "nan";
  if (std::isinf(value)) return value < 0 ? "-inf" : "inf";
  std::array<char, 32> digits{};
  auto* const end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
  return hesk::leadingNumber<double>({digits.data(), end}).value();
}

std::string jsonText(std::string_view text) { return onOneLine(Json(text)); }

std::string hexadecimal(std::uint32_t value) {
  std::array<char, 8> digits{};
  const char* const end =
      std::to_chars(digits.data(), digits.data() + digits.size(), value, 16).ptr;
  const std::string_view text(digits.data(), static_cast<std::size_t>(end - digits.data()));
  return ("0x" + std::string(digits.size() - text.size(), '0')).append(text);
}

}  // namespace camhook
