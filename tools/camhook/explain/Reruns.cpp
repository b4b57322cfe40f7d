#include "tools/camhook/explain/Reruns.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <ctime>
#include <limits>
#include <type_traits>
#include <utility>

#include "common/updater/UpdaterInspector.h"
#include "host/MetadataAccess.h"
#include "tools/camhook/input/MetadataJson.h"
#include "tools/camhook/input/PlatformReader.h"
#include "tools/camhook/input/ScenarioReader.h"
#include "tools/camhook/show/JsonTrace.h"

namespace camhook {
namespace {

using NSCam::IMetadata;
using Kind = Input::Kind;

/// A clock that stands: what it says must not differ between runs.
std::tm startOfProgram() {
  static const std::tm kStart = [] {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    return local;
  }();
  return kStart;
}

host::PhoneConfig withStandingClock(host::PhoneConfig config) {
  if (!config.clock) config.clock = startOfProgram();
  return config;
}

/// The phone with the changes that concern it. Throws InputError.
host::PhoneConfig changedPhone(const Question& question, const std::vector<Change>& changes) {
  const Place root;
  host::PhoneConfig config = question.scenario.platform;
  const auto isPlatform = [](const Change& change) { return change.input.kind == Kind::platform; };
  if (std::ranges::any_of(changes, isPlatform)) {
    Json document = question.platformDocument();
    for (const Change& change : changes) {
      if (isPlatform(change)) {
        document = withValueAt(std::move(document), change.input.key, change.to);
      }
    }
    config = platformFromJson(document, root);
  }
  for (const Change& change : changes) {
    if (change.input.kind == Kind::provider) {
      config.provider.reset();
      if (!change.to.is_null()) {
        config.provider = host::ProviderConfig{integerFromJson<std::int32_t>(change.to, root)};
      }
    } else if (change.input.kind == Kind::statics) {
      IMetadata& statics = config.devices[static_cast<std::int32_t>(change.input.number)].statics;
      const IMetadata::IEntry none(change.input.tag);
      statics.update(change.input.tag,
                     change.to.is_null() ? none : entryFromJson(change.input.tag, change.to, root));
    }
  }
  return withStandingClock(std::move(config));
}

/// The call with the changes that concern it. Throws InputError.
ScenarioCall changedCall(const Question& question, const std::vector<Change>& changes) {
  const Place root;
  const auto isArgument = [](const Change& change) { return change.input.kind == Kind::argument; };
  ScenarioCall call = question.scenarioCall();
  if (std::ranges::any_of(changes, isArgument)) {
    Json document = question.callDocument();
    for (const Change& change : changes) {
      if (isArgument(change)) document = withValueAt(document, change.input.key, change.to);
    }
    call = callFromJson(document, root);
  }
  for (const Change& change : changes) {
    if (change.input.kind != Kind::metadata) continue;
    MetadataArgument& container = *containerOf(call.call, change.input.key);
    const std::uint32_t tag = change.input.tag;
    if (!change.to.is_null()) {
      if (!container) container.emplace();
      container->update(tag, entryFromJson(tag, change.to, root));
    } else if (container) {
      // Made anew: an entry without items would still tell its tag.
      IMetadata others;
      for (const IMetadata::IEntry* entry : host::MetadataAccess::entriesByTag(*container)) {
        if (entry->tag() != tag) others.update(entry->tag(), *entry);
      }
      container = std::move(others);
    }
  }
  return call;
}

void setTexts(host::Phone& phone, const std::vector<Change>& changes) {
  for (const Change& change : changes) {
    const std::string text = change.to.is_string() ? change.to.get<std::string>() : "";
    if (change.input.kind == Kind::event) phone.eventStore.set(change.input.key, text);
    if (change.input.kind == Kind::property) phone.properties.set(change.input.key, text);
  }
}

template <typename Number>
void append(std::string& bytes, Number number) {
  const auto raw = std::bit_cast<std::array<char, sizeof number>>(number);
  bytes.append(raw.data(), raw.size());
}

std::string signatureOf(const IMetadata::IEntry& entry) {
  const host::ItemList& items = host::MetadataAccess::itemsOf(entry);
  std::string bytes(1, static_cast<char>(items.index()));
  if (entry.isEmpty()) return bytes;
  std::visit(
      [&bytes]<typename Item>(const std::vector<Item>& list) {
        for (const Item& item : list) {
          if constexpr (std::is_same_v<Item, float>) {
            append(bytes, std::isnan(item) ? std::numeric_limits<float>::quiet_NaN() : item);
          } else {
            append(bytes, item);
          }
        }
      },
      items);
  return bytes + '.';
}

/// Collects what the library reads.
class ReadCollector final : public host::Observer {
 public:
  explicit ReadCollector(const Question& question) : mQuestion(question) {}

  void onAccess(const host::Access& access) override { add(access, {}); }

  /// `container` is the one that metadata was read from; empty for one that no call was handed.
  void add(const host::Access& access, std::string_view container) {
    if (std::holds_alternative<host::MetadataRead>(access)) {
      if (container.empty()) return;
      keep({.kind = Kind::metadata,
            .key = std::string(container),
            .tag = std::get<host::MetadataRead>(access).tag});
    } else if (const auto* statics = std::get_if<host::StaticRead>(&access)) {
      keep({.kind = Kind::statics, .key = {}, .tag = statics->tag, .number = statics->device});
    } else if (const auto* event = std::get_if<host::EventRead>(&access)) {
      keep({.kind = Kind::event, .key = event->key});
    } else if (const auto* property = std::get_if<host::PropertyRead>(&access)) {
      keep({.kind = Kind::property, .key = property->name});
    } else if (const auto* service = std::get_if<host::ServiceRead>(&access)) {
      keepService(service->place);
    }
  }

  void keep(const Input& input) {
    if (mSeen.insert(input).second) inputs.push_back(input);
  }

  std::vector<Input> inputs;  // each once, in the order of the first read

 private:
  void keepPlace(std::string place, std::int64_t device = 0) {
    keep({.kind = Kind::platform, .key = std::move(place), .tag = 0, .number = device});
  }

  /// A place may hold several values, each an input by itself.
  void keepService(const std::string& place) {
    const Json& platform = mQuestion.platformDocument();
    if (place == "provider") {
      keep({.kind = Kind::provider, .key = {}});
    } else if (place.ends_with(".static")) {
      // Of a listed device each entry is an input by itself.
      const std::string device = place.substr(0, place.rfind('.'));
      if (!valueAt(platform, device).is_null()) return;
      keepPlace(place, std::stoi(device.substr(device.rfind('.') + 1)));
    } else if (place == "sat.cameras") {
      const std::size_t count = mQuestion.scenario.platform.sat.cameras.size();
      if (count == 0) keepPlace(place);
      for (std::size_t i = 0; i < count; ++i) {
        keepPlace(place + "[" + std::to_string(i) + "].id");
        keepPlace(place + "[" + std::to_string(i) + "].role");
      }
    } else if (place == "sat.translate") {
      for (const char* key : {".scale", ".dx", ".dy"}) keepPlace(place + key);
    } else if (place == "tuningBuffer") {
      for (const char* key : {".fd", ".bufferSize", ".bufferIndex"}) keepPlace(place + key);
    } else if (place.ends_with(".sensor") && !valueAt(platform, place).is_null()) {
      keepPlace(place);
      for (const char* key :
           {".index", ".pdSupported", ".pdWords", ".pdLeft", ".pdRight", ".pdTail"}) {
        keepPlace(place + key);
      }
    } else {
      keepPlace(place);
    }
  }

  const Question& mQuestion;
  std::set<Input> mSeen;
};

Json entryOrNull(const IMetadata::IEntry& entry) {
  return entry.isEmpty() ? Json() : jsonFromEntry(entry);
}

Outcome outcomeOf(const Question& question, const CallTrace& trace) {
  Outcome outcome;
  for (const ContainerTrace& container : trace.containers) {
    if (container.name == question.container && container.after) {
      outcome.entry = container.after->entryFor(question.tag);
    }
  }
  outcome.signature = signatureOf(outcome.entry);
  return outcome;
}

}  // namespace

Reruns::Reruns(const Question& question)
    : mQuestion(question),
      mConfig(withStandingClock(question.scenario.platform)),
      mReplay(mConfig, [this](int sensor) { return updaterOf(sensor); }) {
  host::LogSink::openLevels({});
}

Reruns::UpdaterState Reruns::stateOf(HeskParameterUpdater& updater) {
  const HeskParameterUpdaterInspector fields{updater};
  return {.hasVideoStream = fields.hasVideoStream(),
          .nonZslFrames = fields.nonZslFrames(),
          .multicamFeatureMode = fields.multicamFeatureMode(),
          .previewSize = fields.previewSize(),
          .captureCount = fields.captureCount(),
          .streamIds = fields.streamIds(),
          .diagonalFov = fields.diagonalFovDegrees()};
}

void Reruns::restore(HeskParameterUpdater& updater, const UpdaterState& state) {
  const HeskParameterUpdaterInspector fields{updater};
  fields.hasVideoStream() = state.hasVideoStream;
  fields.nonZslFrames() = state.nonZslFrames;
  fields.setMulticamFeatureMode(state.multicamFeatureMode);
  fields.previewSize() = state.previewSize;
  fields.captureCount() = state.captureCount;
  fields.streamIds() = state.streamIds;
  fields.diagonalFovDegrees() = state.diagonalFov;
}

HeskParameterUpdater* Reruns::updaterOf(int sensor) {
  if (const auto found = mUpdaters.find(sensor); found != mUpdaters.end()) return found->second;
  ReadCollector collector(mQuestion);
  host::Observer* const before = mReplay.phone().setObserver(&collector);
  HeskParameterUpdater* updater = HeskParameterUpdater::createInstance(sensor);
  mReplay.phone().setObserver(before);
  if (updater == nullptr) return nullptr;
  mReadByConstruction.insert(mReadByConstruction.end(), collector.inputs.begin(),
                             collector.inputs.end());
  mFresh.emplace(sensor, stateOf(*updater));
  return mUpdaters.emplace(sensor, updater).first->second;
}

Reruns::Course Reruns::courseOf(const CallTrace& trace) const {
  ReadCollector collector(mQuestion);
  Course course;
  // What the sensor's updater has learned when it was made counts as if this call had made it.
  for (const Input& input : mReadByConstruction) {
    if (trace.sensor == input.number) collector.keep(input);
  }
  for (const StepAccess& access : *trace.accesses) {
    collector.add(access.access, access.container);
    if (const auto* write = std::get_if<host::MetadataWrite>(&access.access);
        write != nullptr && !access.container.empty()) {
      course.signature.append(access.container);
      append(course.signature, write->tag);
      course.signature += signatureOf(write->entry);
    }
    if (const auto* effect = std::get_if<host::Effect>(&access.access)) {
      course.signature += jsonFromEffect(*effect).dump();
    }
  }
  course.inputs = std::move(collector.inputs);
  for (const Input& input : course.inputs) {
    course.signature += jsonFromInput(input, mQuestion).dump();
  }
  return course;
}

bool Reruns::needsFreshProcess(const Input& input) const {
  return std::ranges::find(mReadByConstruction, input) != mReadByConstruction.end() ||
         (input.kind == Kind::platform && input.key.starts_with("tuningBuffer"));
}

Reruns::State Reruns::currentState() const {
  State state;
  for (const auto& [sensor, updater] : mUpdaters) {
    state.updaters.emplace(sensor, stateOf(*updater));
  }
  state.events = mReplay.phone().eventStore.all();
  state.properties = mReplay.phone().properties.all();
  return state;
}

void Reruns::restore(const State& state) {
  for (const auto& [sensor, updater] : mUpdaters) {
    const auto found = state.updaters.find(sensor);
    restore(*updater, found != state.updaters.end() ? found->second : mFresh.at(sensor));
  }
  mReplay.phone().eventStore.replaceAll(state.events);
  mReplay.phone().properties.replaceAll(state.properties);
}

bool Reruns::isNow(const State& state) const {
  for (const auto& [sensor, updater] : mUpdaters) {
    const auto found = state.updaters.find(sensor);
    if (stateOf(*updater) != (found != state.updaters.end() ? found->second : mFresh.at(sensor))) {
      return false;
    }
  }
  return mReplay.phone().eventStore.all() == state.events &&
         mReplay.phone().properties.all() == state.properties;
}

Reruns::Study Reruns::study() {
  for (std::size_t i = 0; i < mQuestion.call; ++i) {
    mStates.push_back(currentState());
    const CallTrace trace = mReplay.run(mQuestion.scenario.calls[i], Replay::Detail::accesses);
    std::set<Input>& reads = mReads.emplace_back();
    for (Input& input : courseOf(trace).inputs) {
      if (!input.isOfThisCall()) reads.insert(std::move(input));
    }
  }
  mStates.push_back(currentState());
  StepFinder steps;
  mReplay.followSteps(&steps);
  const CallTrace trace = mReplay.run(mQuestion.scenarioCall(), Replay::Detail::accesses);
  mReplay.followSteps(nullptr);

  Study study;
  study.events = mStates.back().events;
  study.properties = mStates.back().properties;
  for (const ContainerTrace& container : trace.containers) {
    if (container.name == mQuestion.container && container.before) {
      study.before = entryOrNull(container.before->entryFor(mQuestion.tag));
    }
  }
  study.after = outcomeOf(mQuestion, trace);
  study.course = courseOf(trace);
  for (const StepAccess& access : *trace.accesses) {
    const auto* write = std::get_if<host::MetadataWrite>(&access.access);
    if (write == nullptr || access.container != mQuestion.container ||
        write->tag != mQuestion.tag) {
      continue;
    }
    study.writes.push_back({entryOrNull(write->entry), access.step});
  }
  return study;
}

std::optional<Reruns::Variant> Reruns::prepare(const std::vector<Change>& changes) {
  Variant variant;
  try {
    variant.call = changedCall(mQuestion, changes);
    bool isAnotherPhone = false;
    for (const Change& change : changes) {
      if (change.input.kind == Kind::call) {
        variant.leftOut.insert(static_cast<std::size_t>(change.input.number));
      } else if (!change.input.isOfThisCall()) {
        variant.ofThePhone.insert(change.input);
        isAnotherPhone = true;
      } else if (change.input.kind == Kind::event || change.input.kind == Kind::property) {
        variant.texts.push_back(change);
      }
    }
    mReplay.phone().config = isAnotherPhone ? changedPhone(mQuestion, changes) : mConfig;
  } catch (const InputError&) {
    return {};
  }
  return variant;
}

/// The next call, from one on, that is left out or has read what is changed; the question's own
/// where there is none before it.
std::size_t Reruns::nextTouched(const Variant& variant, std::size_t from) const {
  for (std::size_t i = from; i < mQuestion.call; ++i) {
    if (variant.leftOut.contains(i)) return i;
    for (const Input& input : variant.ofThePhone) {
      if (mReads[i].contains(input)) return i;
    }
  }
  return mQuestion.call;
}

void Reruns::runCallsBefore(const Variant& variant) {
  std::size_t at = nextTouched(variant, 0);
  restore(mStates[at]);
  while (at < mQuestion.call) {
    if (!variant.leftOut.contains(at)) {
      mReplay.run(mQuestion.scenario.calls[at], Replay::Detail::containers);
    }
    ++at;
    if (!isNow(mStates[at])) continue;
    at = nextTouched(variant, at);
    restore(mStates[at]);
  }
}

CallTrace Reruns::runCall(const Variant& variant, Replay::Detail detail) {
  setTexts(mReplay.phone(), variant.texts);
  return mReplay.run(variant.call, detail);
}

std::optional<Outcome> Reruns::run(const std::vector<Change>& changes) {
  const std::optional<Variant> variant = prepare(changes);
  if (!variant) return {};
  runCallsBefore(*variant);
  return outcomeOf(mQuestion, runCall(*variant, Replay::Detail::containers));
}

std::optional<Reruns::Course> Reruns::courseWith(const std::vector<Change>& changes) {
  const std::optional<Variant> variant = prepare(changes);
  if (!variant) return {};
  runCallsBefore(*variant);
  return courseOf(runCall(*variant, Replay::Detail::accesses));
}

std::optional<Outcome> Reruns::runOnce(const Question& question,
                                       const std::vector<Change>& changes) {
  try {
    const ScenarioCall call = changedCall(question, changes);
    Replay replay(changedPhone(question, changes));
    host::LogSink::openLevels({});
    for (std::size_t i = 0; i < question.call; ++i) {
      const auto isLeftOut = [i](const Change& change) {
        return change.input.kind == Kind::call &&
               change.input.number == static_cast<std::int64_t>(i);
      };
      if (std::ranges::any_of(changes, isLeftOut)) continue;
      replay.run(question.scenario.calls[i], Replay::Detail::containers);
    }
    setTexts(replay.phone(), changes);
    return outcomeOf(question, replay.run(call, Replay::Detail::containers));
  } catch (const InputError&) {
    return {};
  }
}

}  // namespace camhook
