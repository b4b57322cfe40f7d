// A debugging aid: the metadata of still captures in files, one a frame, and the time stamps under
// which a request's dumps are found.

#include <fcntl.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <span>

#include "common/HeskParameterUpdater.h"
#include "common/tags/Metadata.h"
#include "common/updater/DumpPath.h"
#include "common/updater/UpdaterLog.h"
#include "platform/CLibrary.h"
#include "platform/CameraMetadata.h"
#include "platform/Properties.h"

namespace {

using namespace hesk;

constexpr log::Operation kOperation = updaterOperation("dumpMetadata");

using TimeStamp = std::array<char, kTimeStampBytes>;

TimeStamp currentTimeStamp() {
  TimeStamp stamp{};
  HeskParameterUpdater::getCurrentTime(stamp.data());
  return stamp;
}

/// The capture intent of a buffer as the four bytes at its place, of which it is the first.
bool readIntent(camera_metadata* meta, std::int32_t& intent) {
  camera_metadata_entry entry{};
  if (find_camera_metadata_entry(meta, tags::ANDROID_CONTROL_CAPTURE_INTENT.value, &entry) != 0) {
    return false;
  }
  std::memcpy(&intent, entry.data.u8, sizeof intent);
  return true;
}

/// A label that does not fit is a fault of the caller that must not lead to another frame's file.
DumpPath dumpPathOf(const char* label, int frameNumber) {
  DumpPath path{};
  const int length = formatDumpPath(path, label, frameNumber, currentTimeStamp().data());
  // As unsigned a negative length is past the end, too.
  if (static_cast<std::size_t>(length) >= path.size()) {
    HESK_LOGE(kOperation, "[%s] no room for the path of the dump %s", kOperation.name, label);
    std::fprintf(stderr,
                 "dumpMetadata: the path of dump \"%s\" has %d characters, at most %zu fit\n",
                 label, length, path.size() - 1);
    std::abort();
  }
  return path;
}

}  // namespace

void HeskParameterUpdater::getCurrentTime(char* out) {
  constexpr std::size_t kMostCharacters = kTimeStampBytes - 1;

  std::array<char, 256> text{};
  const std::time_t now = cam::time(nullptr);
  std::tm local{};
  if (cam::localtime_r(&now, &local) != nullptr) {
    std::strftime(text.data(), text.size(), "%Y%m%d%H%M%S", &local);
  }
  // Behind the year 9999 a time has more digits than there is room for.
  const std::size_t length = std::min(std::strlen(text.data()), kMostCharacters);
  *std::copy_n(text.data(), length, out) = '\0';
}

void HeskParameterUpdater::setDumpPathForHeskDump(int /*instanceId*/, NSCam::IMetadata* request) {
  const TimeStamp stamp = currentTimeStamp();
  std::array<std::uint8_t, kTimeStampBytes> items{};
  const std::size_t length = std::strlen(stamp.data());
  std::copy_n(stamp.begin(), length, items.begin());
  writeAll(request, tags::HESK_CONTROL_DUMPPATH, std::span(items).first(length + 1));
}

void HeskParameterUpdater::dumpMetadata(camera_metadata* meta, const char* name, int frameNumber) {
  constexpr std::int32_t kStillCapture = 2;
  constexpr int kEveryValue = 2;

  if (!property_get_bool("vendor.camera.dumprawhifmetadata", false)) return;
  std::int32_t intent = 0;
  if (!readIntent(meta, intent)) return;
  const bool isSnapshot = intent == kStillCapture;
  HESK_LOGI(kOperation, "frameNumber %d isSnapshot %d", frameNumber, isSnapshot);
  if (!isSnapshot) return;

  const DumpPath path = dumpPathOf(name, frameNumber);
  HESK_LOGI(kOperation, "dump metadata name is %s", path.data());
  const int file = cam::open(path.data(), O_RDWR | O_CREAT, 0666);
  if (file < 0) return;
  if (file >= 1) dump_camera_metadata(meta, file, kEveryValue);
  cam::close(file);
}
