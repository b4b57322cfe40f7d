// The log record: the one way in which the library writes a line.
//
//   HESK_LOGD(kOperation, "update CaptureCount:%d", count);
//
// writes a debug record "[updateRequestMeta] update CaptureCount:3" of the operation's class. The
// record carries the class's source path and the operation's listed name, whichever file of the
// class wrote it: field tools filter on these.
//
// With the gate closed a log call costs the gate: its arguments are not evaluated, nothing is
// formatted. An open one formats into a buffer on the stack and allocates nothing.

#pragma once

#include <array>
#include <cstddef>

#include "platform/Log.h"

namespace hesk::log {

enum class Level { debug, error, info };

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

/// What the platform calls a level.
struct LevelInfo {
  const char* letter;
  cam_debug_level_t number;  // the index of its g_logInfoLv entry, too
};

constexpr LevelInfo platformLevel(Level level) noexcept {
  switch (level) {
    case Level::error: return {"E", CAM_DEBUG_LEVEL_ERROR};
    case Level::info: return {"I", CAM_DEBUG_LEVEL_INFO};
    case Level::debug: break;
  }
  return {"D", CAM_DEBUG_LEVEL_DEBUG};
}

/// The gate: whether records of this class and level are written. Any thread.
inline bool isOpen(const Operation& operation, Level level) noexcept {
  // The byte in memory first: it spares the call while the level is off.
  const LevelInfo info = platformLevel(level);
  return (g_logInfoLv[info.number].flags & cam_log_info_t::kEnabled) != 0 &&
         mtkcam_testLog(operation.source.tag, info.letter) != 0;
}

/// Room for a record before its arguments are filled in, the terminating zero included. A longer
/// one is cut.
inline constexpr std::size_t kRecordBytes = 1024;
using RecordBuffer = std::array<char, kRecordBytes>;

/// Formats the head of a record followed by `message`, whose placeholders stay as they are.
void formatRecord(RecordBuffer& buffer, const Operation& operation, Level level, int line,
                  const char* message) noexcept;

/// Writes a record past the gate; use the macros below, which test the gate and let the compiler
/// check the arguments against the message.
template <typename... Args>
[[gnu::noinline, gnu::cold]] void write(const Operation& operation, Level level, int line,
                                        const char* message, Args... args) {
  RecordBuffer record;
  formatRecord(record, operation, level, line, message);
  log_dbg_print(operation.source.tag, platformLevel(level).number, record.data(), args...);
}

/// Takes what printf would take, so that the compiler checks it, and does nothing.
[[gnu::format(printf, 1, 2)]] inline void checkFormat(const char* /*format*/, ...) {}

}  // namespace hesk::log

#define HESK_LOG_RECORD(level, operation, message, ...)                                   \
  do {                                                                                    \
    if (::hesk::log::isOpen(operation, level)) {                                          \
      if (false) ::hesk::log::checkFormat(message __VA_OPT__(, ) __VA_ARGS__);            \
      ::hesk::log::write(operation, level, __LINE__, message __VA_OPT__(, ) __VA_ARGS__); \
    }                                                                                     \
  } while (false)

// A record whose message begins with the operation's name, as most do.
#define HESK_LOGD(operation, message, ...)                               \
  HESK_LOG_RECORD(::hesk::log::Level::debug, operation, "[%s] " message, \
                  (operation).name __VA_OPT__(, ) __VA_ARGS__)
#define HESK_LOGE(operation, message, ...)                               \
  HESK_LOG_RECORD(::hesk::log::Level::error, operation, "[%s] " message, \
                  (operation).name __VA_OPT__(, ) __VA_ARGS__)
#define HESK_LOGI(operation, message, ...)                              \
  HESK_LOG_RECORD(::hesk::log::Level::info, operation, "[%s] " message, \
                  (operation).name __VA_OPT__(, ) __VA_ARGS__)
