// What is asked about a call, and what a run of it answers.

#pragma once

#include <cstdint>
#include <string>

#include "tools/camhook/input/Json.h"
#include "tools/camhook/run/Replay.h"

namespace camhook {

/// A tag in one of the call's containers; without a container what the call returns.
struct Asked {
  std::string container;
  std::uint32_t tag = 0;
};

class Answer {
 public:
  /// What stands there after a call.
  Answer(const CallTrace& trace, const Asked& asked);

  /// As a trace has it; null for absent.
  [[nodiscard]] Json json() const;

  /// Cheaper than to compare the JSON, which is the same for all NaNs.
  friend bool operator==(const Answer& left, const Answer& right);

 private:
  NSCam::IMetadata::IEntry mEntry;  // empty for what is returned
  Json mReturned;
};

/// An entry as a trace has it, null for one that is absent.
Json entryOrNull(const NSCam::IMetadata::IEntry& entry);

}  // namespace camhook
