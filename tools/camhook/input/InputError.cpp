#include "tools/camhook/input/InputError.h"

#include <array>
#include <cstdio>

namespace camhook {

std::string printable(std::string_view text) {
  std::string shown;
  for (const char letter : text) {
    const auto code = static_cast<unsigned char>(letter);
    if (code >= 0x20 && code != 0x7f) {
      shown += letter;
    } else {
      std::array<char, 8> escape{};
      std::snprintf(escape.data(), escape.size(), "\\u%04x", unsigned{code});
      shown += escape.data();
    }
  }
  return shown;
}

std::string Place::text() const {
  if (mAround == nullptr) return {};
  std::string around = mAround->text();
  if (const auto* index = std::get_if<std::size_t>(&mStep)) {
    return around + "[" + std::to_string(*index) + "]";
  }
  if (!around.empty()) around += '.';
  return around + printable(std::get<std::string_view>(mStep));
}

void Place::fail(const std::string& problem) const {
  const std::string place = text();
  throw InputError(place.empty() ? problem : place + ": " + problem);
}

}  // namespace camhook
