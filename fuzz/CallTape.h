// Calls on tapes.

#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "common/updater/MetadataDump.h"
#include "fuzz/MetadataTape.h"
#include "fuzz/Tape.h"
#include "tools/camhook/input/Scenario.h"

namespace fuzz {

template <typename Tape>
void transfer(Tape& tape, camhook::CreateInstance& call) {
  transferAll(tape, call.sensor);
}

template <typename Tape>
void transfer(Tape& tape, camhook::UpdateSessionParams::Stream& stream) {
  transferAll(tape, stream.id, stream.usage, stream.width, stream.height);
}

template <typename Tape>
void transfer(Tape& tape, camhook::UpdateSessionParams& call) {
  transferAll(tape, call.sensor, call.meta, call.streams);
}

template <typename Tape>
void transfer(Tape& tape, camhook::UpdateRequestMeta& call) {
  transferAll(tape, call.sensor, call.requestNo, call.meta);
}

template <typename Tape>
void transfer(Tape& tape, camhook::UpdateResultMeta& call) {
  transferAll(tape, call.sensor, call.requestNo, call.meta);
}

template <typename Tape>
void transfer(Tape& tape, camhook::DecideSensorScenario& call) {
  transferAll(tape, call.sensor, call.meta, call.video, call.width, call.height);
}

template <typename Tape>
void transfer(Tape& tape, camhook::UpdateCaptureRawParameter& call) {
  transferAll(tape, call.sensor, call.app, call.hal, call.out);
}

template <typename Tape>
void transfer(Tape& tape, camhook::UpdateTuningData& call) {
  constexpr std::uint32_t kMostBytes = std::uint32_t{1} << 16;  // it takes time to fill more
  transferAll(tape, call.sensor, call.meta, call.size);
  call.size %= kMostBytes;
}

template <typename Tape>
void transfer(Tape& tape, camhook::TranslateResultRegion& call) {
  transferAll(tape, call.sensor, call.meta, call.value, call.cameraId, call.tag);
}

template <typename Tape>
void transfer(Tape& tape, camhook::SetPreviewSize& call) {
  transferAll(tape, call.sensor, call.width, call.height);
}

template <typename Tape>
void transfer(Tape& tape, camhook::MatchAspectRatio& call) {
  transferAll(tape, call.sensor, call.reference, call.size);
}

/// The label is cut to what a path has room for: a longer one ends the process, as is promised.
template <typename Tape>
void transfer(Tape& tape, camhook::DumpMetadata& call) {
  transferAll(tape, call.sensor, call.meta, call.name, call.frame);
  call.name.resize(std::strlen(call.name.c_str()));
  hesk::MetadataDumpPath path{};
  const auto length = static_cast<std::size_t>(
      hesk::formatMetadataDumpPath(path, call.name.c_str(), call.frame, "YYYYMMDDHHMMSS"));
  const std::size_t most = path.size() - 1;
  if (length > most) call.name.resize(call.name.size() - (length - most));
}

template <typename Tape>
void transfer(Tape& tape, camhook::SetEvent& call) {
  transferAll(tape, call.key, call.value);
}

template <typename Tape>
void transfer(Tape& tape, camhook::SetProperty& call) {
  transferAll(tape, call.name, call.value);
}

}  // namespace fuzz
