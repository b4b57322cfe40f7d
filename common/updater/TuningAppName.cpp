// Which tuning profile a request goes by: the event store's "APP_NAME", which the image pipeline's
// tuning reads. The maker's camera app is told apart by its UI module and mode, in steps of which
// the last that names a profile wins.

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>

#include "common/Events.h"
#include "common/HeskParameterUpdater.h"
#include "common/tags/Metadata.h"
#include "common/tags/ModeBits.h"
#include "common/updater/UpdaterLog.h"

namespace {

using namespace hesk;
using NSCam::IMetadata;

constexpr log::Operation kOperation = updaterOperation("updateTuningAppName");

// Modules that more than their name depends on.
constexpr std::int32_t kSuperNightModule = 7;
constexpr std::int32_t kProfessionalModule = 16;
constexpr std::int32_t kFunVideoModule = 26;
constexpr std::int32_t kPhotoModule = 31;
constexpr std::int32_t kMoonModule = 32;
constexpr std::int32_t kProfessionalModule2 = 51;
constexpr std::int32_t kEisReportModule = 53;

constexpr std::int64_t kPhotoMode = modeBit(0);
constexpr std::int64_t kHdrMode = modeBit(1);
constexpr std::int64_t kPanoramaModes = modeBit(15) | modeBit(16) | modeBit(59);

// Scene modes, as far as tuning sets them.
constexpr std::uint8_t kLandscape = 4;
constexpr std::uint8_t kNight = 5;
constexpr std::uint8_t kParty = 14;

struct UiModule {
  std::int32_t number;
  const char* name;
};

/// The modules that have one name.
constexpr UiModule kUiModules[] = {
    {11, "SlowMotion"},
    {12, "TimeLapse"},
    {kProfessionalModule, "Professional"},
    {24, "ARStickers"},
    {kFunVideoModule, "FunVideo"},
    {28, "LivePhoto"},
    {29, "SuperClearness"},
    {35, "MotionCapture"},
    {40, "SuperStar"},
    {42, "DiplexExposure"},
    {kProfessionalModule2, "Professional"},
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

/// What the steps look at. Without a mode, -1, every bit counts as set: such a request is a photo.
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

/// What the UI module is called; null where that says nothing.
const char* moduleName(const IMetadata* request, const AppState& state) {
  switch (state.uiModule) {
    case kSuperNightModule: return superNightName(state.sceneType);
    case kMoonModule: return moonName(read(request, tags::HESK_CONTROL_MOONMODE));
    default: break;
  }
  const auto* module = std::ranges::find(kUiModules, state.uiModule, &UiModule::number);
  return module != std::end(kUiModules) ? module->name : nullptr;
}

bool isProfessional(std::int32_t uiModule) {
  return uiModule == kProfessionalModule || uiModule == kProfessionalModule2;
}

void setAppName(std::string_view name) { setEvent("APP_NAME", name); }

// The naming steps return whether they have named a profile.

bool namePhotoOrPanorama(IMetadata* request, const AppState& state) {
  if (state.uiModule == kPhotoModule || (state.currentMode & kPhotoMode) != 0) {
    setAppName(read(request, tags::HESK_CONTROL_NATIVEMODE) == 0 ? "FaceBeauty" : "NativeMode");
    if (read(request, tags::HESK_CONTROL_ISSECONDSNAPSHOT) == 1) setAppName("PartyPortrait");
    return true;
  }
  if ((state.currentMode & kPanoramaModes) != 0) {
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
  constexpr std::uint8_t kStillCapture = 2;
  HESK_LOGD(kOperation, "sceneType %d", sceneType);
  write(request, tags::ANDROID_CONTROL_SCENE_MODE, kNight);
  HESK_LOGD(kOperation, "supernight mode set MTK_CONTROL_SCENE_MODE_NIGHT");
  if (read(request, tags::ANDROID_CONTROL_CAPTURE_INTENT) != kStillCapture) return;
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
  if (state.uiModule == kSuperNightModule) setUpSuperNight(request, state.sceneType);
  if (isProfessional(state.uiModule)) setUpProfessional(request);
  return true;
}

bool nameHdr(const AppState& state) {
  if (state.currentMode < 1 || (state.currentMode & kHdrMode) == 0) return false;
  setAppName("HDR");
  return true;
}

void reportStabilization(IMetadata* request, const AppState& state, bool hasVideoStream) {
  if (!hasVideoStream && state.uiModule != kEisReportModule && state.uiModule != kFunVideoModule) {
    return;
  }
  write(request, tags::HESK_EISSTATE, state.eisEnable >= 1 ? 1 : 0);
}

void tuneOwnCamera(IMetadata* request, const AppState& state, bool hasVideoStream) {
  bool isNamed = namePhotoOrPanorama(request, state);
  isNamed |= nameVideo(request);
  isNamed |= nameModule(request, state);
  isNamed |= nameHdr(state);
  if (!isProfessional(state.uiModule)) setEvent("APP_MODE", "");
  reportStabilization(request, state, hasVideoStream);
  if (!isNamed) setAppName("heskCamera");
}

}  // namespace

void HeskParameterUpdater::updateTuningAppName(IMetadata* request, unsigned int /*requestNo*/) {
  constexpr std::int32_t kOisTest = 8;

  const std::string appType = eventValue("APP_TYPE");
  const AppState state = readAppState(request);
  if (appType == "heskCamera") {
    tuneOwnCamera(request, state, mHasVideoStream);
  } else if (appType == "engcamera" && read(request, tags::HESK_CONTROL_ENGTESTITEM) == kOisTest) {
    setAppName("OISTest");
  }
  const std::string appName = eventValue("APP_NAME");
  HESK_LOGD(kOperation, "Set APPName:(%s)", appName.c_str());
}
