// Copies the tuning data of raw captures to a shared buffer for the 3A debug tools.

#include <cstring>

#include "common/HeskParameterUpdater.h"
#include "common/tags/Metadata.h"
#include "common/updater/UpdaterLog.h"
#include "platform/TuningBuffers.h"

namespace {

using namespace hesk;

constexpr log::Operation kOperation{kUpdaterSource, "updateTuningData"};

/// Returns true if the manager returned a buffer that is large enough.
bool fits(const HIF3ABufferInfo& buffer, const void* data, unsigned int size) {
  if (buffer.fd < 1 || buffer.bufferSize < size) return false;
  return size == 0 || (data != nullptr && buffer.address != nullptr);
}

}  // namespace

bool HeskParameterUpdater::updateTuningData(NSCam::IMetadata* meta, void* tuningData,
                                            unsigned int tuningDataSize) {
  constexpr unsigned int kRequestedSize = 1920 * 1080;

  HESK_LOGD(kOperation, "updateTuningData E");
  HIF3ABufferInfo buffer;
  Hesk3AInfoManager::Get3AInfoBuf(&buffer, kRequestedSize);
  HESK_LOGD(kOperation, "[3ADebugInfo] fd: %d, bufferIndex %d, tuningDataSize %d, bufferSize %d",
            buffer.fd, buffer.bufferIndex, tuningDataSize, buffer.bufferSize);
  const bool isCopied = fits(buffer, tuningData, tuningDataSize);
  if (isCopied) {
    if (tuningDataSize > 0) std::memcpy(buffer.address, tuningData, tuningDataSize);
    HESK_LOGD(kOperation, "[3ADebugInfo] src: %p, dst: %p", tuningData, buffer.address);
    write(meta, tags::MTK_RAW_ALGO_TUNING_BUFFER_INDEX, buffer.bufferIndex);
  } else {
    HESK_LOGD(kOperation, "[3ADebugInfo] Get3AInfoBuf Failed");
  }
  HESK_LOGD(kOperation, "updateTuningData X");
  return isCopied;
}
