// A camera metadata buffer as text:
//
//   Camera metadata: 1 entry
//     android.control.ANDROID_CONTROL_CAPTURE_INTENT (0001000d): byte[1]
//       [2 ]

#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

#include "host/CameraMetadata.h"
#include "host/Phone.h"
#include "host/SignlessNan.h"

namespace {

using Entry = camera_metadata::Entry;

/// What values of a type are called, how many stand in a row, and their size.
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
    {"rational", 4, 8},
}};

/// The sections that Android knows; all others are vendors'.
constexpr std::pair<std::uint32_t, const char*> kSections[] = {
    {0x0001, "android.control"},
    {0x0004, "android.flash"},
    {0x0009, "android.lens.info"},
    {0x000e, "android.sensor"},
    {0x000f, "android.sensor.info"},
    {0x0011, "android.statistics"},
    {0x001a, "android.logicalMultiCamera"},
};

const char* sectionName(std::uint32_t tag) {
  for (const auto& [section, name] : kSections) {
    if (tag >> 16U == section) return name;
  }
  return "vendor";
}

std::string_view tagName(std::uint32_t tag) {
  const auto& nameOf = host::Phone::current().config.tagName;
  const std::string_view name = nameOf ? nameOf(tag) : "";
  return name.empty() ? "unknown" : name;
}

template <typename... Args>
void append(std::string& text, const char* format, Args... args) {
  std::array<char, 128> buffer{};
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

void appendValue(std::string& text, const Entry& entry, std::size_t index) {
  switch (entry.type) {
    case 0: append(text, "%d ", valueAt<std::uint8_t>(entry, index)); break;
    case 1: append(text, "%d ", valueAt<std::int32_t>(entry, index)); break;
    case 2: append(text, "%.8f ", host::withSignlessNan(valueAt<float>(entry, index))); break;
    case 3:
      append(text, "%lld ", static_cast<long long>(valueAt<std::int64_t>(entry, index)));
      break;
    default: {
      const auto rational = valueAt<camera_metadata_rational>(entry, index);
      append(text, "(%d / %d) ", rational.numerator, rational.denominator);
      break;
    }
  }
}

void appendEntry(std::string& text, const Entry& entry, bool everyRow) {
  const ValueType& type = kTypes.at(entry.type);
  append(text, "  %s.", sectionName(entry.tag));
  text += tagName(entry.tag);
  append(text, " (%08x): %s[%zu]\n", entry.tag, type.name, entry.count);
  for (std::size_t row = 0; row < entry.count; row += type.inRow) {
    if (row > 0 && !everyRow) break;
    text += "    [";
    for (std::size_t i = row; i < std::min(row + type.inRow, entry.count); ++i) {
      appendValue(text, entry, i);
    }
    text += "]\n";
  }
}

}  // namespace

void dump_camera_metadata(const camera_metadata* buffer, int file, int verbosity) {
  const std::size_t count = buffer->entries.size();
  std::string text;
  append(text, "Camera metadata: %zu %s\n", count, count == 1 ? "entry" : "entries");
  if (verbosity >= 1) {
    for (const Entry& entry : buffer->entries) appendEntry(text, entry, verbosity >= 2);
  }
  std::string_view rest(text);
  while (!rest.empty()) {
    const ssize_t written = ::write(file, rest.data(), rest.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return;
    rest.remove_prefix(static_cast<std::size_t>(written));
  }
}
