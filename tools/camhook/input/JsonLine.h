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

/// A value in lines of 100 columns, of which the first begins at column `indent`. A value that fits
/// stays on one line; of any other each member has its own line, but a list of numbers or of short
/// lists fills its lines.
std::string brokenJson(const Json& value, std::size_t indent = 0);

/// Writes the same with a line break at the end.
void writeJson(std::ostream& out, const Json& value);

/// A text as a JSON string.
std::string jsonText(std::string_view text);

}  // namespace camhook
