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

std::vector<TagWrite> writesOf(const CallTrace& trace, std::string_view container,
                               std::uint32_t tag) {
  std::vector<TagWrite> writes;
  if (!trace.accesses) return writes;
  for (const StepAccess& access : *trace.accesses) {
    const auto* write = std::get_if<host::MetadataWrite>(&access.access);
    if (write == nullptr || write->tag != tag || access.container != container) continue;
    writes.push_back({write->entry, access.step});
  }
  return writes;
}

}  // namespace camhook
