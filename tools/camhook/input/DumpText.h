// Dumps of metadata, as a phone writes them, in whatever text stands around them.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/IMetadata.h"

namespace camhook {

struct Dump {
  std::size_t line = 0;                           // of the text, in which it begins
  bool isNull = false;                            // of a buffer that there was not
  std::vector<NSCam::IMetadata::IEntry> entries;  // in their order, each with items and its own tag
  std::string problem = {};  // of the first entry that is left out; empty: none is
};

/// What is to be said of an entry or of a whole dump.
struct DumpNote {
  enum class Kind { leftOut, doubtful, incomplete };

  std::size_t line = 0;
  Kind kind = Kind::leftOut;
  std::string text;
};

struct DumpsOfText {
  std::vector<Dump> dumps;      // in the order of their first lines
  std::vector<DumpNote> notes;  // in the order of their lines
};

/// The dumps of a text, none where it has none. Takes time in proportion to the text.
///
/// A dump begins with its first line, wherever on a line that stands, and ends with its last value,
/// the next dump or the text; what else stands between is passed over. Dumps of several threads
/// that mix in one log are told apart by what stands behind the time on each line. A text that
/// begins within a dump has its entries, too; those behind a whole dump are of an older one, which
/// a phone does not cut from the file that it overwrites.
DumpsOfText dumpsIn(std::string_view text);

}  // namespace camhook
