// Metadata dumps, as `dumpMetadata` leaves them on a phone, back into a scenario's metadata.

#pragma once

#include <iosfwd>
#include <string_view>

#include "tools/camhook/input/Json.h"

namespace camhook {

/// The metadata of a dump as a scenario has it: an object from tag to value. Entries of doubles, of
/// which a scenario knows nothing, are left out, with a line in `notes` for each. What stands
/// behind the entries that the first line counts is of an older dump in the same file. Throws
/// InputError.
Json metadataFromDump(std::string_view text, std::ostream& notes);

}  // namespace camhook
