#include "tools/camhook/run/Replay.h"

#include <utility>

#include <algorithm>
#include <array>
#include <concepts>
#include <cstddef>
#include <memory>
#include <string>

#include "common/HeskSensorModeControl.h"
#include "common/updater/UpdaterInspector.h"
#include "host/CameraMetadata.h"
#include "host/ImageStream.h"
#include "host/MetadataAccess.h"

namespace camhook {
namespace {

Json jsonFromSize(NSCam::MSize size) { return Json::List{size.w, size.h}; }

/// The updater's fields, in the order of the trace.
Json stateOf(HeskParameterUpdater& updater) {
  const HeskParameterUpdaterInspector fields{updater};
  Json::List frames;
  for (const auto& [requestNo, index] : fields.nonZslFrames()) {
    frames.push_back(Json::List{requestNo, index});
  }
  return {{"mInstanceId", fields.instanceId()},
          {"mHasVideoStream", fields.hasVideoStream()},
          {"mNonZslFrames", std::move(frames)},
          {"mMulticamFeatureMode", fields.multicamFeatureMode()},
          {"mPreviewSize", jsonFromSize(fields.previewSize())},
          {"mCaptureCount", fields.captureCount()},
          {"mStreamIds", fields.streamIds()},
          {"mPrimaryCameraDiagonalFov", fields.diagonalFovDegrees()}};
}

constexpr std::size_t kMaxContainers = 3;  // of a call

/// Tuning data: byte i is i modulo 251.
std::vector<std::byte> tuningBlock(std::size_t size) {
  constexpr std::size_t kPeriod = 251;
  std::vector<std::byte> block(size);
  for (std::size_t i = 0; i < size; ++i) block[i] = static_cast<std::byte>(i % kPeriod);
  return block;
}

/// Fills the map in the order of the list, as the pipeline does, because the order of its iteration
/// depends on that.
HeskParameterUpdater::ImageStreams imageStreams(
    const std::vector<UpdateSessionParams::Stream>& streams) {
  HeskParameterUpdater::ImageStreams map;
  for (const auto& [id, usage, width, height] : streams) {
    map.emplace(id, new host::ImageStream(id, usage, {width, height}));
  }
  return map;
}

/// Records the effects and accesses of a call in its trace.
class Recorder final : public host::Observer {
 public:
  /// If `steps` is null, accesses have no step.
  Recorder(host::Phone& phone, CallTrace& trace, Replay::Detail detail, StepFinder* steps,
           Replay::StepsOf which)
      : mPhone(phone),
        mBefore(phone.setObserver(detail != Replay::Detail::containers ? this : nullptr)),
        mTrace(trace),
        mSteps(steps),
        mStepsOf(which) {
    if (detail == Replay::Detail::accesses || steps != nullptr) mTrace.accesses.emplace();
  }
  ~Recorder() { mPhone.setObserver(mBefore); }
  Recorder(const Recorder&) = delete;
  Recorder& operator=(const Recorder&) = delete;

  void onAccess(const host::Access& access) override {
    if (const auto* effect = std::get_if<host::Effect>(&access)) mTrace.effects.push_back(*effect);
    if (!mTrace.accesses) return;
    const bool hasStep = mSteps != nullptr && (mStepsOf == Replay::StepsOf::all ||
                                               std::holds_alternative<host::MetadataWrite>(access));
    mTrace.accesses->push_back(
        {access, nameOfContainer(access), hasStep ? mSteps->find(returnAddresses()) : Step()});
  }

 private:
  [[nodiscard]] std::string_view nameOfContainer(const host::Access& access) const {
    const NSCam::IMetadata* container = nullptr;
    if (const auto* read = std::get_if<host::MetadataRead>(&access)) container = read->container;
    if (const auto* write = std::get_if<host::MetadataWrite>(&access)) container = write->container;
    for (const ContainerTrace& passed : mTrace.containers) {
      if (passed.after && &*passed.after == container) return passed.name;
    }
    return {};
  }

  host::Phone& mPhone;
  host::Observer* mBefore;
  CallTrace& mTrace;
  StepFinder* mSteps;
  Replay::StepsOf mStepsOf;
};

/// Runs one call. `updater` is null if the call uses none or its sensor has none.
struct Runner {
  CallTrace& trace;
  host::Phone& phone;
  HeskParameterUpdater* updater;

  /// Adds the container to the trace and returns the trace's copy for the hook: accesses have its
  /// address.
  [[nodiscard]] NSCam::IMetadata* passContainer(std::string_view name,
                                                const MetadataArgument& metadata) const {
    trace.containers.push_back({name, metadata, metadata});
    MetadataArgument& after = trace.containers.back().after;
    return after ? &*after : nullptr;
  }

  void operator()(const CreateInstance& /*call*/) const { trace.result = updater != nullptr; }

  void operator()(const UpdateSessionParams& call) const {
    NSCam::IMetadata* const meta = passContainer("meta", call.meta);
    if (updater != nullptr) updater->updateSessionParams(meta, imageStreams(call.streams));
  }

  void operator()(const UpdateResultMeta& call) const {
    NSCam::IMetadata* const meta = passContainer("meta", call.meta);
    if (updater != nullptr) updater->updateResultMeta(meta, call.requestNo);
  }

  void operator()(const UpdateCaptureRawParameter& call) const {
    NSCam::IMetadata* const app = passContainer("app", call.app);
    NSCam::IMetadata* const hal = passContainer("hal", call.hal);
    NSCam::IMetadata* const out = passContainer("out", call.out);
    if (updater != nullptr) updater->updateCaptureRawParameter(app, hal, out);
  }

  void operator()(const UpdateTuningData& call) const {
    NSCam::IMetadata* const meta = passContainer("meta", call.meta);
    std::vector<std::byte> block = tuningBlock(call.size);
    bool isDone = false;
    if (updater != nullptr) {
      isDone = updater->updateTuningData(meta, block.data(), call.size);
      trace.result = isDone;
    }
    const auto shared = phone.tuningBuffer.bytes();
    const bool isCopied = isDone && shared.size() >= block.size() &&
                          std::equal(block.begin(), block.end(), shared.begin());
    trace.extras = {{"copied", isCopied}};
  }

  void operator()(const TranslateResultRegion& call) const {
    NSCam::IMetadata* const meta = passContainer("meta", call.meta);
    if (updater == nullptr) return;
    updater->translateResultRegionForHesk(meta, call.value, call.cameraId,
                                          static_cast<long>(call.tag));
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
    const NSCam::IMetadata* const meta = passContainer("meta", call.meta);
    if (updater != nullptr) {
      std::optional<camera_metadata> buffer;
      if (meta != nullptr) buffer.emplace(*meta);
      updater->dumpMetadata(buffer ? &*buffer : nullptr, call.name.c_str(), call.frame);
    }
    const std::vector<std::string> files = phone.files.takeOpened();
    trace.extras = {{"file", files.empty() ? Json() : Json(files.front())}};
    if (!files.empty()) trace.extras.emplace_back("text", phone.files.content(files.front()));
  }

  void operator()(const DecideSensorScenario& call) const {
    trace.sensor = call.sensor;
    NSCam::IMetadata* const meta = passContainer("meta", call.meta);
    const auto info = std::make_shared<HeskSensorModeControl::StreamInfo>();
    *info = {.hasVideoConsumer = call.video, .mainOutputSize = {call.width, call.height}};
    trace.result =
        HeskSensorModeControl::createInstance(call.sensor)->decideSensorScenario(meta, info);
  }

  void operator()(const UpdateRequestMeta& call) const {
    NSCam::IMetadata* const meta = passContainer("meta", call.meta);
    if (updater != nullptr) updater->updateRequestMeta(meta, call.requestNo);
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

Call Replay::withMetaOf(const ScenarioCall& scenarioCall) const {
  Call call = scenarioCall.call;
  if (scenarioCall.metaOf == 0) return call;
  MetadataArgument& own = *findMeta(call);
  NSCam::IMetadata meta;
  const auto kept = mKeptMeta.find(scenarioCall.metaOf);
  if (kept != mKeptMeta.end()) meta = *kept->second;
  for (const std::uint32_t tag : scenarioCall.removedTags) host::MetadataAccess::erase(meta, tag);
  if (own) meta += *own;
  own = std::move(meta);
  return call;
}

CallTrace Replay::run(const ScenarioCall& scenarioCall, Detail detail) {
  CallTrace trace;
  trace.number = scenarioCall.number;
  trace.arguments = scenarioCall.arguments;
  trace.containers.reserve(kMaxContainers);  // the hook has pointers to them
  const Recorder recorder(mPhone, trace, detail, mSteps, mStepsOf);
  HeskParameterUpdater* updater = nullptr;
  std::optional<Call> whole;
  if (scenarioCall.metaOf != 0) whole = withMetaOf(scenarioCall);
  std::visit(
      [&]<typename CallType>(const CallType& concrete) {
        trace.call = CallType::kName;
        if constexpr (UpdaterCall<CallType>) {
          trace.sensor = concrete.sensor;
          updater = mUpdaters(concrete.sensor);
        }
        trace.takesUpdater = UpdaterCall<CallType>;
        const bool hasState = detail == Detail::all && updater != nullptr;
        if (hasState) trace.state.emplace().before = stateOf(*updater);
        Runner{trace, mPhone, updater}(concrete);
        if (hasState) trace.state->after = stateOf(*updater);
      },
      whole ? *whole : scenarioCall.call);
  if (scenarioCall.isLastUse) mKeptMeta.erase(scenarioCall.metaOf);
  if (scenarioCall.isMetaUsed) {
    mKeptMeta[scenarioCall.number] =
        std::make_shared<const NSCam::IMetadata>(*trace.containers.front().after);
  }
  trace.logs = mPhone.log.take();
  return trace;
}

}  // namespace camhook
