// Where the library's log records go on the simulated phone.

#pragma once

#include <cstdarg>
#include <initializer_list>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Log.h"

namespace host {

/// A record split into its parts.
struct LogRecord {
  char level = 'D';  // 'D', 'E' or 'I'
  std::string tag;
  std::string file;
  int line = 0;
  std::string function;
  std::string format;   // of the message, unexpanded
  std::string message;  // expanded
};

/// Keeps the records until they are taken.
///
/// Threads: records may come from any thread. The levels are set while no hook runs.
class LogSink {
 public:
  /// Opens exactly these levels ('D', 'E', 'I') in the platform's table.
  static void openLevels(std::initializer_list<char> letters);

  /// Lets the tag test refuse every tag; the levels stay as they are.
  void setTagsWanted(bool wanted);
  [[nodiscard]] bool areTagsWanted() const { return mTagsWanted; }

  /// Takes a line from the platform's log.
  void add(std::string_view tag, cam_debug_level_t level, const char* format,
           std::va_list arguments);

  /// The records since the last call.
  std::vector<LogRecord> take();

 private:
  std::mutex mMutex;
  bool mTagsWanted = true;
  std::vector<LogRecord> mRecords;
};

/// Expands a printf format as the traces have it: an address stands as 0x0, a float that is no
/// number as nan. Any length.
std::string expandFormat(const char* format, std::va_list arguments);

}  // namespace host
