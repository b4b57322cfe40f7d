#include "common/log/Log.h"

#include <cstdio>

namespace hesk::log {

void formatRecord(RecordBuffer& buffer, const Operation& operation, const Level& level, int line,
                  const char* message) {
  buffer.fill('\0');
  std::snprintf(buffer.data(), buffer.size(), "%s[%s] %s:%d %s() %s",
                g_logInfoLv[level.number].prefix, operation.source.tag,
                get_filename(operation.source.path), line, operation.name, message);
}

}  // namespace hesk::log
