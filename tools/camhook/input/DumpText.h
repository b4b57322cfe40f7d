// Finds the metadata dumps of a phone in logs, bug reports and other texts.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/IMetadata.h"
#include "tools/camhook/input/InputError.h"

namespace camhook {

struct Dump {
  std::size_t line = 0;                                // of its beginning, from 1
  bool isNull = false;                                 // the buffer was null
  std::vector<NSCam::IMetadata::IEntry> entries = {};  // in their order, all with items
  std::string problem = {};  // of the first entry that is left out; empty if all are read
};

struct DumpsOfText {
  std::vector<Dump> dumps;  // in the order of their first lines
  Faults warnings;
};

/// Finds the dumps of a text.
///
/// The first line of a dump may follow other text on its line. The dump ends with its last value,
/// the next dump or the text. Other text between its lines is ignored. Dumps of several threads in
/// one log are separated by the text after the time of each line. If the text begins within a dump,
/// its remaining entries form a dump. Entries after a complete dump belong to an older one: a phone
/// overwrites the file without truncating it.
DumpsOfText dumpsIn(std::string_view text);

}  // namespace camhook
