// The log of the simulated phone.

#pragma once

#include <cstdarg>
#include <initializer_list>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Log.h"

namespace host {

/// A parsed log record.
struct LogRecord {
  char level = 'D';  // 'D', 'E' or 'I'
  std::string tag;
  std::string file;
  int line = 0;
  std::string function;
  std::string format;   // of the message, unexpanded
  std::string message;  // expanded
};

/// Collects the records. Any thread may write a record; levels are set while no hook runs.
class LogSink {
 public:
  /// Enables these levels ('D', 'E', 'I') in the platform's table and disables the others.
  static void enableLevels(std::initializer_list<char> letters);

  /// Sets the result of the platform's tag test for every tag. The levels do not change.
  void setTagsEnabled(bool enabled);
  [[nodiscard]] bool areTagsEnabled() const { return mTagsEnabled; }

  /// Adds a line of the platform's log.
  void add(std::string_view tag, cam_debug_level_t level, const char* format,
           std::va_list arguments);

  /// Returns and removes the collected records.
  std::vector<LogRecord> take();

 private:
  std::mutex mMutex;
  bool mTagsEnabled = true;
  std::vector<LogRecord> mRecords;
};

/// Expands a printf format in the format of the traces: an address is 0x0, a NaN has no sign.
std::string expandFormat(const char* format, std::va_list arguments);

}  // namespace host
