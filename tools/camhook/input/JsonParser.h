// Parses JSON text.

#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/Json.h"

namespace camhook {

/// Called with an item of the list "calls" of a document.
using UseItem = std::function<void(const Json& item)>;

/// Parses a whole document. Adds a fault and returns nullopt if the text is not JSON or is nested
/// deeper than 100 levels. `useItem` receives the items of the list "calls" one by one instead of
/// the document.
std::optional<Json> parseDocument(const std::string& text, Faults& faults,
                                  const UseItem& useItem = {});

/// Parses the value at `offset` of a text that `parseDocument` accepted.
Json parseValue(const std::string& text, std::uint32_t offset);

/// A fault with the line and the column of an offset.
Fault faultAt(std::string_view text, std::size_t offset, std::string place, std::string problem);

}  // namespace camhook
