// Writes a camera metadata buffer as text:
//
//   Dumping camera metadata array: 1 / 1 entries, 0 / 0 bytes of extra data.
//     Version: 1, Flags: 00000000
//     android.control.captureIntent (1000d): byte[1]
//       [STILL_CAPTURE ]

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

#include "host/AndroidTags.h"
#include "host/CameraMetadata.h"
#include "host/Phone.h"
#include "host/SignlessNan.h"

namespace {

using Entry = camera_metadata::Entry;

/// A value type: its name, values per row, and bytes per value.
struct ValueType {
  const char* name;
  std::size_t inRow;
  std::size_t bytes;
};

constexpr std::array<ValueType, 6> kTypes = {{
    {"byte", 16, 1},
    {"int32", 4, 4},
    {"float", 8, 4},
    {"int64", 2, 8},
    {"double", 4, 8},
    {"rational", 2, 8},
}};

/// Returns the bytes of an entry outside the entry array: 0 for up to four bytes, otherwise rounded
/// up to a multiple of eight.
std::size_t extraBytes(const Entry& entry) {
  const std::size_t bytes = entry.count * kTypes.at(entry.type).bytes;
  return bytes <= 4 ? 0 : (bytes + 7) / 8 * 8;
}

std::string tagName(std::uint32_t tag) {
  if (const host::AndroidTag* known = host::findAndroidTag(tag)) return std::string(known->name);
  const auto& nameOf = host::Phone::current().config.tagName;
  const std::string_view name = nameOf ? nameOf(tag) : "";
  return name.empty() ? "unknownSection.unknownTag" : "vendor." + std::string(name);
}

template <typename... Args>
void append(std::string& text, const char* format, Args... args) {
  std::array<char, 512> buffer{};  // a double has up to 309 digits before the point
  std::snprintf(buffer.data(), buffer.size(), format, args...);
  text += buffer.data();
}

template <typename T>
T valueAt(const Entry& entry, std::size_t index) {
  T value{};
  std::memcpy(&value, reinterpret_cast<const char*>(entry.words.data()) + index * sizeof value,
              sizeof value);
  return value;
}

/// Appends the name of an enumeration value, or the number if it has no name.
void appendInteger(std::string& text, const Entry& entry, std::int32_t value) {
  const host::AndroidTag* known = host::findAndroidTag(entry.tag);
  const std::string_view name = known != nullptr ? known->nameOf(value) : std::string_view();
  if (name.empty()) {
    append(text, "%d ", value);
  } else {
    text.append(name).append(" ");
  }
}

void appendValue(std::string& text, const Entry& entry, std::size_t index) {
  switch (entry.type) {
    case 0: appendInteger(text, entry, valueAt<std::uint8_t>(entry, index)); break;
    case 1: appendInteger(text, entry, valueAt<std::int32_t>(entry, index)); break;
    case 2: append(text, "%.8f ", host::withSignlessNan(valueAt<float>(entry, index))); break;
    case 3:
      append(text, "%lld ", static_cast<long long>(valueAt<std::int64_t>(entry, index)));
      break;
    case 4: append(text, "%.8f ", host::withSignlessNan(valueAt<double>(entry, index))); break;
    default: {
      const auto rational = valueAt<camera_metadata_rational>(entry, index);
      append(text, "(%d / %d) ", rational.numerator, rational.denominator);
      break;
    }
  }
}

void appendEntry(std::string& text, const Entry& entry, std::size_t maxValues) {
  const ValueType& type = kTypes.at(entry.type);
  text.append("  ").append(tagName(entry.tag));
  append(text, " (%05x): %s[%zu]\n", entry.tag, type.name, entry.count);
  const std::size_t count = std::min(entry.count, maxValues);
  for (std::size_t row = 0; row < count; row += type.inRow) {
    text += "    [";
    for (std::size_t i = row; i < std::min(row + type.inRow, count); ++i) {
      appendValue(text, entry, i);
    }
    text += "]\n";
  }
}

std::size_t maxValues(int verbosity) {
  if (verbosity <= 0) return 0;
  return verbosity == 1 ? 16 : static_cast<std::size_t>(-1);
}

std::string dumpOf(const camera_metadata& buffer, int verbosity) {
  std::size_t extra = 0;
  for (const Entry& entry : buffer.entries) extra += extraBytes(entry);
  const std::size_t count = buffer.entries.size();
  std::string text;
  append(text,
         "Dumping camera metadata array: %zu / %zu entries, %zu / %zu bytes of extra data.\n"
         "  Version: 1, Flags: 00000000\n",
         count, count, extra, extra);
  for (const Entry& entry : buffer.entries) appendEntry(text, entry, maxValues(verbosity));
  return text;
}

}  // namespace

void dump_camera_metadata(const camera_metadata* buffer, int file, int verbosity) {
  host::writeAll(file, buffer != nullptr ? dumpOf(*buffer, verbosity)
                                         : "Dumping camera metadata array: Not allocated\n");
}
