// Makes scenarios from the metadata dumps of a phone.

#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/PhoneConfig.h"
#include "tools/camhook/input/DumpText.h"
#include "tools/camhook/input/Json.h"

namespace camhook {

/// A hook whose containers dumps can fill.
struct DumpHook {
  std::string_view word;  // short for the call's name on the command line
  std::string_view call;
  std::vector<std::string_view> containers;  // each takes one dump
};

std::span<const DumpHook> dumpHooks();

/// Returns the hook with this word or call name; null if there is none.
const DumpHook* findDumpHook(std::string_view name);

/// A file and the dumps in it.
struct DumpFile {
  std::string name;
  DumpsOfText found;
};

struct DumpOptions {
  const DumpHook* hook = nullptr;      // null: the request hook
  std::optional<std::int32_t> sensor;  // by default 0
  host::TextMap properties;
  host::TextMap eventStore;
  std::optional<DumpFile> statics;  // its first dump is the device's static metadata
};

/// Finds the dumps in the text of a file. Throws InputError if there is none, and if no entry of a
/// dump can be read.
DumpFile dumpFile(std::string name, std::string_view text);

/// True if a dump has tags of static metadata, which a hook does not receive.
bool hasStatics(const DumpFile& file);

/// Makes a call from each dump, or from as many dumps as the hook has containers. Dumps of files of
/// `dumpMetadata`, whose names contain the frame, come first, in the order of frames and with the
/// frame as request number. The other dumps follow in the order of files and texts, with the next
/// numbers. There is at least one dump. "about" lists what is assumed.
Json scenarioOfDumps(const std::vector<DumpFile>& files, const DumpOptions& options);

}  // namespace camhook
