// Joins texts.

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace camhook {

/// The texts in order, with `separator` between them.
inline std::string joined(const std::vector<std::string>& texts, std::string_view separator) {
  std::string all;
  for (const std::string& text : texts) {
    if (&text != &texts.front()) all += separator;
    all += text;
  }
  return all;
}

/// "A, B or C" with the separator " or ". `texts` is not empty.
inline std::string listed(std::vector<std::string> texts, std::string_view lastSeparator) {
  const std::string last = texts.back();
  texts.pop_back();
  return texts.empty() ? last : joined(texts, ", ").append(lastSeparator) + last;
}

}  // namespace camhook
