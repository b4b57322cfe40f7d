// C library calls that the host replaces, so that a replay does not depend on the machine: the
// local time and files. On a phone these are the C library's functions of the same names.

#pragma once

#include <ctime>

/// Threads: any.
namespace cam {

/// Converts `time` to local time in `out`. A host with a configured clock writes the time of that
/// clock instead. Returns `out`, or null if the local time is not available.
std::tm* localtime_r(const std::time_t* time, std::tm* out);

/// Opens a file by its absolute path on the phone. Returns its descriptor, a negative value if the
/// file cannot be opened.
int open(const char* path, int flags, unsigned int mode);

/// Closes a descriptor that `open` returned. Returns 0, or -1 on error.
int close(int descriptor);

}  // namespace cam
