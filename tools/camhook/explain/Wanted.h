// The value that `--want` asks for.

#pragma once

#include <string>

#include "tools/camhook/explain/Input.h"

namespace camhook {

class Wanted {
 public:
  /// Reads a value as a scenario writes it; null is absent, and `_` any item. Throws InputError.
  Wanted(const std::string& text, const Question& question);

  /// An entry or another value, with null for any item.
  [[nodiscard]] const Json& value() const { return mValue; }

  [[nodiscard]] bool isMetBy(const Json& value) const;

 private:
  Json mValue;
};

}  // namespace camhook
