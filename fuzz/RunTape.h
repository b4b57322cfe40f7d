// A run of hooks on a tape: a phone, what of its log is open, how the run is traced, and the calls.

#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "fuzz/CallFamily.h"
#include "tools/camhook/input/Scenario.h"

namespace fuzz {

enum class TraceForm : std::uint8_t { none, text, json };

/// Everything open and no trace.
struct HookRun {
  bool isDebugOpen = true;
  bool isErrorOpen = true;
  bool isInfoOpen = true;
  bool areTagsWanted = true;
  TraceForm trace = TraceForm::none;
  camhook::Scenario scenario;
};

/// The run that a tape holds: its calls, of the family's kinds, go on to the tape's end.
HookRun readRun(const CallFamily& family, std::span<const std::uint8_t> tape);

/// The tape of a run, of whose calls those of other kinds are left out.
std::vector<std::uint8_t> writeRun(const CallFamily& family, HookRun run);

}  // namespace fuzz
