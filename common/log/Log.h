// The log record: the one way in which the library writes a line.
//
//   HESK_LOGD(kOperation)("[%s] update CaptureCount:%d", count);
//
// writes a debug record "[updateRequestMeta] update CaptureCount:3" of the operation's class. The
// record carries the class's source path and the operation's listed name, whichever file of the
// class wrote it: field tools filter on these. A "[%s]" that begins a message is filled with that
// name. The compiler checks the arguments against the message.
//
// With the gate closed a log call costs the gate: its arguments are not evaluated, nothing is
// formatted. An open one formats into a buffer on the stack and allocates nothing.

#pragma once

#include <array>
#include <cstddef>
#include <type_traits>

#include "common/log/Message.h"
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

/// Writes one record, past the gate.
struct RecordWriter {
  const Operation& operation;
  Level level;
  int line;

  template <typename... Args>
  [[gnu::noinline, gnu::cold]] void operator()(Message<std::type_identity_t<Args>...> message,
                                               Args... args) const {
    RecordBuffer record;
    formatRecord(record, operation, level, line, message.text());
    const cam_debug_level_t number = platformLevel(level).number;
    if (message.namesOperation()) {
      log_dbg_print(operation.source.tag, number, record.data(), operation.name, args...);
    } else {
      log_dbg_print(operation.source.tag, number, record.data(), args...);
    }
  }
};

}  // namespace hesk::log

// The message and its arguments stand behind the macro, not in it: compilers do not agree on the
// line of a macro call that takes several.
#define HESK_LOG_RECORD(operation, level)                                       \
  !::hesk::log::isOpen(operation, level) ? void() : ::hesk::log::RecordWriter { \
    operation, level, __LINE__                                                  \
  }

#define HESK_LOGD(operation) HESK_LOG_RECORD(operation, ::hesk::log::Level::debug)
#define HESK_LOGE(operation) HESK_LOG_RECORD(operation, ::hesk::log::Level::error)
#define HESK_LOGI(operation) HESK_LOG_RECORD(operation, ::hesk::log::Level::info)
