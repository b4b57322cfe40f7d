#include "tools/camhook/show/Changes.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <string_view>
#include <variant>

#include "host/MetadataAccess.h"
#include "tools/camhook/input/MetadataJson.h"
#include "tools/camhook/show/TraceText.h"

namespace camhook {
namespace {

using Entry = NSCam::IMetadata::IEntry;

EntryItems itemsOf(const Entry& entry) {
  return {.type = host::typeName(host::MetadataAccess::itemsOf(entry)),
          .items = jsonFromItems(entry)};
}

std::string textOf(std::uint32_t tag, const EntryItems& entry) {
  return entry.items.empty() ? "absent" : entryText(findTag(tag), entry);
}

/// The tags that a call may have changed, ordered: those that hold items before or after it.
std::vector<std::uint32_t> tagsOf(const ContainerTrace& container) {
  std::vector<std::uint32_t> tags;
  for (const MetadataArgument* metadata : {&container.before, &container.after}) {
    if (!*metadata) continue;
    for (const Entry* entry : host::MetadataAccess::entriesByTag(**metadata)) {
      tags.push_back(entry->tag());
    }
  }
  std::ranges::sort(tags);
  tags.erase(std::unique(tags.begin(), tags.end()), tags.end());
  return tags;
}

std::vector<ValueWrite> writesTo(const CallTrace& trace, std::string_view container,
                                 std::uint32_t tag) {
  std::vector<ValueWrite> writes;
  if (!trace.accesses) return writes;
  for (const auto& [access, name, step] : *trace.accesses) {
    const auto* write = std::get_if<host::MetadataWrite>(&access);
    if (write == nullptr || write->tag != tag || name != container) continue;
    writes.push_back({textOf(tag, itemsOf(write->entry)), step});
  }
  std::ranges::reverse(writes);
  return writes;
}

}  // namespace

ContainerChanges changesOf(const CallTrace& trace, const ContainerTrace& container) {
  ContainerChanges found;
  for (const std::uint32_t tag : tagsOf(container)) {
    const Entry& before = container.before->entryFor(tag);
    const Entry& after = container.after->entryFor(tag);
    if (areSame(before, after)) {
      ++found.unchanged;
      continue;
    }
    const std::string name = tagText(tag);
    const EntryItems items = itemsOf(after);
    found.changes.push_back({.name = name,
                             .before = textOf(tag, itemsOf(before)),
                             .after = textOf(tag, items),
                             .decoded = decodedLines(name, items),
                             .writes = writesTo(trace, container.name, tag)});
  }
  return found;
}

std::vector<Unchanged> unchangedOf(const ContainerTrace& container) {
  std::vector<Unchanged> found;
  for (const Entry* entry : host::MetadataAccess::entriesByTag(*container.after)) {
    if (!areSame(*entry, container.before->entryFor(entry->tag()))) continue;
    found.push_back({tagText(entry->tag()), textOf(entry->tag(), itemsOf(*entry))});
  }
  return found;
}

std::vector<ValueChange> changesOf(const StateTrace& state) {
  std::vector<ValueChange> changes;
  for (std::size_t i = 0; i < state.after.size(); ++i) {
    const auto& [field, after] = state.after[i];
    const std::string& before = state.before[i].value;
    if (before == after) continue;
    changes.push_back({.name = std::string(field),
                       .before = before,
                       .after = after,
                       .decoded = {},
                       .writes = {}});
  }
  return changes;
}

std::string placeText(const Step& step) {
  return std::filesystem::path(step.file).filename().string() + ':' + std::to_string(step.line);
}

}  // namespace camhook
