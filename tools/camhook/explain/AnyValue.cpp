#include "tools/camhook/explain/AnyValue.h"

#include "tools/camhook/input/MetadataJson.h"

namespace camhook {

Json AnyValue::json() const { return mEntry.isEmpty() ? mJson : jsonFromEntry(mEntry); }

bool operator==(const AnyValue& left, const AnyValue& right) {
  return left.mJson == right.mJson && areSame(left.mEntry, right.mEntry);
}

}  // namespace camhook
