#include "common/updater/TimeStamp.h"

#include <algorithm>
#include <cstring>
#include <ctime>

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
