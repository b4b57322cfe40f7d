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

}  // namespace camhook
