// Selects the tuning profile of a request and publishes its name as the event store's "APP_NAME",
// which the ISP tuning reads. For the OEM camera app the profile depends on UI module and mode; the
// last step that sets a name wins.

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>

#include "common/Events.h"
#include "common/HeskParameterUpdater.h"
#include "common/tags/Metadata.h"
#include "common/tags/Values.h"
#include "common/updater/UpdaterLog.h"

namespace {

using namespace hesk;
using NSCam::IMetadata;

constexpr log::Operation kOperation{kUpdaterSource, "updateTuningAppName"};

// Values of ANDROID_CONTROL_SCENE_MODE.
constexpr std::uint8_t kLandscape = 4;
constexpr std::uint8_t kNight = 5;
constexpr std::uint8_t kParty = 14;

struct UiModule {
  std::int32_t number;
  const char* name;
};

/// The modules with a fixed profile name.
constexpr UiModule kUiModules[] = {
    {11, "SlowMotion"},
    {12, "TimeLapse"},
    {uimodule::kProfessional16, "Professional"},
    {uimodule::kArStickers, "ARStickers"},
    {uimodule::kFunVideo, "FunVideo"},
    {28, "LivePhoto"},
    {29, "SuperClearness"},
    {35, "MotionCapture"},
    {40, "SuperStar"},
    {42, "DiplexExposure"},
    {uimodule::kProfessional51, "Professional"},
};

const char* superNightName(std::int32_t sceneType) {
  switch (sceneType) {
    case 0x100000: return "SuperNightExtreme";
    case 0x180000:
    case 0x700000: return "SuperNightTripod";
    default: return "SuperNight";
  }
}

const char* moonName(std::int32_t moonMode) { return moonMode == 3 ? "SuperMoon" : "NormalMoon"; }

/// The inputs of the steps. An absent mode is -1, in which all bits are set: the request is a
/// photo.
struct AppState {
  std::int32_t uiModule;
  std::int64_t currentMode;
  std::int32_t eisEnable;
  std::int32_t sceneType;
};

AppState readAppState(const IMetadata* request) {
  const AppState state{.uiModule = read(request, tags::COM_HESK_CURRENTUIMODULE, -1),
                       .currentMode = read(request, tags::HESK_CONTROL_CURRENTMODE, -1),
                       .eisEnable = read(request, tags::HESK_CONTROL_EISENABLE, -1),
                       .sceneType = read(request, tags::COM_HESK_SCENETYPE)};
  HESK_LOGD(kOperation, "COM_HESK_CURRENTUIMODULE %d, HESK_CONTROL_CURRENTMODE %d, eisenable %d",
            state.uiModule, static_cast<std::int32_t>(state.currentMode), state.eisEnable);
  return state;
}

/// Returns the profile name of the UI module, null if it has none.
const char* moduleName(const IMetadata* request, const AppState& state) {
  switch (state.uiModule) {
    case uimodule::kSuperNight: return superNightName(state.sceneType);
    case uimodule::kMoon: return moonName(read(request, tags::HESK_CONTROL_MOONMODE));
    default: break;
  }
  const auto* module = std::ranges::find(kUiModules, state.uiModule, &UiModule::number);
  return module != std::end(kUiModules) ? module->name : nullptr;
}

bool isProfessional(std::int32_t uiModule) {
  return uiModule == uimodule::kProfessional16 || uiModule == uimodule::kProfessional51;
}

void setAppName(std::string_view name) { setEvent("APP_NAME", name); }

// These steps return true if they set a profile name.

bool namePhotoOrPanorama(IMetadata* request, const AppState& state) {
  if (state.uiModule == uimodule::kPhoto || (state.currentMode & mode::kPhoto) != 0) {
    setAppName(read(request, tags::HESK_CONTROL_NATIVEMODE) == 0 ? "FaceBeauty" : "NativeMode");
    if (read(request, tags::HESK_CONTROL_ISSECONDSNAPSHOT) == 1) setAppName("PartyPortrait");
    return true;
  }
  if ((state.currentMode & mode::kPanorama) != 0) {
    setAppName("Panorama");
    write(request, tags::ANDROID_CONTROL_SCENE_MODE, kLandscape);
    HESK_LOGD(kOperation, "Panorama mode set MTK_CONTROL_SCENE_MODE_LANDSCAPE");
    return true;
  }
  return false;
}

bool nameVideo(const IMetadata* request) {
  if (read(request, tags::HESK_CONTROL_VIDEOMODE) == 0) return false;
  setAppName("Video");
  if (read(request, tags::HESK_CONTROL_NIGHTMODE) == 1) setAppName("VideoNight");
  return true;
}

void setUpSuperNight(IMetadata* request, std::int32_t sceneType) {
  HESK_LOGD(kOperation, "sceneType %d", sceneType);
  write(request, tags::ANDROID_CONTROL_SCENE_MODE, kNight);
  HESK_LOGD(kOperation, "supernight mode set MTK_CONTROL_SCENE_MODE_NIGHT");
  if (read(request, tags::ANDROID_CONTROL_CAPTURE_INTENT) != intent::kStillCapture) return;
  write(request, tags::MTK_HESK_SUPER_NIGHT_ON, 1);
  HESK_LOGD(kOperation, "supernight mode set MTK_HESK_SUPER_NIGHT_ON");
}

void setUpProfessional(IMetadata* request) {
  setEvent("APP_MODE", "Professional");
  write(request, tags::ANDROID_CONTROL_SCENE_MODE, kParty);
  HESK_LOGD(kOperation, "Professional mode set MTK_CONTROL_SCENE_MODE_PARTY");
}

bool nameModule(IMetadata* request, const AppState& state) {
  const char* name = moduleName(request, state);
  if (name == nullptr) return false;
  setAppName(name);
  if (state.uiModule == uimodule::kSuperNight) setUpSuperNight(request, state.sceneType);
  if (isProfessional(state.uiModule)) setUpProfessional(request);
  return true;
}

bool nameHdr(const AppState& state) {
  if (state.currentMode < 1 || (state.currentMode & mode::kHdr) == 0) return false;
  setAppName("HDR");
  return true;
}

void reportStabilization(IMetadata* request, const AppState& state, bool hasVideoStream) {
  if (!hasVideoStream && state.uiModule != uimodule::k53 && state.uiModule != uimodule::kFunVideo) {
    return;
  }
  write(request, tags::HESK_EISSTATE, state.eisEnable >= 1 ? 1 : 0);
}

void tuneOemCamera(IMetadata* request, const AppState& state, bool hasVideoStream) {
  bool isNamed = namePhotoOrPanorama(request, state);
  isNamed |= nameVideo(request);
  isNamed |= nameModule(request, state);
  isNamed |= nameHdr(state);
  if (!isProfessional(state.uiModule)) setEvent("APP_MODE", "");
  reportStabilization(request, state, hasVideoStream);
  if (!isNamed) setAppName("heskCamera");
}

}  // namespace

void HeskParameterUpdater::updateTuningAppName(IMetadata* request, unsigned int) {
  constexpr std::int32_t kOisTest = 8;

  const std::string appType = eventValue("APP_TYPE");
  const AppState state = readAppState(request);
  if (appType == "heskCamera") {
    tuneOemCamera(request, state, mHasVideoStream);
  } else if (appType == "engcamera" && read(request, tags::HESK_CONTROL_ENGTESTITEM) == kOisTest) {
    setAppName("OISTest");
  }
  const std::string appName = eventValue("APP_NAME");
  HESK_LOGD(kOperation, "Set APPName:(%s)", appName.c_str());
}
