// isNeedRawAlgo: decides whether a frame goes through the raw algorithms.

#include "common/HeskParameterUpdater.h"
#include "common/tags/Metadata.h"
#include "common/tags/Values.h"
#include "common/updater/UpdaterLog.h"

using namespace hesk;
using NSCam::IMetadata;

bool HeskParameterUpdater::isNeedRawAlgo(IMetadata* appMeta, IMetadata* outMeta, int) {
  constexpr log::Operation kOperation{kUpdaterSource, "isNeedRawAlgo"};

  const std::int64_t mode = read(appMeta, tags::HESK_CONTROL_CURRENTMODE);
  const std::int32_t isDualSlave = read(outMeta, tags::HESK_CONTROL_IS_DUAL_SLAVE, -1);
  if (outMeta != nullptr) HESK_LOG_RECORD(kOperation, log::kInfo, "isDualSlave %d", isDualSlave);

  bool isNeeded;
  if (read(appMeta, tags::HESK_CONTROL_ALGO_OVERRIDE) != 0) {
    isNeeded = (mode & mode::kBit3) != 0;
  } else if (isDualSlave == 1) {
    isNeeded = (mode & mode::kBit5) == 0;
  } else {
    isNeeded = (mode & mode::kRawAlgorithm) != 0;
  }
  HESK_LOG_RECORD(kOperation, log::kInfo, "isNeedRawAlgo %d", isNeeded);
  return isNeeded;
}
