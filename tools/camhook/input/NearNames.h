// Finds names similar to a misspelled one.

#pragma once

#include <span>
#include <string>
#include <string_view>

namespace camhook {

/// The text with its ASCII letters in lower case.
std::string inLowerCase(std::string_view text);

/// The number of letters to insert, remove, replace or swap with the next one that turns one text
/// into the other.
std::size_t editDistance(std::string_view left, std::string_view right);

/// "; did you mean A or B?": the most similar names, at most three; empty if no name is similar.
/// Case is ignored.
std::string nearNames(std::string_view text, std::span<const std::string_view> names);

/// Like `nearNames`, with the tags of the catalogue.
std::string nearTags(std::string_view text);

}  // namespace camhook
