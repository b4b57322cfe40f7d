// A scenario made of a phone's dumps of metadata: each dump is what a hook is handed.

#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/PhoneConfig.h"
#include "tools/camhook/input/DumpText.h"

namespace camhook {

/// A hook that dumps can be handed to.
struct DumpHook {
  std::string_view word;  // on the command line, where the call's name will do, too
  std::string_view call;
  std::span<const std::string_view> containers;  // that a dump each fills, in their order
  std::string_view numberKey;                    // of the call's request number; empty: has none
  bool hasStreams = false;                       // a list of streams, which is empty
};

std::span<const DumpHook> dumpHooks();

/// By its word or its call's name; null where there is none.
const DumpHook* findDumpHook(std::string_view name);

/// A file and the dumps in it.
struct DumpFile {
  std::string name;
  DumpsOfText found;
};

struct DumpOptions {
  const DumpHook* hook = nullptr;      // null: requests
  std::optional<std::int32_t> sensor;  // none: 0
  host::TextMap properties;
  host::TextMap eventStore;
  std::optional<DumpFile> statics;  // whose first dump is the device's static metadata
};

struct DumpScenario {
  struct Call {
    std::uint32_t requestNo = 0;
    std::vector<Dump> containers;  // one for each of the hook's
  };

  std::string about;
  host::TextMap properties;
  host::TextMap eventStore;
  std::int32_t sensor = 0;
  std::optional<Dump> statics;
  std::string clock;  // "2021-03-04T05:06:07"; empty: none
  const DumpHook* hook = nullptr;
  std::vector<Call> calls;
  std::vector<std::string> notes;  // what was assumed, left out and doubtful, each a line
};

/// Reads a text, which came from a file of that name. Throws InputError where it holds no dump.
DumpFile dumpFile(std::string name, std::string_view text);

/// Makes a call of each dump, or of as many as the hook has containers: in the order of files and
/// texts, files that `dumpMetadata` named by frame before all others, in the order of the frames
/// and under their numbers. All others are numbered on from there, from 1.
DumpScenario scenarioOfDumps(std::vector<DumpFile> files, DumpOptions options);

}  // namespace camhook
