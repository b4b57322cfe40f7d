// The value that `--want` asks for.

#pragma once

#include <string>
#include <vector>

#include "tools/camhook/explain/AnyValue.h"
#include "tools/camhook/explain/Input.h"

namespace camhook {

class Wanted {
 public:
  /// Reads a value as a scenario writes it; null is absent, and `_` any item.
  /// Throws InputError.
  Wanted(const std::string& text, const Question& question);

  /// With 0 for any item.
  [[nodiscard]] const AnyValue& value() const { return mValue; }

  [[nodiscard]] bool isMetBy(const AnyValue& value) const;

 private:
  AnyValue mValue;
  std::vector<bool> mIsAny;  // of each item
};

}  // namespace camhook
