// A set of cases told in few words: as boxes, in which each input has one of some values.

#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "tools/camhook/rules/Cases.h"

namespace camhook {

/// Of each axis the values that it has in the box.
using Box = std::vector<std::vector<std::size_t>>;

/// Calls `use` with the place, in the order of `forEachCase`, of every case in the box until it
/// returns false. Whether it never did.
bool forEachIndex(const Axes& axes, const Box& box, const std::function<bool(std::size_t)>& use);

/// Boxes that together hold exactly these cases, the large ones first. `holds` tells of every case,
/// in the order of `forEachCase`, whether it is one of them.
std::vector<Box> boxesOf(const Axes& axes, const std::vector<bool>& holds);

/// "eis 1, video-algo 0": what a box asks for. What it asks for by all but a few values goes to
/// `exceptions`: "app-type absent or hfps 1".
std::string boxText(const Axes& axes, const Box& box, std::string& exceptions);

}  // namespace camhook
