// Writes traces as the calls run.

#pragma once

#include "host/TextStore.h"
#include "tools/camhook/run/Replay.h"

namespace camhook {

class TraceWriter {
 public:
  virtual ~TraceWriter() = default;

  virtual void write(const CallTrace& trace) = 0;

  /// Ends the trace. `eventStore` is the store's content after the last call.
  virtual void finish(const host::TextMap& eventStore) = 0;
};

}  // namespace camhook
