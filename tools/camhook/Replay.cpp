#include "tools/camhook/Replay.h"

#include <utility>

#include "common/HeskParameterUpdater.h"
#include "common/updater/UpdaterInspector.h"

namespace camhook {
namespace {

Json stateOf(HeskParameterUpdater& updater) {
  const HeskParameterUpdaterInspector fields{updater};
  Json frames = Json::array();
  for (const auto& [requestNo, index] : fields.nonZslFrames()) {
    frames.push_back(Json::array({requestNo, index}));
  }
  return {{"mInstanceId", fields.instanceId()},
          {"mHasVideoStream", fields.hasVideoStream()},
          {"mNonZslFrames", std::move(frames)},
          {"mMulticamFeatureMode", fields.multicamFeatureMode()},
          {"mPreviewSize", Json::array({fields.previewSize().w, fields.previewSize().h})},
          {"mCaptureCount", fields.captureCount()},
          {"mStreamIds", Json(fields.streamIds())},
          {"mPrimaryCameraDiagonalFov", fields.diagonalFovDegrees()}};
}

NSCam::IMetadata* pointerTo(MetadataArgument& metadata) { return metadata ? &*metadata : nullptr; }

/// Runs one call. `updater` is null where there is none, and for calls that take none.
struct Runner {
  CallTrace& trace;
  host::Phone& phone;
  HeskParameterUpdater* updater;

  void operator()(const CreateInstance& /*call*/) const { trace.result = updater != nullptr; }

  void operator()(const UpdateRequestMeta& call) const {
    trace.arguments = {{"requestNo", call.requestNo}};
    ContainerTrace container{"meta", call.meta, call.meta};
    if (updater != nullptr) updater->updateRequestMeta(pointerTo(container.after), call.requestNo);
    trace.containers.push_back(std::move(container));
  }

  void operator()(const SetEvent& call) const {
    trace.arguments = {{"key", call.key}, {"value", call.value}};
    phone.eventStore.set(call.key, call.value);
  }

  void operator()(const SetProperty& call) const {
    trace.arguments = {{"name", call.name}, {"value", call.value}};
    phone.properties.set(call.name, call.value);
  }
};

template <typename CallType>
constexpr bool kTakesUpdater = requires(const CallType& call) {
  call.sensor;
};

}  // namespace

Replay::Replay(host::PhoneConfig platform) : mPhone(std::move(platform)) {}

CallTrace Replay::run(const Call& call) {
  CallTrace trace;
  HeskParameterUpdater* updater = nullptr;
  std::visit(
      [&]<typename CallType>(const CallType& concrete) {
        trace.call = CallType::kName;
        if constexpr (kTakesUpdater<CallType>) {
          trace.sensor = concrete.sensor;
          updater = HeskParameterUpdater::createInstance(concrete.sensor);
        }
        Runner{trace, mPhone, updater}(concrete);
      },
      call);
  if (trace.sensor) {
    Json& state = mStates[*trace.sensor];
    trace.state = StateTrace{state, updater != nullptr ? stateOf(*updater) : Json()};
    state = trace.state->after;
  }
  trace.effects = mPhone.effects.take();
  trace.logs = mPhone.log.take();
  return trace;
}

}  // namespace camhook
