// Which product the library runs on.

#pragma once

#include <array>

#include "platform/Properties.h"

namespace hesk {

/// The product's model name as it is now: the property ro.product.model.zdm, `fallback` where it is
/// unset. Ends with a zero.
inline std::array<char, PROPERTY_VALUE_MAX> productModel(const char* fallback) {
  std::array<char, PROPERTY_VALUE_MAX> name{};
  property_get("ro.product.model.zdm", name.data(), fallback);
  return name;
}

}  // namespace hesk
