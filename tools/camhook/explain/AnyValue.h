// The value of an input, or what a call gives: a metadata entry, another value as a scenario writes
// it, or absent.

#pragma once

#include <utility>

#include "platform/IMetadata.h"
#include "tools/camhook/input/Json.h"

namespace camhook {

class AnyValue {
 public:
  using Entry = NSCam::IMetadata::IEntry;

  /// Absent.
  AnyValue() = default;
  /// Null is absent.
  explicit AnyValue(Json json) : mJson(std::move(json)) {}
  /// An entry without items is absent.
  explicit AnyValue(Entry entry) : mEntry(std::move(entry)) {}

  [[nodiscard]] bool isAbsent() const { return mEntry.isEmpty() && mJson.isNull(); }

  /// An entry without items if the value is none.
  [[nodiscard]] const Entry& entry() const { return mEntry; }

  /// As a trace writes it; null for absent.
  [[nodiscard]] Json json() const;

  /// True if both are the same in JSON. Faster than a comparison of the JSON.
  friend bool operator==(const AnyValue& left, const AnyValue& right);

 private:
  Json mJson;
  Entry mEntry;
};

}  // namespace camhook
