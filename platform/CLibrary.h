// What the library takes of the C library that a phone's own has no say in on another machine: the
// clock, and files under the phone's folders. On a phone these are the functions of that name.

#pragma once

#include <ctime>

/// Threads: any.
namespace cam {

/// The time now; stores it in `out`, too, unless that is null.
std::time_t time(std::time_t* out);

/// Writes the local time of `time` into `out` and returns `out`; null where it cannot be had.
std::tm* localtime_r(const std::time_t* time, std::tm* out);

/// Opens the file at an absolute path of the phone. Returns its descriptor, below 0 where it cannot
/// be opened.
int open(const char* path, int flags, unsigned int mode);

/// Closes a descriptor. Returns 0, below 0 where there is none.
int close(int file);

}  // namespace cam
