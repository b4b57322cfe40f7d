// Work in processes of their own. What the library keeps until a process ends goes with the child;
// the parent stays as it was.

#pragma once

#include <functional>
#include <vector>

#include "tools/camhook/input/Json.h"

namespace camhook {

/// What a child makes. An InputError that it throws is thrown in the parent.
using ChildWork = std::function<Json()>;

/// Runs every one in a child of its own, as many at once as the machine has processors, and returns
/// what they made, in their order. `onDone` is told what one has made as soon as it is done.
/// Children end with the process that started them. Throws InputError where one does not come to
/// its end, too.
std::vector<Json> inChildren(const std::vector<ChildWork>& works,
                             const std::function<void(const Json& made)>& onDone = {});

/// The same for one.
Json inChild(const ChildWork& work);

}  // namespace camhook
