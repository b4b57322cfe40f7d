#include "tools/camhook/InputError.h"

namespace camhook {

std::string Place::text() const {
  if (mAround == nullptr) return {};
  std::string around = mAround->text();
  if (const auto* index = std::get_if<std::size_t>(&mStep)) {
    return around + "[" + std::to_string(*index) + "]";
  }
  if (!around.empty()) around += '.';
  return around.append(std::get<std::string_view>(mStep));
}

void Place::fail(const std::string& problem) const {
  const std::string place = text();
  throw InputError(place.empty() ? problem : place + ": " + problem);
}

}  // namespace camhook
