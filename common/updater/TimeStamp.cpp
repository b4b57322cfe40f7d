#include "common/updater/TimeStamp.h"

#include <algorithm>
#include <ctime>

#include "common/HeskParameterUpdater.h"
#include "platform/CLibrary.h"

using namespace hesk;

TimeStamp hesk::currentTimeStamp() {
  TimeStamp stamp{};
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  ::tzset();  // without it `localtime_r` need not follow a change of the time zone
  if (cam::localtime_r(&now, &local) == nullptr) return stamp;
  std::array<char, 256> text;
  const std::size_t length = std::strftime(text.data(), text.size(), "%Y%m%d%H%M%S", &local);
  // The year can have more than four digits; the text is then truncated.
  std::copy_n(text.data(), std::min(length, stamp.size() - 1), stamp.data());
  return stamp;
}

void HeskParameterUpdater::getCurrentTime(char* out) { std::ranges::copy(currentTimeStamp(), out); }
