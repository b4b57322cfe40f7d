// Debugging aid: writes the metadata of still captures to files, one per frame.

#include "common/updater/MetadataDump.h"

#include <fcntl.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>

#include "common/HeskParameterUpdater.h"
#include "common/tags/Tags.h"
#include "common/tags/Values.h"
#include "common/updater/TimeStamp.h"
#include "common/updater/UpdaterLog.h"
#include "platform/CLibrary.h"
#include "platform/CameraMetadata.h"
#include "platform/Properties.h"

namespace {

using namespace hesk;

constexpr log::Operation kOperation{kUpdaterSource, "dumpMetadata"};

/// Reads the first four bytes of the capture intent, a byte tag, as one number.
std::optional<std::int32_t> readIntent(camera_metadata* meta) {
  camera_metadata_entry entry;
  if (find_camera_metadata_entry(meta, tags::ANDROID_CONTROL_CAPTURE_INTENT.value, &entry) != 0) {
    return {};
  }
  std::int32_t intent;
  std::memcpy(&intent, entry.data.u8, sizeof intent);
  return intent;
}

/// Aborts the process if the label is too long for the path.
MetadataDumpPath pathOf(const char* label, int frameNumber) {
  MetadataDumpPath path{};
  const int length = formatMetadataDumpPath(path, label, frameNumber, currentTimeStamp().data());
  if (static_cast<std::size_t>(length) >= path.size()) {
    HESK_LOGE(kOperation, "path of dump %s is too long", label);
    std::fprintf(stderr,
                 "dumpMetadata: the path of dump \"%s\" has %d characters, at most %zu fit\n",
                 label, length, path.size() - 1);
    std::abort();
  }
  return path;
}

}  // namespace

void HeskParameterUpdater::dumpMetadata(camera_metadata* meta, const char* name, int frameNumber) {
  constexpr int kEveryValue = 2;

  if (!property_get_bool("vendor.camera.dumprawhifmetadata", false)) return;
  const auto captureIntent = readIntent(meta);
  if (!captureIntent) return;
  const bool isSnapshot = *captureIntent == intent::kStillCapture;
  HESK_LOG_RECORD(kOperation, log::kInfo, "frameNumber %d isSnapshot %d", frameNumber, isSnapshot);
  if (!isSnapshot) return;

  const MetadataDumpPath path = pathOf(name, frameNumber);
  HESK_LOG_RECORD(kOperation, log::kInfo, "dump metadata name is %s", path.data());
  const int file = cam::open(path.data(), O_RDWR | O_CREAT, 0666);
  if (file < 0) return;
  if (file >= 1) dump_camera_metadata(meta, file, kEveryValue);
  cam::close(file);
}
