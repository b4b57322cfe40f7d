#include "tools/camhook/run/Replay.h"

#include <utility>

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>

#include "common/HeskSensorModeControl.h"
#include "common/updater/UpdaterInspector.h"
#include "host/CameraMetadata.h"
#include "host/ImageStream.h"
#include "tools/camhook/input/MetadataJson.h"

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

Json jsonFromSize(NSCam::MSize size) { return Json::array({size.w, size.h}); }

/// Tuning data: byte i is i modulo 251.
std::vector<std::byte> tuningBlock(std::size_t size) {
  constexpr std::size_t kPeriod = 251;
  std::vector<std::byte> block(size);
  for (std::size_t i = 0; i < size; ++i) block[i] = static_cast<std::byte>(i % kPeriod);
  return block;
}

/// What a file of the phone holds.
std::string contentOf(const host::Phone& phone, const std::string& path) {
  std::ostringstream text;
  text << std::ifstream(phone.config.dataRoot + path, std::ios::binary).rdbuf();
  return text.str();
}

/// In the order in which the pipeline's own map has them when it is filled in the list's order.
HeskParameterUpdater::ImageStreams imageStreams(
    const std::vector<UpdateSessionParams::Stream>& streams) {
  HeskParameterUpdater::ImageStreams map;
  for (const auto& [id, usage, width, height] : streams) {
    map.emplace(id, new host::ImageStream(id, usage, {width, height}));
  }
  return map;
}

/// Runs one call. `updater` is null where there is none, and for calls that take none.
struct Runner {
  CallTrace& trace;
  host::Phone& phone;
  HeskParameterUpdater* updater;

  void operator()(const CreateInstance& /*call*/) const { trace.result = updater != nullptr; }

  void operator()(const UpdateSessionParams& call) const {
    ContainerTrace container{"meta", call.meta, call.meta};
    if (updater != nullptr) {
      updater->updateSessionParams(pointerTo(container.after), imageStreams(call.streams));
    }
    trace.containers.push_back(std::move(container));
  }

  void operator()(const UpdateResultMeta& call) const {
    ContainerTrace container{"meta", call.meta, call.meta};
    if (updater != nullptr) updater->updateResultMeta(pointerTo(container.after), call.requestNo);
    trace.containers.push_back(std::move(container));
  }

  void operator()(const UpdateCaptureRawParameter& call) const {
    ContainerTrace app{"app", call.app, call.app};
    ContainerTrace hal{"hal", call.hal, call.hal};
    ContainerTrace out{"out", call.out, call.out};
    if (updater != nullptr) {
      updater->updateCaptureRawParameter(pointerTo(app.after), pointerTo(hal.after),
                                         pointerTo(out.after));
    }
    trace.containers = {std::move(app), std::move(hal), std::move(out)};
  }

  void operator()(const UpdateTuningData& call) const {
    ContainerTrace container{"meta", call.meta, call.meta};
    std::vector<std::byte> block = tuningBlock(call.size);
    bool isDone = false;
    if (updater != nullptr) {
      isDone = updater->updateTuningData(pointerTo(container.after), block.data(), call.size);
      trace.result = isDone;
    }
    const auto shared = phone.tuningBuffer.bytes();
    const bool isCopied = isDone && shared.size() >= block.size() &&
                          std::equal(block.begin(), block.end(), shared.begin());
    trace.extras = {{"copied", isCopied}};
    trace.containers.push_back(std::move(container));
  }

  void operator()(const TranslateResultRegion& call) const {
    ContainerTrace container{"meta", call.meta, call.meta};
    if (updater != nullptr) {
      updater->translateResultRegionForHesk(pointerTo(container.after), call.value, call.cameraId,
                                            static_cast<long>(call.tag));
    }
    trace.containers.push_back(std::move(container));
  }

  void operator()(const SetPreviewSize& call) const {
    if (updater != nullptr) updater->setPreviewSize({call.width, call.height});
  }

  void operator()(const MatchAspectRatio& call) const {
    if (updater == nullptr) return;
    NSCam::MSize size = call.size;
    updater->matchAspectRatio(&call.reference, &size);
    trace.result = jsonFromSize(size);
  }

  void operator()(const DumpMetadata& call) const {
    trace.containers.push_back({"meta", call.meta, call.meta});
    if (updater != nullptr) {
      std::optional<camera_metadata> buffer;
      if (call.meta) buffer.emplace(*call.meta);
      updater->dumpMetadata(buffer ? &*buffer : nullptr, call.name.c_str(), call.frame);
    }
    const std::vector<std::string> files = phone.openedFiles.take();
    trace.extras = {{"file", files.empty() ? Json() : Json(files.front())}};
    if (!files.empty()) trace.extras.emplace_back("text", contentOf(phone, files.front()));
  }

  void operator()(const DecideSensorScenario& call) const {
    trace.sensor = call.sensor;
    ContainerTrace container{"meta", call.meta, call.meta};
    const auto info = std::make_shared<HeskSensorModeControl::StreamInfo>();
    *info = {.hasVideoConsumer = call.video, .mainOutputSize = {call.width, call.height}};
    trace.result = HeskSensorModeControl::createInstance(call.sensor)
                       ->decideSensorScenario(pointerTo(container.after), info);
    trace.containers.push_back(std::move(container));
  }

  void operator()(const UpdateRequestMeta& call) const {
    ContainerTrace container{"meta", call.meta, call.meta};
    if (updater != nullptr) updater->updateRequestMeta(pointerTo(container.after), call.requestNo);
    trace.containers.push_back(std::move(container));
  }

  void operator()(const SetEvent& call) const { phone.eventStore.set(call.key, call.value); }

  void operator()(const SetProperty& call) const { phone.properties.set(call.name, call.value); }
};

/// Calls on the updater of their sensor.
template <typename CallType>
concept UpdaterCall = !std::same_as<CallType, DecideSensorScenario> && requires(CallType call) {
  call.sensor;
};

}  // namespace

Replay::Replay(host::PhoneConfig platform, Updaters updaters)
    : mPhone(std::move(platform)), mUpdaters(std::move(updaters)) {}

CallTrace Replay::run(const ScenarioCall& scenarioCall) {
  CallTrace trace;
  trace.arguments = scenarioCall.arguments;
  HeskParameterUpdater* updater = nullptr;
  std::visit(
      [&]<typename CallType>(const CallType& concrete) {
        trace.call = CallType::kName;
        if constexpr (UpdaterCall<CallType>) {
          trace.sensor = concrete.sensor;
          updater = mUpdaters(concrete.sensor);
        }
        Runner{trace, mPhone, updater}(concrete);
        if constexpr (UpdaterCall<CallType>) {
          Json& state = mStates[concrete.sensor];
          trace.state = StateTrace{state, updater != nullptr ? stateOf(*updater) : Json()};
          state = trace.state->after;
        }
      },
      scenarioCall.call);
  trace.effects = mPhone.effects.take();
  trace.logs = mPhone.log.take();
  return trace;
}

}  // namespace camhook
