#include "tools/camhook/input/TagCatalogue.h"

#include <unordered_map>

const camhook::TagDescription* camhook::findTag(std::string_view name) {
  static const auto kByName = [] {
    std::unordered_map<std::string_view, const TagDescription*> byName;
    for (const TagDescription& tag : kTagCatalogue) byName.emplace(tag.name, &tag);
    return byName;
  }();
  const auto found = kByName.find(name);
  return found != kByName.end() ? found->second : nullptr;
}
