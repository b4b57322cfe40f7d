// The platform's log: its levels, filter and output.

#pragma once

#include <cstdint>

/// Severity of a line. Level 2 is not used here.
enum cam_debug_level_t : std::int32_t {
  CAM_DEBUG_LEVEL_DEBUG = 0,
  CAM_DEBUG_LEVEL_ERROR = 1,
  CAM_DEBUG_LEVEL_INFO = 3,
};

/// One level.
struct cam_log_info_t {
  static constexpr std::uint64_t kEnabled = std::uint64_t{1} << 55;

  std::uint64_t flags;  // the level is on when kEnabled is set
  const char* prefix;   // of every line of the level
  std::uint64_t reserved[2];
};
static_assert(sizeof(cam_log_info_t) == 32, "the platform's entries are 32 bytes apart");

/// The levels, indexed by `cam_debug_level_t`. Only the platform changes them.
extern cam_log_info_t g_logInfoLv[4];

/// Returns a non-zero value if lines of `tag` at the level with this letter ("D", "E" or "I") are
/// enabled. Any thread.
int mtkcam_testLog(const char* tag, const char* levelLetter);

/// Returns the last component of a path; points into `path`.
const char* get_filename(const char* path);

/// Writes a line; format and arguments as for printf. Any thread.
void log_dbg_print(const char* tag, cam_debug_level_t level, const char* format, ...);
