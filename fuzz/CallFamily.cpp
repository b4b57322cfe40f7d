#include "fuzz/CallFamily.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string>

#include "tools/camhook/input/Scenario.h"

namespace fuzz {
namespace {

using namespace camhook;

template <typename... Kinds>
CallFamily familyOf(std::string_view name) {
  return {.name = name, .kinds = {Call(std::in_place_type<Kinds>).index()...}};
}

}  // namespace

std::span<const CallFamily> callFamilies() {
  static const std::array kFamilies{
      familyOf<UpdateRequestMeta, UpdateSessionParams, SetEvent, SetProperty>("request"),
      familyOf<UpdateSessionParams, CreateInstance, SetEvent, SetProperty>("session"),
      familyOf<UpdateResultMeta, SetEvent>("result"),
      familyOf<UpdateCaptureRawParameter, UpdateSessionParams, SetPreviewSize>("capture"),
      familyOf<DecideSensorScenario, UpdateSessionParams, SetEvent, SetProperty>("decision"),
      familyOf<UpdateTuningData, TranslateResultRegion, DumpMetadata, MatchAspectRatio,
               SetPreviewSize, SetProperty>("diagnostics"),
  };
  return kFamilies;
}

const CallFamily& callFamily(std::string_view name) {
  const auto families = callFamilies();
  const auto found = std::ranges::find(families, name, &CallFamily::name);
  if (found == families.end()) throw std::logic_error("no family " + std::string(name));
  return *found;
}

}  // namespace fuzz
