// The product that the library runs on.

#pragma once

#include <array>

#include "platform/Properties.h"

namespace hesk {

/// Returns the current product model, the property ro.product.model.zdm, as a zero-terminated text;
/// `fallback` if it is unset.
inline std::array<char, PROPERTY_VALUE_MAX> productModel(const char* fallback) {
  std::array<char, PROPERTY_VALUE_MAX> name{};
  property_get("ro.product.model.zdm", name.data(), fallback);
  return name;
}

}  // namespace hesk
