// The log record. Every log line of the library is written through one of the macros below:
//
//   HESK_LOGD(kOperation, "update CaptureCount:%d", count);
//
// writes a debug record with the message "[updateRequestMeta] update CaptureCount:3". The record
// carries the source path of the operation's class and the operation's name, whichever file of the
// class writes it, because field tools filter on these. The compiler checks the printf arguments.
//
// If the level is disabled, the arguments are not evaluated and nothing is formatted. Otherwise the
// record is formatted into a buffer on the stack; nothing is allocated.

#pragma once

#include <array>
#include <cstddef>

#include "platform/Log.h"

namespace hesk::log {

/// A log level in the terms of the platform.
struct Level {
  const char* letter;
  cam_debug_level_t number;  // also the index of the level's g_logInfoLv entry
};
inline constexpr Level kDebug{"D", CAM_DEBUG_LEVEL_DEBUG};
inline constexpr Level kError{"E", CAM_DEBUG_LEVEL_ERROR};
inline constexpr Level kInfo{"I", CAM_DEBUG_LEVEL_INFO};

/// The fields that all records of a class share.
struct Source {
  const char* tag;   // the class's name
  const char* path;  // the class's source file
};

/// An operation of a class. Records carry its name as their function.
struct Operation {
  const Source& source;
  const char* name;
};

/// Returns true if records of this class and level are written. Thread-safe.
inline bool isEnabled(const Operation& operation, const Level& level) {
  return (g_logInfoLv[level.number].flags & cam_log_info_t::kEnabled) != 0 &&
         mtkcam_testLog(operation.source.tag, level.letter) != 0;
}

/// Size of a record before its arguments are filled in, including the terminating zero. Longer
/// records are cut.
inline constexpr std::size_t kRecordBytes = 1024;
using RecordBuffer = std::array<char, kRecordBytes>;

/// Formats the head of a record, followed by `message` with its placeholders unexpanded.
void formatRecord(RecordBuffer& buffer, const Operation& operation, const Level& level, int line,
                  const char* message);

/// Writes one record, also if its level is disabled.
template <typename... Args>
void writeRecord(const Operation& operation, const Level& level, int line, const char* message,
                 Args... args) {
  RecordBuffer record;
  formatRecord(record, operation, level, line, message);
  log_dbg_print(operation.source.tag, level.number, record.data(), args...);
}

/// Does nothing. The compiler checks the arguments of its calls.
[[gnu::format(printf, 1, 2)]] inline void checkFormat(const char* /*message*/, ...) {}

}  // namespace hesk::log

/// Writes a record; the caller passes the complete message format. Most callers use a macro below.
#define HESK_LOG_RECORD(operation, level, ...)                           \
  do {                                                                   \
    if (::hesk::log::isEnabled(operation, level)) {                      \
      if (false) ::hesk::log::checkFormat(__VA_ARGS__);                  \
      ::hesk::log::writeRecord(operation, level, __LINE__, __VA_ARGS__); \
    }                                                                    \
  } while (false)

/// Writes a record whose message begins with the operation's name in brackets. `text`, a string
/// literal, is the rest of the format.
#define HESK_LOG_NAMED(operation, level, text, ...) \
  HESK_LOG_RECORD(operation, level, "[%s] " text, (operation).name __VA_OPT__(, ) __VA_ARGS__)

#define HESK_LOGD(operation, ...) HESK_LOG_NAMED(operation, ::hesk::log::kDebug, __VA_ARGS__)
#define HESK_LOGE(operation, ...) HESK_LOG_NAMED(operation, ::hesk::log::kError, __VA_ARGS__)
#define HESK_LOGI(operation, ...) HESK_LOG_NAMED(operation, ::hesk::log::kInfo, __VA_ARGS__)
