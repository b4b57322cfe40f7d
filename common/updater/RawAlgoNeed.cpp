// isNeedRawAlgo: decides whether a frame goes through the raw algorithms.

#include "common/HeskParameterUpdater.h"
#include "common/tags/Metadata.h"
#include "common/tags/ModeBits.h"
#include "common/updater/UpdaterLog.h"

using namespace hesk;
using NSCam::IMetadata;

bool HeskParameterUpdater::isNeedRawAlgo(IMetadata* appMeta, IMetadata* outMeta, int) {
  constexpr log::Operation kOperation = updaterOperation("isNeedRawAlgo");
  constexpr std::int64_t kRawAlgoModes = 0x00F80008080C000C;
  constexpr std::int64_t kOverriddenMode = modeBit(3);
  constexpr std::int64_t kSlaveWithoutRawMode = modeBit(5);

  const std::int64_t mode = read(appMeta, tags::HESK_CONTROL_CURRENTMODE);
  const std::int32_t isDualSlave = read(outMeta, tags::HESK_CONTROL_IS_DUAL_SLAVE, -1);
  if (outMeta != nullptr) HESK_LOG_RECORD(kOperation, log::kInfo, "isDualSlave %d", isDualSlave);

  bool isNeeded;
  if (read(appMeta, tags::HESK_CONTROL_ALGO_OVERRIDE) != 0) {
    isNeeded = (mode & kOverriddenMode) != 0;
  } else if (isDualSlave == 1) {
    isNeeded = (mode & kSlaveWithoutRawMode) == 0;
  } else {
    isNeeded = (mode & kRawAlgoModes) != 0;
  }
  HESK_LOG_RECORD(kOperation, log::kInfo, "isNeedRawAlgo %d", isNeeded);
  return isNeeded;
}
