#include "tools/camhook/explain/Answer.h"

#include <algorithm>
#include <bit>
#include <variant>

#include "host/MetadataAccess.h"
#include "tools/camhook/input/MetadataJson.h"

namespace camhook {
namespace {

/// To the last bit: 0 is not -0.
bool areSame(const host::ItemList& left, const host::ItemList& right) {
  using Floats = std::vector<float>;
  if (!std::holds_alternative<Floats>(left) || !std::holds_alternative<Floats>(right)) {
    return left == right;
  }
  const auto bits = [](float number) { return std::bit_cast<std::uint32_t>(number); };
  return std::ranges::equal(std::get<Floats>(left), std::get<Floats>(right), {}, bits, bits);
}

}  // namespace

Answer::Answer(const CallTrace& trace, const Asked& asked) {
  if (asked.container.empty()) mReturned = trace.result;
  for (const ContainerTrace& container : trace.containers) {
    if (container.name == asked.container && container.after) {
      mEntry = container.after->entryFor(asked.tag);
    }
  }
}

Json Answer::json() const { return mEntry.isEmpty() ? mReturned : jsonFromEntry(mEntry); }

bool operator==(const Answer& left, const Answer& right) {
  using host::MetadataAccess;
  if (left.mReturned != right.mReturned) return false;
  if (left.mEntry.isEmpty() && right.mEntry.isEmpty()) return true;
  return areSame(MetadataAccess::itemsOf(left.mEntry), MetadataAccess::itemsOf(right.mEntry));
}

Json entryOrNull(const NSCam::IMetadata::IEntry& entry) {
  return entry.isEmpty() ? Json() : jsonFromEntry(entry);
}

}  // namespace camhook
