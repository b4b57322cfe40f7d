#include "tools/camhook/explain/Answer.h"

#include "tools/camhook/input/MetadataJson.h"

namespace camhook {
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
  return left.mReturned == right.mReturned && areSame(left.mEntry, right.mEntry);
}

Json entryOrNull(const NSCam::IMetadata::IEntry& entry) {
  return entry.isEmpty() ? Json() : jsonFromEntry(entry);
}

}  // namespace camhook
