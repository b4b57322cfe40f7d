// `camhook tags`: the catalogue of tags.

#pragma once

#include <iosfwd>
#include <string_view>

#include "tools/camhook/show/Terminal.h"

namespace camhook {

enum class TagsFormat { text, json, markdown };

/// Lists the tags whose name holds `filter`, whatever the case, or whose value is `filter`; all
/// where it is empty. Returns false if no tag matches.
bool listTags(std::ostream& out, std::string_view filter, TagsFormat format, Style style);

}  // namespace camhook
