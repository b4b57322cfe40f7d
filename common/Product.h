// Which product the library runs on.

#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "platform/Properties.h"

namespace hesk {

/// The product's model name as it is now: the property ro.product.model.zdm, `fallback` where it is
/// unset.
class ProductModel {
 public:
  explicit ProductModel(const char* fallback)
      : mLength(property_get("ro.product.model.zdm", mName.data(), fallback)) {}

  [[nodiscard]] std::string_view name() const {
    return {mName.data(), static_cast<std::size_t>(mLength)};
  }

 private:
  std::array<char, PROPERTY_VALUE_MAX> mName;
  int mLength;
};

/// Whether the product's model name, `fallback` for an unset one, begins with `prefix`.
inline bool productBeginsWith(std::string_view prefix, const char* fallback) {
  return ProductModel(fallback).name().starts_with(prefix);
}

}  // namespace hesk
