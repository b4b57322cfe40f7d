// `camhook tags`: the catalogue of tags.

#pragma once

#include <iosfwd>
#include <string_view>

#include "tools/camhook/show/Terminal.h"

namespace camhook {

enum class TagsFormat { text, json, markdown };

/// Lists the tags whose name or meaning contains `filter`, whatever the case, or whose value is
/// `filter`; all if it is empty. The text of a single tag also has the names of its values.
void listTags(std::ostream& out, std::string_view filter, TagsFormat format, Style style);

}  // namespace camhook
