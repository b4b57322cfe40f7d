// How two JSON traces differ, call by call.

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/camhook/input/Json.h"

namespace camhook {

/// What one trace tells otherwise than the other: "meta MTK_CONTROL_RAW_TYPE", "absent → 60".
struct Difference {
  std::string place;
  std::string change;
};

struct CallDifference {
  std::string call;        // empty: the event store at the end
  std::size_t number = 0;  // of the call in the new trace, in the old one where only that has it
  std::string title;
  std::vector<Difference> differences;
  /// Of a call that only the old trace has: the number in the new one of the call that follows.
  std::optional<std::size_t> goneBefore;
};

/// Reads a JSON trace. Throws InputError where the text is none.
Json traceFromText(std::string_view text);

/// The calls that differ, and the event store at the end if that does. The steps that wrote the
/// tags do not count, nor do arguments where one of the traces is too old to have them.
std::vector<CallDifference> compareTraces(const Json& old, const Json& fresh, bool withRecords);

}  // namespace camhook
