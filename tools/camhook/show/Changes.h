// What a call changed, in words, for whatever shows its trace to people.

#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "tools/camhook/run/Replay.h"

namespace camhook {

/// A value that a call wrote to a tag, and the step that wrote it.
struct ValueWrite {
  std::string value;
  Step step;
};

/// A tag, or a field of an updater, that a call changed.
struct ValueChange {
  std::string name;
  std::string before;
  std::string after;
  std::vector<std::string> decoded;  // what its items mean, where they are a text or a record
  std::vector<ValueWrite> writes;    // the latest first; none where steps were not asked for
};

struct ContainerChanges {
  std::vector<ValueChange> changes;  // ordered by tag
  std::size_t unchanged = 0;         // entries
};

/// Of a container that is not null.
ContainerChanges changesOf(const CallTrace& trace, const ContainerTrace& container);

/// An entry that a call left as it was.
struct Unchanged {
  std::string name;
  std::string value;
};

/// Of a container that is not null; ordered by tag.
std::vector<Unchanged> unchangedOf(const ContainerTrace& container);

std::vector<ValueChange> changesOf(const StateTrace& state);

/// "FrameRate.cpp:56": no two sources of the library have one name.
std::string placeText(const Step& step);

}  // namespace camhook
