// The 3A information manager of the simulated phone.

#include "platform/TuningBuffers.h"

#include "host/Phone.h"

void Hesk3AInfoManager::Get3AInfoBuf(HIF3ABufferInfo* info, unsigned int requestedSize) {
  host::Phone& phone = host::Phone::current();
  host::observe([] { return host::ServiceRead{"tuningBuffer"}; });
  host::observe([&] {
    return host::Effect{"tuningBuffer.get", {{"size", std::int64_t{requestedSize}}}};
  });
  const auto& config = phone.config.tuningBuffer;
  if (!config) return;
  if (config->fd) info->fd = *config->fd;
  if (config->bufferSize) info->bufferSize = static_cast<std::uint32_t>(*config->bufferSize);
  if (config->bufferIndex) info->bufferIndex = *config->bufferIndex;
  if (info->fd >= 1) info->address = phone.tuningBuffer.map(info->bufferSize);
}
