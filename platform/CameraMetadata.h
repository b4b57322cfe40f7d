// Android's camera metadata buffers.

#pragma once

#include <cstddef>
#include <cstdint>

struct camera_metadata_rational {
  std::int32_t numerator;
  std::int32_t denominator;
};

/// An entry of a buffer. `data` points to its `count` values in the buffer.
struct camera_metadata_entry {
  std::size_t index;
  std::uint32_t tag;
  std::uint8_t type;  // 0 byte, 1 int32, 2 float, 3 int64, 4 double, 5 rational
  std::size_t count;
  union {
    std::uint8_t* u8;  // at least four bytes are readable; those after the values are 0
    std::int32_t* i32;
    float* f;
    std::int64_t* i64;
    double* d;
    camera_metadata_rational* r;
  } data;
};

/// A metadata buffer. Must be used by one thread at a time.
struct camera_metadata;

extern "C" {

/// Finds the entry of `tag`. Returns 0; another value if the buffer has no such entry or is null.
int find_camera_metadata_entry(camera_metadata* buffer, std::uint32_t tag,
                               camera_metadata_entry* entry);

/// Writes a buffer, which may be null, as text to a file: its size, and the type and count of every
/// entry. Verbosity 1 adds the first 16 values of each entry, 2 and above all values.
void dump_camera_metadata(const camera_metadata* buffer, int file, int verbosity);

}  // extern "C"
