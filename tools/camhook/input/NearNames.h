// What somebody may have meant.

#pragma once

#include <span>
#include <string>
#include <string_view>

namespace camhook {

/// How many letters must be put in, left out, replaced or swapped with the next to make one text of
/// the other.
std::size_t editDistance(std::string_view left, std::string_view right);

/// "; near: A, B": the names that are most similar to the text, whatever the case, at most three in
/// ascending order of distance and name. Empty if none is similar.
std::string nearNames(std::string_view text, std::span<const std::string_view> names);

/// The same of the catalogue's tags.
std::string nearTags(std::string_view text);

}  // namespace camhook
