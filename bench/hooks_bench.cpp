// The hooks as the pipeline calls them, on requests of 60 entries, each beside its floor.
//
// Every row works on containers that it has worked on before, so that it times the hook and not the
// containers' growth.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "bench/Cells.h"
#include "bench/Floors.h"
#include "bench/Scene.h"
#include "bench/Tables.h"
#include "common/HeskParameterUpdater.h"
#include "common/HeskSensorModeControl.h"
#include "common/tags/Metadata.h"
#include "host/ImageStream.h"
#include "host/MetadataAccess.h"
#include "host/Phone.h"

namespace bench {
namespace {

using namespace hesk;
using NSCam::IMetadata;

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

/// A hook, what it is called on, and its floor.
struct Row {
  std::string name;
  std::function<void(Scene&)> prepare;
  void (*floor)(Scene&);
  void (*hook)(Scene&);
};

/// The tags of every container of a scene after a run, each with its count of items.
using Shape = std::vector<std::pair<std::uint32_t, std::size_t>>;

Shape shapeAfter(const Row& row, void (*run)(Scene&)) {
  Scene scene;
  row.prepare(scene);
  run(scene);
  Shape shape;
  for (const IMetadata* metadata : {&scene.app, &scene.hal, &scene.out}) {
    for (const auto* entry : host::MetadataAccess::entriesByTag(*metadata)) {
      shape.emplace_back(entry->tag(), entry->count());
    }
  }
  return shape;
}

/// A floor that writes other tags than its hook is not its floor.
void checkFloor(const Row& row) {
  if (shapeAfter(row, row.floor) == shapeAfter(row, row.hook)) return;
  std::fprintf(stderr, "%s: the floor writes other tags than the hook\n", row.name.c_str());
  std::abort();
}

enum class Logs { off, on };

void addCellOf(const Row& row, CellName name, void (*run)(Scene&), Cache cache, Logs logs) {
  addCell(std::move(name), cache, [=](Stopwatch& time) {
    Scene scene;
    row.prepare(scene);
    run(scene);
    if (logs == Logs::off) {
      time(1, [&] { run(scene); });
      return;
    }
    host::LogSink::openLevels({'D', 'E', 'I'});
    time(1, [&] {
      run(scene);
      scene.phone.log.take();
    });
  });
}

void preparePreview(Scene& scene) { scene.app = requestOf(1); }

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

void prepareRegion(Scene& scene) {
  scene.phone.config.sat.cameras = {{.id = 0, .role = 0, .fov = 80.0F}};
  scene.app = requestOf(1);
  write(&scene.app, Tag<std::int32_t>{0xc00e0017}, 10, 20, 30, 40);
}

void prepareTuningData(Scene& scene) {
  scene.phone.config.tuningBuffer = {.fd = 3, .bufferSize = kTuningBytes, .bufferIndex = 1};
  scene.bytes.assign(kTuningBytes, 1);
}

/// The longest list of rules, none of which matches, on a session that has all they ask for.
void prepareDecision(Scene& scene) {
  scene.phone.properties.set("ro.product.model.zdm", "KX0105");
  scene.app = requestOf(1);
  write(&scene.app, tags::HESK_CONTROL_EISENABLE, 3);
  write(&scene.app, tags::MTK_STREAMING_FEATURE_HFPS_MODE, 1);
  write(&scene.app, tags::HESK_CONTROL_VIDEOALGOTYPE, 3);
}

HeskParameterUpdater& updater(int sensor) { return *HeskParameterUpdater::createInstance(sensor); }

const Row kRows[] = {
    {"preview request", preparePreview, previewFloor,
     [](Scene& scene) {
       updater(kPreviewSensor).updateRequestMeta(&scene.app, ++scene.requestNo);
     }},
    {"still-capture request", prepareStill, stillFloor,
     [](Scene& scene) { updater(kStillSensor).updateRequestMeta(&scene.app, ++scene.requestNo); }},
    {"session of three streams", prepareSession, sessionFloor,
     [](Scene& scene) { updater(kSessionSensor).updateSessionParams(&scene.app, scene.streams); }},
    {"result", prepareResult, resultFloor,
     [](Scene& scene) { updater(kResultSensor).updateResultMeta(&scene.app, ++scene.requestNo); }},
    {"raw capture, full size", prepareRawCapture, rawCaptureFloor,
     [](Scene& scene) {
       updater(kRawSensor).updateCaptureRawParameter(&scene.app, &scene.hal, &scene.out);
     }},
    {"decision, no rule matches", prepareDecision, decisionFloor,
     [](Scene& scene) {
       benchmark::DoNotOptimize(HeskSensorModeControl::createInstance(kDecisionSensor)
                                    ->decideSensorScenario(&scene.app, scene.info));
     }},
    {"result region", prepareRegion, regionFloor,
     [](Scene& scene) {
       updater(kResultSensor).translateResultRegionForHesk(&scene.app, 80.0F, 0, 0xc00e0017L);
     }},
    {"tuning data, 2 MB", prepareTuningData, tuningFloor,
     [](Scene& scene) {
       updater(kRawSensor).updateTuningData(&scene.app, scene.bytes.data(), kTuningBytes);
     }},
};

}  // namespace

void addHookCells() {
  for (const Row& row : kRows) checkFloor(row);
  for (const Cache cache : {Cache::warm, Cache::cold}) {
    for (const Logs logs : {Logs::off, Logs::on}) {
      for (const Row& row : kRows) {
        std::string name = row.name;
        if (logs == Logs::on) name += ", logs on";
        if (cache == Cache::cold) name += ", cold";
        addCellOf(row, {kHookTable, name, kFloorColumn}, row.floor, cache, Logs::off);
        addCellOf(row, {kHookTable, name, kHookColumn}, row.hook, cache, logs);
      }
    }
  }
  for (const Row& row : kRows) {
    addTarget({.text = row.name + ": at most 1.5 times its floor",
               .cell = {kHookTable, row.name, kHookColumn},
               .kind = Target::Kind::atMostTimes,
               .bound = 1.5});
  }
  for (const char* name :
       {"preview request", "still-capture request", "session of three streams", "result"}) {
    addTarget({.text = std::string(name) + ": no allocation but its floor's",
               .cell = {kHookTable, name, kHookColumn},
               .kind = Target::Kind::atMostAllocationsAbove,
               .bound = 0});
  }
  addTarget({.text = "ns: a preview request of 60 entries, at most 5000; a frame at 240 fps lasts "
                     "4.17 ms",
             .cell = {kHookTable, "preview request", kHookColumn},
             .kind = Target::Kind::atMostNs,
             .bound = 5000});
}

}  // namespace bench
