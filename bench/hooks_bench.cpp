// What the hooks cost: one row a hook, called as the pipeline calls it, on requests of 60 entries;
// and the closed log gate. Logs are off where a row does not say otherwise. `allocations` counts
// calls of operator new in one call, those of the simulated phone included.
//
// Every row works on containers that it has worked on before, so that it times the hook and not the
// containers' growth.

#include <benchmark/benchmark.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>
#include <vector>

#include "common/HeskParameterUpdater.h"
#include "common/HeskSensorModeControl.h"
#include "common/log/Log.h"
#include "common/tags/Metadata.h"
#include "host/ImageStream.h"
#include "host/Phone.h"

namespace {

std::atomic<std::size_t> sAllocations = 0;

}  // namespace

// Not inline: the compiler would see what is made by new freed by another function.
[[gnu::noinline]] void* operator new(std::size_t size) {
  sAllocations.fetch_add(1, std::memory_order_relaxed);
  if (void* block = std::malloc(size)) return block;
  throw std::bad_alloc();
}

[[gnu::noinline]] void operator delete(void* block) noexcept { std::free(block); }
[[gnu::noinline]] void operator delete(void* block, std::size_t /*size*/) noexcept {
  std::free(block);
}

namespace {

using namespace hesk;
using NSCam::IMetadata;

// Each kind of scene has an updater of its own, which keeps what it learns.
constexpr int kPreviewSensor = 0;
constexpr int kDecisionSensor = 1;
constexpr int kStillSensor = 3;
constexpr int kSessionSensor = 4;
constexpr int kResultSensor = 5;
constexpr int kRawSensor = 6;

constexpr std::size_t kTuningBytes = 2'000'000;

/// A phone of the maker's app, and what a hook is called on.
struct Scene {
  host::Phone phone;
  IMetadata app;
  IMetadata hal;
  IMetadata out;
  HeskParameterUpdater::ImageStreams streams;
  std::shared_ptr<HeskSensorModeControl::StreamInfo> info =
      std::make_shared<HeskSensorModeControl::StreamInfo>();
  std::vector<char> bytes;
  unsigned int requestNo = 0;

  Scene() {
    phone.eventStore.set("APP_TYPE", "heskCamera");
    phone.eventStore.set("APP_NAME", "heskCamera");
    phone.properties.set("ro.product.model.zdm", "KX0107");
    phone.setObserver(nullptr);
    host::LogSink::openLevels({});
  }
};

/// 60 entries: what the app's preview sends, and tags that no hook looks at.
IMetadata requestOf(std::uint8_t captureIntent) {
  IMetadata request;
  write(&request, tags::ANDROID_CONTROL_CAPTURE_INTENT, captureIntent);
  write(&request, tags::ANDROID_CONTROL_ENABLE_ZSL, std::uint8_t{1});
  write(&request, tags::ANDROID_FLASH_MODE, std::uint8_t{0});
  write(&request, tags::MTK_CONTROL_AE_TARGET_FPS_RANGE, 15, 30);
  write(&request, tags::COM_HESK_CURRENTUIMODULE, 31);
  write(&request, tags::HESK_CONTROL_CURRENTMODE, std::int64_t{1});
  write(&request, tags::HESK_CONTROL_ZOOM_ZOOM_RATIO, 1.0F);
  write(&request, tags::HESK_CONTROL_STREAM_FLAGS, 0, 1, 0);
  for (std::uint32_t index = 0; index < 52; ++index) {
    write(&request, Tag<std::int32_t>{0x00020000 + index}, 1);
  }
  return request;
}

void preparePreview(Scene& scene) { scene.app = requestOf(1); }

void preparePreviewLogged(Scene& scene) {
  preparePreview(scene);
  host::LogSink::openLevels({'D', 'E', 'I'});
}

void prepareStill(Scene& scene) {
  scene.app = requestOf(2);
  write(&scene.app, tags::HESK_CONTROL_HISFRAME, 4, 0);
}

void prepareSession(Scene& scene) {
  scene.app = requestOf(1);
  for (const std::int64_t id : {0, 1, 2}) {
    const std::uint64_t usage = id == 2 ? GRALLOC_USAGE_HW_VIDEO_ENCODER : 0;
    scene.streams.emplace(id, new host::ImageStream(id, usage, {3840, 2160}));
  }
}

void prepareResult(Scene& scene) {
  scene.phone.eventStore.set("APP_NAME", "VideoNight");
  scene.phone.eventStore.set("HESK_ISO", "400");
  scene.phone.eventStore.set("HESK_EXP", "33333");
  scene.phone.eventStore.set("HESK_EV", "-0.3");
  scene.app = requestOf(1);
  write(&scene.app, tags::COM_HESK_SCENETYPE, 128);
}

/// At full size: shading from 3A, statistics, static bytes, phase detection.
void prepareRawCapture(Scene& scene) {
  constexpr std::size_t kAwbBytes = 73'728;
  constexpr std::size_t kStaticBytes = 4'096;
  host::DeviceConfig& device = scene.phone.config.devices[kRawSensor];
  write(&device.statics, tags::COM_HESK_PDBUFFERTYPE, 2);
  write(&device.statics, tags::MTK_SENSOR_INFO_ACTIVE_ARRAY_REGION, NSCam::MRect{0, 0, 4000, 3000});
  writeAll(&device.statics, tags::MTK_RAW_ALGO_STATIC_INFO,
           std::vector<std::uint8_t>(kStaticBytes, 1));
  device.sensor.emplace().pdSupported = 1;
  scene.app = requestOf(2);
  write(&scene.app, tags::HESK_CONTROL_CURRENTMODE, std::int64_t{0x40000});
  write(&scene.app, tags::MTK_3A_AWB_STATS_SIZE, static_cast<std::int32_t>(kAwbBytes));
  writeAll(&scene.app, tags::MTK_3A_AWB_STATS_DATA, std::vector<std::uint8_t>(kAwbBytes, 1));
  write(&scene.hal, tags::MTK_HAL_REQUEST_SENSOR_ID, kRawSensor);
  write(&scene.hal, tags::MTK_P1NODE_SCALAR_CROP_REGION, NSCam::MRect{0, 0, 4000, 3000});
}

/// The longest list of rules, none of which matches, on a session that has all they ask for.
void prepareDecision(Scene& scene) {
  scene.phone.properties.set("ro.product.model.zdm", "KX0105");
  scene.app = requestOf(1);
  write(&scene.app, tags::HESK_CONTROL_EISENABLE, 3);
  write(&scene.app, tags::MTK_STREAMING_FEATURE_HFPS_MODE, 1);
  write(&scene.app, tags::HESK_CONTROL_VIDEOALGOTYPE, 3);
}

void prepareRegion(Scene& scene) {
  scene.phone.config.sat.cameras = {{.id = 0, .role = 0, .fov = 80.0F}};
  scene.app = requestOf(1);
  write(&scene.app, Tag<std::int32_t>{0xc00e0017}, 10, 20, 30, 40);
}

void prepareTuningData(Scene& scene) {
  scene.phone.config.tuningBuffer = {.fd = 3, .bufferSize = kTuningBytes, .bufferIndex = 1};
  scene.bytes.assign(kTuningBytes, 1);
}

HeskParameterUpdater& updater(int sensor) { return *HeskParameterUpdater::createInstance(sensor); }

void requestPreview(Scene& scene) {
  updater(kPreviewSensor).updateRequestMeta(&scene.app, ++scene.requestNo);
}

void requestPreviewLogged(Scene& scene) {
  requestPreview(scene);
  scene.phone.log.take();
}

void requestStill(Scene& scene) {
  updater(kStillSensor).updateRequestMeta(&scene.app, ++scene.requestNo);
}

void configureSession(Scene& scene) {
  updater(kSessionSensor).updateSessionParams(&scene.app, scene.streams);
}

void takeResult(Scene& scene) {
  updater(kResultSensor).updateResultMeta(&scene.app, ++scene.requestNo);
}

void captureRaw(Scene& scene) {
  updater(kRawSensor).updateCaptureRawParameter(&scene.app, &scene.hal, &scene.out);
}

void decide(Scene& scene) {
  benchmark::DoNotOptimize(HeskSensorModeControl::createInstance(kDecisionSensor)
                               ->decideSensorScenario(&scene.app, scene.info));
}

void translateRegion(Scene& scene) {
  updater(kResultSensor).translateResultRegionForHesk(&scene.app, 80.0F, 0, 0xc00e0017L);
}

void exportTuningData(Scene& scene) {
  updater(kRawSensor).updateTuningData(&scene.app, scene.bytes.data(), kTuningBytes);
}

/// Times `call`, and counts what it allocates.
template <typename Call>
void measure(benchmark::State& state, Call call) {
  call();
  const std::size_t before = sAllocations;
  for ([[maybe_unused]] const auto iteration : state) call();
  state.counters["allocations"] = benchmark::Counter(static_cast<double>(sAllocations - before),
                                                     benchmark::Counter::kAvgIterations);
}

void hook(benchmark::State& state, void (*prepare)(Scene&), void (*run)(Scene&)) {
  Scene scene;
  prepare(scene);
  measure(state, [&] { run(scene); });
}

BENCHMARK_CAPTURE(hook, preview_request, preparePreview, requestPreview);
BENCHMARK_CAPTURE(hook, preview_request_all_logs, preparePreviewLogged, requestPreviewLogged);
BENCHMARK_CAPTURE(hook, still_capture_request, prepareStill, requestStill);
BENCHMARK_CAPTURE(hook, session_of_three_streams, prepareSession, configureSession);
BENCHMARK_CAPTURE(hook, result, prepareResult, takeResult);
BENCHMARK_CAPTURE(hook, raw_capture_full_size, prepareRawCapture, captureRaw);
BENCHMARK_CAPTURE(hook, decision_no_rule_matches, prepareDecision, decide);
BENCHMARK_CAPTURE(hook, result_region, prepareRegion, translateRegion);
BENCHMARK_CAPTURE(hook, tuning_data_2_mb, prepareTuningData, exportTuningData);

void closedLogGate(benchmark::State& state) {
  static constexpr log::Source kSource{"HeskBench", "bench/hooks_bench.cpp"};
  static constexpr log::Operation kOperation{kSource, "bench"};
  host::LogSink::openLevels({});
  int value = 0;
  measure(state, [&] {
    HESK_LOGD(kOperation, "[%s] value %d", kOperation.name, value);
    benchmark::ClobberMemory();
  });
}
BENCHMARK(closedLogGate);

}  // namespace

BENCHMARK_MAIN();
