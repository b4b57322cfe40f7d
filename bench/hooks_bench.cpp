// Measures the hooks of the shared library on calls of stored scenarios.
//
// Each row repeats one call on the same containers. The accesses of the call to the simulated phone
// are recorded once and repeated by themselves: `access time` includes reading all items of an
// entry and constructing written entries. `overhead` is the rest of the hook's time, in percent of
// the access time; it includes service calls and effects other than on the event store.
//
// Allocations are calls of operator new in one call, including those of the simulated phone. Exits
// with 1 if a limit is exceeded.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "bench/Report.h"
#include "common/HeskParameterUpdater.h"
#include "common/HeskSensorModeControl.h"
#include "common/log/Log.h"
#include "host/ImageStream.h"
#include "host/MetadataAccess.h"
#include "host/Observer.h"
#include "platform/EventStore.h"
#include "platform/MetadataProvider.h"
#include "platform/Properties.h"
#include "tests/support/AllocationCounter.h"
#include "tools/camhook/input/ScenarioReader.h"
#include "tools/camhook/run/Replay.h"

namespace {

using NSCam::IMetadata;

/// A call of a stored scenario, counted from 1, with logs off.
struct Row {
  const char* hook;
  const char* scenario;
  std::size_t call;
  double maxOverhead = 0.5;  // as a part of the access time
};

constexpr Row kPreview{"updateRequestMeta, preview", "preview", 2};
constexpr const char* kDisabledLog = "a disabled log level";
constexpr std::array kHooks = {
    kPreview,
    Row{"updateRequestMeta, still capture", "still_burst", 2},
    Row{"updateSessionParams", "video_4k60", 1},
    Row{"decideSensorScenario", "video_4k60", 2},
    Row{"updateResultMeta", "video_night_results", 1, 0.2},
    Row{"updateCaptureRawParameter", "raw_capture", 2},
    Row{"translateResultRegionForHesk", "result_regions", 2},
};

constexpr const char* kReference = "64 look-ups in a map of texts";
constexpr double kMaxPreview = 0.75;  // as a part of the reference; twice the usual value
constexpr double kMaxDisabledLogNs = 2;

std::string contentOf(const std::string& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

/// Repeats a call of a scenario on its containers.
class Hook {
 public:
  explicit Hook(camhook::Call& call) {
    std::visit([this](auto& each) { prepare(each); }, call);
  }

  void operator()() const { mRun(); }

  /// Returns the container of an access; a spare one for containers that the library created.
  [[nodiscard]] IMetadata& container(const IMetadata* seen) {
    const auto passed = std::ranges::find(mPassed, seen);
    return passed != mPassed.end() ? **passed : mSpare;
  }

 private:
  IMetadata* pass(camhook::MetadataArgument& metadata) {
    return metadata ? mPassed.emplace_back(&*metadata) : nullptr;
  }

  static HeskParameterUpdater& updater(int sensor) {
    return *HeskParameterUpdater::createInstance(sensor);
  }

  void prepare(camhook::UpdateRequestMeta& call) {
    mRun = [&call, meta = pass(call.meta)] {
      updater(call.sensor).updateRequestMeta(meta, call.requestNo);
    };
  }

  void prepare(camhook::UpdateResultMeta& call) {
    mRun = [&call, meta = pass(call.meta)] {
      updater(call.sensor).updateResultMeta(meta, call.requestNo);
    };
  }

  void prepare(camhook::UpdateSessionParams& call) {
    HeskParameterUpdater::ImageStreams streams;
    for (const auto& [id, usage, width, height] : call.streams) {
      streams.emplace(id, new host::ImageStream(id, usage, {width, height}));
    }
    mRun = [&call, streams, meta = pass(call.meta)] {
      updater(call.sensor).updateSessionParams(meta, streams);
    };
  }

  void prepare(camhook::UpdateCaptureRawParameter& call) {
    mRun = [&call, app = pass(call.app), hal = pass(call.hal), out = pass(call.out)] {
      updater(call.sensor).updateCaptureRawParameter(app, hal, out);
    };
  }

  void prepare(camhook::TranslateResultRegion& call) {
    mRun = [&call, meta = pass(call.meta)] {
      updater(call.sensor)
          .translateResultRegionForHesk(meta, call.value, call.cameraId,
                                        static_cast<long>(call.tag));
    };
  }

  void prepare(camhook::DecideSensorScenario& call) {
    auto info = std::make_shared<HeskSensorModeControl::StreamInfo>();
    *info = {.hasVideoConsumer = call.video, .mainOutputSize = {call.width, call.height}};
    mRun = [&call, info, meta = pass(call.meta)] {
      HeskSensorModeControl::createInstance(call.sensor)->decideSensorScenario(meta, info);
    };
  }

  /// No row has another call.
  void prepare(auto& /*call*/) { std::abort(); }

  std::function<void()> mRun;
  std::vector<IMetadata*> mPassed;
  IMetadata mSpare;
};

/// Records the accesses to the phone.
struct Accesses final : host::Observer {
  void onAccess(const host::Access& access) override { all.push_back(access); }

  std::vector<host::Access> all;
};

void lookUp(const IMetadata& container, IMetadata::Tag_t tag) {
  const IMetadata::IEntry& entry = container.entryFor(tag);
  const auto readItems = [&]<typename T>(const std::vector<T>& items) {
    for (std::size_t i = 0; i < items.size(); ++i) {
      benchmark::DoNotOptimize(entry.itemAt(i, NSCam::Type2Type<T>{}));
    }
  };
  std::visit(readItems, host::MetadataAccess::itemsOf(entry));
}

IMetadata::IEntry rebuilt(const IMetadata::IEntry& entry) {
  IMetadata::IEntry made(entry.tag());
  const auto append = [&]<typename T>(const std::vector<T>& items) {
    for (const T& item : items) made.push_back(item, NSCam::Type2Type<T>{});
  };
  std::visit(append, host::MetadataAccess::itemsOf(entry));
  return made;
}

/// Repeats an access.
struct RepeatAccess {
  Hook& hook;

  void operator()(const host::MetadataRead& read) const {
    lookUp(hook.container(read.container), read.tag);
  }

  void operator()(const host::StaticRead& read) const {
    const auto* const provider = NSCam::NSMetadataProviderManager::valueForByDeviceId(read.device);
    lookUp(provider->getStaticCharacteristics(), read.tag);
  }

  void operator()(const host::MetadataWrite& write) const {
    hook.container(write.container).update(write.tag, rebuilt(write.entry));
  }

  void operator()(const host::EventRead& read) const {
    std::string value;
    NSCam::ATMsEventMgr::getInstance().get(read.key, value);
    benchmark::DoNotOptimize(value.data());
  }

  void operator()(const host::PropertyRead& read) const {
    std::array<char, PROPERTY_VALUE_MAX> value{};
    benchmark::DoNotOptimize(property_get(read.name.c_str(), value.data(), ""));
  }

  void operator()(const host::Effect& effect) const {
    if (effect.op != "eventStore.set") return;
    NSCam::ATMsEventMgr::getInstance().set(std::get<std::string>(effect.fields[0].value),
                                           std::get<std::string>(effect.fields[1].value));
  }

  void operator()(const host::ServiceRead& /*read*/) const {}
};

/// Measures the time and the allocations of `call`.
template <typename Call>
void measure(benchmark::State& state, Call call) {
  call();
  const std::size_t before = allocationCount();
  for ([[maybe_unused]] const auto iteration : state) call();
  const auto allocations = static_cast<double>(allocationCount() - before);
  state.counters["allocations"] =
      benchmark::Counter(allocations, benchmark::Counter::kAvgIterations);
}

enum class Measured { hook, accesses };

void measureRow(benchmark::State& state, const Row& row, Measured what) {
  camhook::Scenario scenario = camhook::readScenario(
      contentOf(std::string(CAM_SOURCE_DIR "/scenarios/") + row.scenario + ".json"));
  camhook::Replay replay(std::move(scenario.platform));
  for (std::size_t i = 0; i + 1 < row.call; ++i) replay.run(scenario.calls[i]);
  host::LogSink::enableLevels({});

  Hook hook(scenario.calls[row.call - 1].call);
  hook();  // adds the entries that the hook writes
  Accesses accesses;
  replay.phone().setObserver(&accesses);
  hook();
  replay.phone().setObserver(nullptr);
  if (what == Measured::hook) {
    measure(state, [&] { hook(); });
  } else {
    state.counters["accesses"] = static_cast<double>(accesses.all.size());
    measure(state, [&] {
      for (const host::Access& access : accesses.all) std::visit(RepeatAccess{hook}, access);
    });
  }
}

void measureDisabledLog(benchmark::State& state) {
  static constexpr hesk::log::Source kSource{"HeskBench", "bench/hooks_bench.cpp"};
  static constexpr hesk::log::Operation kOperation{kSource, "bench"};
  host::LogSink::enableLevels({});
  int value = 0;
  measure(state, [&] {
    HESK_LOGD(kOperation, "value %d", value);
    benchmark::ClobberMemory();
  });
}

/// A measure of the machine's speed: work like that of the simulated phone's event store.
void measureReference(benchmark::State& state) {
  std::map<std::string, std::size_t> texts;
  for (std::size_t i = 0; i < 64; ++i) texts.emplace("vendor.camera.text." + std::to_string(i), i);
  const std::map<std::string, std::size_t> same = texts;
  measure(state, [&] {
    for (const auto& [key, index] : same) benchmark::DoNotOptimize(texts.find(key));
  });
}

std::string accessesOf(const Row& row) { return std::string(row.hook) + ": accesses"; }

void registerRows() {
  for (const Row& row : kHooks) {
    benchmark::RegisterBenchmark(row.hook, measureRow, row, Measured::hook);
    benchmark::RegisterBenchmark(accessesOf(row).c_str(), measureRow, row, Measured::accesses);
  }
  benchmark::RegisterBenchmark(kReference, measureReference);
  benchmark::RegisterBenchmark(kDisabledLog, measureDisabledLog);
}

/// Prints the rows that ran. Returns true if all are within their limits.
bool report(const bench::FastestRuns& fastest) {
  constexpr double kPerCent = 100;
  bool areMet = true;
  std::printf("%-34s %9s %11s %8s %11s %8s\n", "", "time", "allocations", "accesses", "access time",
              "overhead");
  for (const Row& row : kHooks) {
    const auto* const whole = fastest.find(row.hook);
    const auto* const accesses = fastest.find(accessesOf(row));
    if (whole == nullptr || accesses == nullptr) continue;
    const double overhead = kPerCent * (whole->ns / accesses->ns - 1);
    std::printf("%-34s %6.0f ns %11.0f %8.0f %8.0f ns %6.0f %%", row.hook, whole->ns,
                whole->allocations, accesses->accesses, accesses->ns, overhead);
    areMet &= bench::judge(overhead, kPerCent * row.maxOverhead, "%");
  }
  const auto* const preview = fastest.find(kPreview.hook);
  const auto* const reference = fastest.find(kReference);
  if (preview != nullptr && reference != nullptr) {
    const double part = kPerCent * preview->ns / reference->ns;
    std::printf("a preview request: %.0f %% of %s", part, kReference);
    areMet &= bench::judge(part, kPerCent * kMaxPreview, "%");
  }
  if (const auto* const log = fastest.find(kDisabledLog)) {
    std::printf("%-34s %6.1f ns", kDisabledLog, log->ns);
    areMet &= bench::judge(log->ns, kMaxDisabledLogNs, "ns");
  }
  return areMet;
}

}  // namespace

int main(int argc, char** argv) {
  setenv("TZ", "UTC", 1);  // without TZ, each time stamp looks for a changed time zone file
  return bench::run(argc, argv, registerRows, report);
}
