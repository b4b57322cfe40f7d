#include "tools/camhook/rules/Boxes.h"

#include <algorithm>
#include <numeric>

namespace camhook {
namespace {

std::size_t indexOf(const Axes& axes, const Case& values) {
  std::size_t index = 0;
  for (std::size_t i = 0; i < axes.size(); ++i) index = index * axes[i].values.size() + values[i];
  return index;
}

Case caseOf(const Axes& axes, std::size_t index) {
  Case values(axes.size());
  for (std::size_t i = axes.size(); i > 0; --i) {
    const std::size_t count = axes[i - 1].values.size();
    values[i - 1] = index % count;
    index /= count;
  }
  return values;
}

/// The box of one case, made as large as `holds` allows, the axis `first` before the others.
Box grown(const Axes& axes, const std::vector<bool>& holds, const Case& seed, std::size_t first) {
  Box box;
  for (const std::size_t value : seed) box.push_back({value});
  for (std::size_t step = 0; step < axes.size(); ++step) {
    const std::size_t axis = (first + step) % axes.size();
    for (std::size_t value = 0; value < axes[axis].values.size(); ++value) {
      if (value == seed[axis]) continue;
      Box layer = box;
      layer[axis] = {value};
      if (forEachIndex(axes, layer, [&](std::size_t index) { return bool{holds[index]}; })) {
        box[axis].push_back(value);
      }
    }
    std::ranges::sort(box[axis]);
  }
  return box;
}

std::size_t sizeOf(const Box& box) {
  return std::accumulate(box.begin(), box.end(), std::size_t{1},
                         [](std::size_t size, const auto& values) { return size * values.size(); });
}

std::string valuesText(const Axis& axis, const std::vector<std::size_t>& values) {
  std::string text(inputField(axis.input).option);
  for (std::size_t i = 0; i < values.size(); ++i) {
    text += i == 0 ? " " : i + 1 < values.size() ? ", " : " or ";
    text += axis.nameOf(values[i]);
  }
  return text;
}

void append(std::string& list, const std::string& separator, const std::string& item) {
  list += (list.empty() ? "" : separator) + item;
}

}  // namespace

bool forEachIndex(const Axes& axes, const Box& box, const std::function<bool(std::size_t)>& use) {
  Case wheels(axes.size());
  Case values(axes.size());
  for (;;) {
    for (std::size_t i = 0; i < axes.size(); ++i) values[i] = box[i][wheels[i]];
    if (!use(indexOf(axes, values))) return false;
    std::size_t wheel = axes.size();
    for (; wheel > 0; --wheel) {
      wheels[wheel - 1] = wheels[wheel - 1] + 1 < box[wheel - 1].size() ? wheels[wheel - 1] + 1 : 0;
      if (wheels[wheel - 1] != 0) break;
    }
    if (wheel == 0) return true;
  }
}

std::vector<Box> boxesOf(const Axes& axes, const std::vector<bool>& holds) {
  std::vector<Box> boxes;
  std::vector<bool> left = holds;
  for (auto at = std::ranges::find(left, true); at != left.end();
       at = std::find(at, left.end(), true)) {
    const Case seed = caseOf(axes, static_cast<std::size_t>(at - left.begin()));
    Box largest;
    for (std::size_t first = 0; first < axes.size(); ++first) {
      Box box = grown(axes, holds, seed, first);
      if (largest.empty() || sizeOf(box) > sizeOf(largest)) largest = std::move(box);
    }
    forEachIndex(axes, largest, [&](std::size_t index) {
      left[index] = false;
      return true;
    });
    boxes.push_back(std::move(largest));
  }
  std::ranges::stable_sort(boxes, std::ranges::greater(), sizeOf);
  return boxes;
}

std::string boxText(const Axes& axes, const Box& box, std::string& exceptions) {
  std::string text;
  for (std::size_t i = 0; i < axes.size(); ++i) {
    std::vector<std::size_t> others;
    for (std::size_t value = 0; value < axes[i].values.size(); ++value) {
      if (std::ranges::find(box[i], value) == box[i].end()) others.push_back(value);
    }
    if (others.empty()) continue;
    if (others.size() < box[i].size()) {
      append(exceptions, " or ", valuesText(axes[i], others));
    } else {
      append(text, ", ", valuesText(axes[i], box[i]));
    }
  }
  return text;
}

}  // namespace camhook
