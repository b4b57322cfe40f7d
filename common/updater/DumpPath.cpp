// The time stamp under which a request's buffers are dumped.

#include <algorithm>
#include <array>
#include <cstring>
#include <span>

#include "common/HeskParameterUpdater.h"
#include "common/tags/Metadata.h"
#include "common/updater/TimeStamp.h"

using namespace hesk;

void HeskParameterUpdater::setDumpPathForHeskDump(int /*deviceId*/, NSCam::IMetadata* request) {
  const TimeStamp stamp = currentTimeStamp();
  std::array<std::uint8_t, sizeof(TimeStamp)> items{};
  std::copy(stamp.begin(), stamp.end(), items.begin());
  const std::size_t withZero = std::strlen(stamp.data()) + 1;
  writeAll(request, tags::HESK_CONTROL_DUMPPATH, std::span(items).first(withZero));
}
