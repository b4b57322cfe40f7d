// JSON documents in and out.

#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

namespace camhook {

/// Objects keep the order of their keys.
using Json = nlohmann::ordered_json;

/// Parses a document. Throws InputError, which names the places of what is wrong: also keys that an
/// object has twice, numbers beyond all types and nesting beyond sense.
Json parseJson(std::string_view text);

/// Writes a value so that people can read it, on lines of its own: what fits stands on one line,
/// what does not is broken into its members, a list of numbers into full lines.
void writeJson(std::ostream& out, const Json& value);

/// The same of a value that stands on one line, without the end of the last line. `indent` is the
/// column at which the value begins.
std::string brokenJson(std::string_view line, std::size_t indent);

/// A value on one line, with a blank behind every comma and colon.
std::string lineOfJson(const Json& value);

/// A float as the shortest number that reads back as the same float; "nan", "inf" and "-inf" are
/// texts.
Json jsonFromFloat(float value);

/// A text in JSON's quotes, for messages.
std::string jsonText(std::string_view text);

/// 32 bits as "0x0001000d".
std::string hexadecimal(std::uint32_t value);

}  // namespace camhook
