// The platform's log: which lines are wanted, and where they go.

#pragma once

#include <cstdint>

/// Severity of a line as the platform counts it. Level 2 is not used here.
enum cam_debug_level_t : std::int32_t {
  CAM_DEBUG_LEVEL_DEBUG = 0,
  CAM_DEBUG_LEVEL_ERROR = 1,
  CAM_DEBUG_LEVEL_INFO = 3,
};

/// One level of the platform's table.
struct cam_log_info_t {
  static constexpr std::uint64_t kEnabled = std::uint64_t{1} << 55;

  std::uint64_t flags;  // the level is on when kEnabled is set
  const char* prefix;   // begins every line of the level
  std::uint64_t reserved[2];
};
static_assert(sizeof(cam_log_info_t) == 32, "the platform's entries are 32 bytes apart");

/// The levels' table, by `cam_debug_level_t`. Written by the platform alone.
extern cam_log_info_t g_logInfoLv[4];

/// Not 0 when lines of `tag` at the level with this letter ("D", "E" or "I") are wanted. Any
/// thread.
int mtkcam_testLog(const char* tag, const char* levelLetter);

/// The last component of a path; points into `path`.
const char* get_filename(const char* path);

/// Writes a line. `format` and what follows are as printf has them. Any thread.
void log_dbg_print(const char* tag, cam_debug_level_t level, const char* format, ...);
