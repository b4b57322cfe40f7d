// The hooks as the pipeline calls them, on requests of 60 entries, and the log gate.
//
// Every hook row works on a container that it has worked on before, so that it times the hook and
// not the container's growth.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <vector>

#include "common/HeskParameterUpdater.h"
#include "common/HeskSensorModeControl.h"
#include "common/log/Log.h"
#include "common/tags/Metadata.h"
#include "host/ImageStream.h"
#include "host/Phone.h"

namespace {

using namespace hesk;
using NSCam::IMetadata;

constexpr log::Source kSource{"HeskBench", "bench/hooks_bench.cpp"};
constexpr log::Operation kOperation{kSource, "bench"};

/// A phone of the maker's app, its effects not recorded and its log closed.
struct QuietPhone {
  QuietPhone() {
    phone.eventStore.set("APP_TYPE", "heskCamera");
    phone.eventStore.set("APP_NAME", "heskCamera");
    phone.properties.set("ro.product.model.zdm", "KX0107");
    phone.effects.setRecording(false);
    host::LogSink::openLevels({});
  }
  host::Phone phone;
};

/// A request of 60 entries: what the app's preview sends, and tags that no hook looks at.
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

/// What moving so many bytes cannot be faster than.
void copyBytes(benchmark::State& state, std::size_t size) {
  const std::vector<char> from(size, 1);
  std::vector<char> to(size);
  for ([[maybe_unused]] auto _ : state) {
    std::memcpy(to.data(), from.data(), size);
    benchmark::ClobberMemory();
  }
}

void runHook(benchmark::State& state, IMetadata request) {
  const QuietPhone quiet;
  HeskParameterUpdater* updater = HeskParameterUpdater::createInstance(0);
  unsigned int requestNo = 0;
  for ([[maybe_unused]] auto _ : state) updater->updateRequestMeta(&request, ++requestNo);
}

void previewRequest(benchmark::State& state) { runHook(state, requestOf(1)); }
BENCHMARK(previewRequest);

/// The metadata operations that the preview request needs, without anything around them: what the
/// hook is measured against.
void metadataOperationsOfAPreview(benchmark::State& state) {
  const QuietPhone quiet;
  IMetadata request = requestOf(1);
  const auto look = [&](auto tag) { benchmark::DoNotOptimize(&request.entryFor(tag.value)); };
  const auto take = [&]<typename T>(Tag<T> tag) {
    benchmark::DoNotOptimize(request.entryFor(tag.value).itemAt(0, NSCam::Type2Type<T>{}));
  };
  const auto put = [&]<typename T>(Tag<T> tag, T item) {
    IMetadata::IEntry entry(tag.value);
    entry.push_back(item, NSCam::Type2Type<T>{});
    request.update(tag.value, std::move(entry));
  };
  for ([[maybe_unused]] auto _ : state) {
    look(tags::HESK_CONTROL_FPS_RANGE_MAX);
    // The calling app.
    look(tags::HESK_CONTROL_FPS_RANGE_MAX);
    take(tags::HESK_CONTROL_CURRENTMODE);
    look(tags::HESK_CONTROL_VIDEOMODE);
    take(tags::COM_HESK_CURRENTUIMODULE);
    look(tags::HESK_CONTROL_NIGHTMODE);
    // The camera app's mode.
    take(tags::COM_HESK_CURRENTUIMODULE);
    take(tags::HESK_CONTROL_CURRENTMODE);
    look(tags::HESK_CONTROL_EISENABLE);
    look(tags::HESK_CONTROL_NATIVEMODE);
    look(tags::HESK_CONTROL_ISSECONDSNAPSHOT);
    look(tags::HESK_CONTROL_VIDEOMODE);
    // What is said by hand.
    look(tags::ANDROID_SENSOR_EXPOSURE_TIME);
    look(tags::ANDROID_SENSOR_SENSITIVITY);
    look(tags::HESK_CONTROL_ALGO_OVERRIDE);
    look(tags::HESK_CONTROL_COLOURTEMPERATURE);
    take(tags::COM_HESK_CURRENTUIMODULE);
    look(tags::HESK_CONTROL_MOTIONLEVEL);
    look(tags::HESK_CONTROL_ISSECONDSNAPSHOT);
    // The request.
    put(tags::MTK_CONTROL_SELECTED_STREAM_ID, -1);
    take(tags::HESK_CONTROL_CURRENTMODE);
    take(tags::COM_HESK_CURRENTUIMODULE);
    take(tags::ANDROID_CONTROL_CAPTURE_INTENT);
    take(tags::HESK_CONTROL_ZOOM_ZOOM_RATIO);
    request.update(tags::MTK_CONTROL_RAW_TYPE.value,
                   IMetadata::IEntry(tags::MTK_CONTROL_RAW_TYPE.value));
    look(tags::HESK_CONTROL_VIDEO_HDR);
    look(tags::HESK_CONTROL_FPS_RANGE_MAX);
  }
}
BENCHMARK(metadataOperationsOfAPreview);

void stillCaptureRequest(benchmark::State& state) {
  IMetadata request = requestOf(2);
  write(&request, tags::HESK_CONTROL_HISFRAME, 4, 0);
  runHook(state, std::move(request));
}
BENCHMARK(stillCaptureRequest);

constexpr std::size_t kAwbBytes = 73'728;
constexpr std::size_t kStaticBytes = 4'096;
constexpr std::size_t kCaptureBytes = kAwbBytes + kStaticBytes + 884 * sizeof(float) + 2'080;

/// A raw capture at full size: shading from 3A, statistics, static bytes, phase detection.
void rawCapture(benchmark::State& state) {
  QuietPhone quiet;
  host::DeviceConfig& device = quiet.phone.config.devices[0];
  write(&device.statics, tags::COM_HESK_PDBUFFERTYPE, 2);
  write(&device.statics, tags::MTK_SENSOR_INFO_ACTIVE_ARRAY_REGION, NSCam::MRect{0, 0, 4000, 3000});
  writeAll(&device.statics, tags::MTK_RAW_ALGO_STATIC_INFO,
           std::vector<std::uint8_t>(kStaticBytes, 1));
  device.sensor.emplace().pdSupported = 1;
  IMetadata app = requestOf(2);
  write(&app, tags::HESK_CONTROL_CURRENTMODE, std::int64_t{0x40000});
  write(&app, tags::MTK_3A_AWB_STATS_SIZE, static_cast<std::int32_t>(kAwbBytes));
  writeAll(&app, tags::MTK_3A_AWB_STATS_DATA, std::vector<std::uint8_t>(kAwbBytes, 1));
  IMetadata hal;
  write(&hal, tags::MTK_HAL_REQUEST_SENSOR_ID, 0);
  write(&hal, tags::MTK_P1NODE_SCALAR_CROP_REGION, NSCam::MRect{0, 0, 4000, 3000});
  IMetadata out;
  HeskParameterUpdater* updater = HeskParameterUpdater::createInstance(0);
  for ([[maybe_unused]] auto _ : state) updater->updateCaptureRawParameter(&app, &hal, &out);
}
BENCHMARK(rawCapture);

/// The bytes of a raw capture, copied.
void copyOfARawCapturesBytes(benchmark::State& state) { copyBytes(state, kCaptureBytes); }
BENCHMARK(copyOfARawCapturesBytes);

constexpr std::size_t kTuningBytes = 2'000'000;

void tuningData(benchmark::State& state) {
  QuietPhone quiet;
  quiet.phone.config.tuningBuffer = {.fd = 3, .bufferSize = kTuningBytes, .bufferIndex = 1};
  std::vector<char> data(kTuningBytes, 1);
  IMetadata meta;
  HeskParameterUpdater* updater = HeskParameterUpdater::createInstance(0);
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(updater->updateTuningData(&meta, data.data(), kTuningBytes));
  }
}
BENCHMARK(tuningData);

void copyOfTuningData(benchmark::State& state) { copyBytes(state, kTuningBytes); }
BENCHMARK(copyOfTuningData);

void sessionOfThreeStreams(benchmark::State& state) {
  const QuietPhone quiet;
  HeskParameterUpdater* updater = HeskParameterUpdater::createInstance(0);
  IMetadata session = requestOf(1);
  HeskParameterUpdater::ImageStreams streams;
  for (const std::int64_t id : {0, 1, 2}) {
    const std::uint64_t usage = id == 2 ? GRALLOC_USAGE_HW_VIDEO_ENCODER : 0;
    streams.emplace(id, new host::ImageStream(id, usage, {3840, 2160}));
  }
  for ([[maybe_unused]] auto _ : state) updater->updateSessionParams(&session, streams);
}
BENCHMARK(sessionOfThreeStreams);

/// What of that the caller's copy of the map takes.
void copyOfThreeStreams(benchmark::State& state) {
  HeskParameterUpdater::ImageStreams streams;
  for (const std::int64_t id : {0, 1, 2}) {
    streams.emplace(id, new host::ImageStream(id, 0, {3840, 2160}));
  }
  for ([[maybe_unused]] auto _ : state) {
    HeskParameterUpdater::ImageStreams copied(streams);
    benchmark::DoNotOptimize(copied);
  }
}
BENCHMARK(copyOfThreeStreams);

void result(benchmark::State& state) {
  QuietPhone quiet;
  quiet.phone.eventStore.set("APP_NAME", "VideoNight");
  quiet.phone.eventStore.set("HESK_ISO", "400");
  quiet.phone.eventStore.set("HESK_EXP", "33333");
  quiet.phone.eventStore.set("HESK_EV", "-0.3");
  HeskParameterUpdater* updater = HeskParameterUpdater::createInstance(0);
  IMetadata result = requestOf(1);
  write(&result, tags::COM_HESK_SCENETYPE, 128);
  unsigned int requestNo = 0;
  for ([[maybe_unused]] auto _ : state) updater->updateResultMeta(&result, ++requestNo);
}
BENCHMARK(result);

/// The longest list of rules, none of which matches, on metadata that has everything they ask for.
void decisionWithoutMatch(benchmark::State& state) {
  QuietPhone quiet;
  quiet.phone.properties.set("ro.product.model.zdm", "KX0105");
  IMetadata session = requestOf(1);
  write(&session, tags::HESK_CONTROL_EISENABLE, 3);
  write(&session, tags::MTK_STREAMING_FEATURE_HFPS_MODE, 1);
  write(&session, tags::HESK_CONTROL_VIDEOALGOTYPE, 3);
  const auto info = std::make_shared<HeskSensorModeControl::StreamInfo>();
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(
        HeskSensorModeControl::createInstance(1)->decideSensorScenario(&session, info));
  }
}
BENCHMARK(decisionWithoutMatch);

void copyOfARequest(benchmark::State& state) {
  const IMetadata request = requestOf(1);
  for ([[maybe_unused]] auto _ : state) {
    IMetadata copied(request);
    benchmark::DoNotOptimize(copied);
  }
}
BENCHMARK(copyOfARequest);

void closedLogGate(benchmark::State& state) {
  const QuietPhone quiet;
  int value = 0;
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(++value);
    HESK_LOGD(kOperation)("[%s] value %d", value);
    benchmark::ClobberMemory();
  }
}
BENCHMARK(closedLogGate);

/// What a closed gate cannot be faster than.
[[gnu::noinline]] bool isByteSet(const unsigned char* byte) { return (*byte & 0x80U) != 0; }

void callThatTestsOneByte(benchmark::State& state) {
  const QuietPhone quiet;
  const auto* byte = reinterpret_cast<const unsigned char*>(g_logInfoLv) + 6;
  int value = 0;
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(++value);
    benchmark::DoNotOptimize(isByteSet(byte));
    benchmark::ClobberMemory();
  }
}
BENCHMARK(callThatTestsOneByte);

}  // namespace
