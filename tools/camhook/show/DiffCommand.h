// `camhook diff`: how two traces differ, or all traces of two folders.

#pragma once

#include <filesystem>
#include <functional>
#include <iosfwd>

#include "tools/camhook/input/Json.h"
#include "tools/camhook/show/Terminal.h"

namespace camhook {

/// Reads the trace of a file. Throws InputError.
using TraceReader = std::function<Json(const std::filesystem::path&)>;

/// Writes how two traces differ, call by call. Returns the exit status: 0 where they agree, else 1.
int diffTraces(std::ostream& out, const Json& old, const Json& fresh, bool withRecords,
               Style style);

/// Compares the traces that have one name in two folders. Writes what differs by hook and tag, and
/// below each difference the calls in which it is. Returns the exit status.
int diffFolders(std::ostream& out, const std::filesystem::path& old,
                const std::filesystem::path& fresh, const TraceReader& read, bool withRecords,
                Style style);

}  // namespace camhook
