// Which product the library runs on.

#pragma once

#include <array>
#include <string_view>

#include "platform/Properties.h"

namespace hesk {

/// Whether the product's model name begins with `prefix`. Reads ro.product.model.zdm; an unset name
/// counts as `fallback`.
inline bool productBeginsWith(std::string_view prefix, const char* fallback) {
  std::array<char, PROPERTY_VALUE_MAX> model{};
  property_get("ro.product.model.zdm", model.data(), fallback);
  return std::string_view(model.data()).starts_with(prefix);
}

}  // namespace hesk
