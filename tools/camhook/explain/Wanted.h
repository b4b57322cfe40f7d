// The value of `--want`.

#pragma once

#include <string>

#include "tools/camhook/explain/Question.h"

namespace camhook {

class Wanted {
 public:
  /// Reads a value in the format of a scenario, also a bare name; null means absent, and `_` means
  /// any item. The return value of a decision is a sensor mode, by number or name. Throws
  /// InputError.
  Wanted(const std::string& text, const Question& question);

  /// An entry or another value, with null for any item.
  [[nodiscard]] const Json& value() const { return mValue; }

  [[nodiscard]] bool isMetBy(const Json& value) const;

 private:
  Json mValue;
};

}  // namespace camhook
