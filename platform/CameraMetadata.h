// Android's camera metadata buffers.

#pragma once

#include <cstddef>
#include <cstdint>

struct camera_metadata_rational {
  std::int32_t numerator;
  std::int32_t denominator;
};

/// An entry of a buffer. `data` points at its `count` values, in the buffer.
struct camera_metadata_entry {
  std::size_t index;
  std::uint32_t tag;
  std::uint8_t type;  // 0 byte, 1 int32, 2 float, 3 int64, 4 double, 5 rational
  std::size_t count;
  union {
    std::uint8_t* u8;  // no fewer than four bytes can be read, what is behind the values as 0
    std::int32_t* i32;
    float* f;
    std::int64_t* i64;
    double* d;
    camera_metadata_rational* r;
  } data;
};

/// A buffer. Used by one thread at a time.
struct camera_metadata;

extern "C" {

/// Finds the entry of `tag`. Returns 0; not 0 where the buffer has none, or is null.
int find_camera_metadata_entry(camera_metadata* buffer, std::uint32_t tag,
                               camera_metadata_entry* entry);

/// Writes a buffer, or that there is none, as text to a file: its size and every entry's type and
/// count, with verbosity 1 its first 16 values, too, from 2 all of them.
void dump_camera_metadata(const camera_metadata* buffer, int file, int verbosity);

}  // extern "C"
