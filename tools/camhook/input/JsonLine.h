// Writes JSON values as text. Control and bidirectional characters are escaped.

#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>

#include "tools/camhook/input/Json.h"

namespace camhook {

/// A value on one line, with a space after each comma and colon.
std::string lineOfJson(const Json& value);

/// Formats a value for lines of 100 columns, starting at column `indent`. A value that does not fit
/// on one line has one line for each member; lists of numbers or of short lists are wrapped.
std::string brokenJson(const Json& value, std::size_t indent = 0);

/// Writes the text of `brokenJson` and a line break.
void writeJson(std::ostream& out, const Json& value);

/// A text as a JSON string.
std::string jsonText(std::string_view text);

}  // namespace camhook
