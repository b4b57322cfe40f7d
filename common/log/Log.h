// The log record: the one way in which the library writes a line.
//
//   HESK_LOGD(kOperation, "[%s] update CaptureCount:%d", kOperation.name, count);
//
// writes a debug record "[updateRequestMeta] update CaptureCount:3" of the operation's class. The
// record carries the class's source path and the operation's listed name, whichever file of the
// class wrote it: field tools filter on these. Message and arguments are as printf has them, and
// the compiler checks them so.
//
// With the gate closed a log call costs the gate: its arguments are not evaluated, nothing is
// formatted. An open one formats into a buffer on the stack and allocates nothing.

#pragma once

#include <array>
#include <cstddef>

#include "platform/Log.h"

namespace hesk::log {

/// What the platform calls a level.
struct Level {
  const char* letter;
  cam_debug_level_t number;  // the index of its g_logInfoLv entry, too
};
inline constexpr Level kDebug{"D", CAM_DEBUG_LEVEL_DEBUG};
inline constexpr Level kError{"E", CAM_DEBUG_LEVEL_ERROR};
inline constexpr Level kInfo{"I", CAM_DEBUG_LEVEL_INFO};

/// What the records of a class have in common.
struct Source {
  const char* tag;   // the class's name
  const char* path;  // the class's source file
};

/// A listed operation of a class, in whose name records are written.
struct Operation {
  const Source& source;
  const char* name;
};

/// The gate: whether records of this class and level are written. Any thread.
inline bool isOpen(const Operation& operation, const Level& level) {
  return (g_logInfoLv[level.number].flags & cam_log_info_t::kEnabled) != 0 &&
         mtkcam_testLog(operation.source.tag, level.letter) != 0;
}

/// Room for a record before its arguments are filled in, the terminating zero included. A longer
/// one is cut.
inline constexpr std::size_t kRecordBytes = 1024;
using RecordBuffer = std::array<char, kRecordBytes>;

/// Formats the head of a record followed by `message`, whose placeholders stay as they are.
void formatRecord(RecordBuffer& buffer, const Operation& operation, const Level& level, int line,
                  const char* message);

/// Writes one record, past the gate.
template <typename... Args>
void writeRecord(const Operation& operation, const Level& level, int line, const char* message,
                 Args... args) {
  RecordBuffer record;
  formatRecord(record, operation, level, line, message);
  log_dbg_print(operation.source.tag, level.number, record.data(), args...);
}

/// Does nothing: the compiler checks the arguments of its calls.
[[gnu::format(printf, 1, 2)]] inline void checkFormat(const char* /*message*/, ...) {}

}  // namespace hesk::log

#define HESK_LOG_RECORD(operation, level, ...)                           \
  do {                                                                   \
    if (::hesk::log::isOpen(operation, level)) {                         \
      if (false) ::hesk::log::checkFormat(__VA_ARGS__);                  \
      ::hesk::log::writeRecord(operation, level, __LINE__, __VA_ARGS__); \
    }                                                                    \
  } while (false)

#define HESK_LOGD(operation, ...) HESK_LOG_RECORD(operation, ::hesk::log::kDebug, __VA_ARGS__)
#define HESK_LOGE(operation, ...) HESK_LOG_RECORD(operation, ::hesk::log::kError, __VA_ARGS__)
#define HESK_LOGI(operation, ...) HESK_LOG_RECORD(operation, ::hesk::log::kInfo, __VA_ARGS__)
