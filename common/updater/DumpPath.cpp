// The time stamp under which a request's buffers are dumped.

#include <algorithm>
#include <array>
#include <cstring>
#include <ctime>
#include <span>

#include "common/HeskParameterUpdater.h"
#include "common/tags/Metadata.h"
#include "common/updater/TimeStamp.h"
#include "platform/CLibrary.h"

using namespace hesk;

void HeskParameterUpdater::getCurrentTime(char* out) {
  constexpr std::size_t kZeroedFirst = 8;
  constexpr std::size_t kMostCharacters = sizeof(TimeStamp) - 1;

  std::fill_n(out, kZeroedFirst, '\0');
  const std::time_t now = cam::time(nullptr);
  std::tm local{};
  if (cam::localtime_r(&now, &local) == nullptr) return;
  std::array<char, 256> text{};
  std::strftime(text.data(), text.size(), "%Y%m%d%H%M%S", &local);
  // Behind the year 9999 a time has more digits than there is room for.
  const std::size_t length = std::min(std::strlen(text.data()), kMostCharacters);
  *std::copy_n(text.data(), length, out) = '\0';
}

void HeskParameterUpdater::setDumpPathForHeskDump(int /*deviceId*/, NSCam::IMetadata* request) {
  const TimeStamp stamp = currentTimeStamp();
  std::array<std::uint8_t, sizeof(TimeStamp)> items{};
  std::copy(stamp.begin(), stamp.end(), items.begin());
  const std::size_t withZero = std::strlen(stamp.data()) + 1;
  writeAll(request, tags::HESK_CONTROL_DUMPPATH, std::span(items).first(withZero));
}
