#include "host/LogSink.h"

#include <charconv>
#include <cstring>
#include <utility>

#include "host/Phone.h"

cam_log_info_t g_logInfoLv[4] = {
    {0, "D", {}},
    {0, "E", {}},
    {0, "", {}},
    {0, "I", {}},
};

namespace host {
namespace {

void setLevel(cam_debug_level_t level, bool open) {
  std::uint64_t& flags = g_logInfoLv[level].flags;
  flags = open ? flags | cam_log_info_t::kEnabled : flags & ~cam_log_info_t::kEnabled;
}

char levelLetter(cam_debug_level_t level) {
  switch (level) {
    case CAM_DEBUG_LEVEL_ERROR: return 'E';
    case CAM_DEBUG_LEVEL_INFO: return 'I';
    case CAM_DEBUG_LEVEL_DEBUG: break;
  }
  return 'D';
}

/// Moves the text before `mark` from `text` to `front` and removes the mark. Returns false if there
/// is no mark.
bool cutAt(std::string_view& text, std::string_view mark, std::string_view& front) {
  const std::size_t at = text.find(mark);
  if (at == std::string_view::npos) return false;
  front = text.substr(0, at);
  text.remove_prefix(at + mark.size());
  return true;
}

/// Parses the head of a record, "D[tag] file:line function() ". Returns its length, 0 if the format
/// does not begin with a head.
std::size_t readHead(std::string_view format, std::string_view prefix, LogRecord& record) {
  const std::string start = std::string(prefix) + "[" + record.tag + "] ";
  if (!format.starts_with(start)) return 0;
  std::string_view rest = format.substr(start.size());
  std::string_view file;
  std::string_view line;
  std::string_view function;
  if (!cutAt(rest, ":", file) || !cutAt(rest, " ", line) || !cutAt(rest, "() ", function)) return 0;
  std::from_chars(line.data(), line.data() + line.size(), record.line);
  record.file = file;
  record.function = function;
  return format.size() - rest.size();
}

}  // namespace

void LogSink::enableLevels(std::initializer_list<char> letters) {
  for (const cam_debug_level_t level :
       {CAM_DEBUG_LEVEL_DEBUG, CAM_DEBUG_LEVEL_ERROR, CAM_DEBUG_LEVEL_INFO}) {
    setLevel(level, std::string_view(letters.begin(), letters.size()).find(levelLetter(level)) !=
                        std::string_view::npos);
  }
}

void LogSink::setTagsEnabled(bool enabled) { mTagsEnabled = enabled; }

void LogSink::add(std::string_view tag, cam_debug_level_t level, const char* format,
                  std::va_list arguments) {
  LogRecord record;
  record.level = levelLetter(level);
  record.tag = tag;
  const std::size_t head = readHead(format, g_logInfoLv[level].prefix, record);
  record.format = format + head;
  record.message = expandFormat(format + head, arguments);
  const std::lock_guard lock(mMutex);
  mRecords.push_back(std::move(record));
}

std::vector<LogRecord> LogSink::take() {
  const std::lock_guard lock(mMutex);
  return std::exchange(mRecords, {});
}

}  // namespace host

int mtkcam_testLog(const char* /*tag*/, const char* /*levelLetter*/) {
  return host::Phone::current().log.areTagsEnabled() ? 1 : 0;
}

const char* get_filename(const char* path) {
  const char* slash = std::strrchr(path, '/');
  return slash != nullptr ? slash + 1 : path;
}

void log_dbg_print(const char* tag, cam_debug_level_t level, const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  host::Phone::current().log.add(tag, level, format, arguments);
  va_end(arguments);
}
