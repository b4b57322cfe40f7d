#include "tools/camhook/input/NearNames.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <utility>
#include <vector>

#include "tools/camhook/input/Joined.h"
#include "tools/camhook/input/TagCatalogue.h"

namespace camhook {
std::string inLowerCase(std::string_view text) {
  std::string lower(text);
  for (char& letter : lower)
    letter = static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
  return lower;
}

std::size_t editDistance(std::string_view left, std::string_view right) {
  const std::size_t width = right.size() + 1;
  std::vector<std::size_t> table((left.size() + 1) * width);
  // Distance between the first i letters of `left` and the first j letters of `right`.
  const auto at = [&](std::size_t i, std::size_t j) -> std::size_t& {
    return table[i * width + j];
  };
  for (std::size_t i = 0; i <= left.size(); ++i) at(i, 0) = i;
  for (std::size_t j = 0; j <= right.size(); ++j) at(0, j) = j;
  for (std::size_t i = 1; i <= left.size(); ++i) {
    for (std::size_t j = 1; j <= right.size(); ++j) {
      const std::size_t replaced = at(i - 1, j - 1) + (left[i - 1] != right[j - 1] ? 1 : 0);
      at(i, j) = std::min({replaced, at(i - 1, j) + 1, at(i, j - 1) + 1});
      const bool isSwapped =
          i > 1 && j > 1 && left[i - 1] == right[j - 2] && left[i - 2] == right[j - 1];
      if (isSwapped) at(i, j) = std::min(at(i, j), at(i - 2, j - 2) + 1);
    }
  }
  return at(left.size(), right.size());
}

std::string nearNames(std::string_view text, std::span<const std::string_view> names) {
  constexpr std::size_t kMaxNames = 3;
  constexpr std::size_t kLongest = 100;  // limits the time
  constexpr std::size_t kLongPart = 4;
  if (text.size() > kLongest) return {};
  const std::string lower = inLowerCase(text);
  std::vector<std::pair<std::size_t, std::string_view>> near;
  for (const std::string_view name : names) {
    const std::string lowerName = inLowerCase(name);
    const bool isPart = text.size() >= kLongPart && lowerName.find(lower) != std::string::npos;
    const std::size_t distance = isPart ? 0 : editDistance(lower, lowerName);
    if (distance <= (name.size() + 2) / 4) near.emplace_back(distance, name);
  }
  std::ranges::sort(near);
  std::vector<std::string> found;
  for (const auto& [distance, name] : near) {
    if (distance == near.front().first && found.size() < kMaxNames) found.emplace_back(name);
  }
  return found.empty() ? "" : "; did you mean " + listed(std::move(found), " or ") + '?';
}

std::string nearTags(std::string_view text) {
  std::vector<std::string_view> names;
  names.reserve(kTagCatalogue.size());
  for (const TagDescription& tag : kTagCatalogue) names.push_back(tag.name);
  return nearNames(text, names);
}

}  // namespace camhook
