#include "tools/camhook/run/CallTrace.h"

#include <algorithm>

#include "host/MetadataAccess.h"
#include "tools/camhook/input/MetadataJson.h"

namespace camhook {

std::vector<std::uint32_t> changedTags(const ContainerTrace& container) {
  if (!container.after) return {};
  std::vector<std::uint32_t> tags;
  for (const auto* metadata : {&*container.before, &*container.after}) {
    for (const auto* entry : host::MetadataAccess::entriesByTag(*metadata)) {
      tags.push_back(entry->tag());
    }
  }
  std::ranges::sort(tags);
  tags.erase(std::unique(tags.begin(), tags.end()), tags.end());
  std::erase_if(tags, [&](std::uint32_t tag) {
    return areSame(container.before->entryFor(tag), container.after->entryFor(tag));
  });
  return tags;
}

}  // namespace camhook
