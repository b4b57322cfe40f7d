#include "tools/camhook/rules/Cases.h"

#include <algorithm>
#include <set>

namespace camhook {
namespace {

using hesk::Override;

/// Collects the values of an axis, each once.
class AxisMaker {
 public:
  explicit AxisMaker(InputIndex input, bool canBeAbsent = true) : mAxis{input, {}, 0} {
    if (canBeAbsent) add(std::string(kAbsent));
  }

  void add(const std::string& value) {
    if (mTexts.insert(value).second) mAxis.values.push_back(value);
  }

  void add(std::int32_t number) {
    if (number == SensorModeCfg::kNoCondition) return;
    mNumbers.insert(number);
  }

  Axis done(bool isText) {
    std::int32_t another = 0;
    do {
      ++another;
    } while (mNumbers.contains(another));
    for (const std::int32_t number : mNumbers) add(textOf(number));
    add(isText ? "another" : textOf(another));
    mAxis.another = mAxis.values.size() - 1;
    return std::move(mAxis);
  }

 private:
  [[nodiscard]] std::string textOf(std::int32_t number) const {
    const std::string text = std::to_string(number);
    return mAxis.input == kFps ? text + "," + text : text;
  }

  Axis mAxis;
  std::set<std::string> mTexts;
  std::set<std::int32_t> mNumbers;
};

void addValue(AxisMaker& maker, const RuleColumn::Value& value) {
  if (const auto* number = std::get_if<std::int32_t>(&value)) return maker.add(*number);
  const std::string_view text = std::get<std::string_view>(value);
  if (!text.empty()) maker.add(std::string(text));
}

struct SizeKind {
  const char* size;
  const char* name;
};

/// Of each combination of what overrides ask of a size that there is, one.
constexpr SizeKind kSizes[] = {
    {"1920x1080", "wider than 4:3"},        // meets nothing
    {"640x480", "640x480"},                 // meets all
    {"1440x1080", "4:3"},                   // is near 4:3 and not wider
    {"2804x2102", "a bit wider than 4:3"},  // is near 4:3
    {"1080x1080", "narrower than 4:3"},     // is not wider
};

}  // namespace

std::string Axis::nameOf(std::size_t value) const {
  if (input == kSize) return kSizes[value].name;
  return value == another ? "another" : values[value];
}

Axes axesOfRules(std::initializer_list<std::span<const SensorModeCfg>> lists,
                 const Assumptions& assumed) {
  Axes axes;
  for (const RuleColumn& column : ruleColumns()) {
    AxisMaker maker(column.input, column.input != kAppType || !assumed.isAppTypeSet);
    // Whatever the rules say, a filter asks whether it is this.
    if (column.input == kHfps) maker.add(1);
    for (const auto& list : lists) {
      for (const SensorModeCfg& rule : list) addValue(maker, column.wanted(rule));
    }
    axes.push_back(maker.done(column.input == kAppType));
  }
  return axes;
}

Axes axesOfOverrides(std::initializer_list<std::span<const Override>> lists,
                     const Assumptions& assumed) {
  AxisMaker appType(kAppType, !assumed.isAppTypeSet);
  AxisMaker appName(kAppName);
  AxisMaker hdr(kHdr);
  AxisMaker night(kNight);
  for (const auto& list : lists) {
    for (const Override& override : list) {
      if (!override.appType.empty()) appType.add(std::string(override.appType));
      for (const std::string_view name : override.appNames) {
        if (!name.empty()) appName.add(std::string(name));
      }
      hdr.add(override.hdrMode);
      night.add(override.nightMode);
    }
  }
  constexpr auto kNone = static_cast<std::size_t>(-1);
  std::vector<std::string> sizes;
  for (const SizeKind& kind : kSizes) sizes.emplace_back(kind.size);
  return {{kSensor, {"0", "1", "2"}, 2},
          {kVideo, {"no", "yes"}, kNone},
          appType.done(true),
          appName.done(true),
          hdr.done(false),
          night.done(false),
          {kSize, sizes, kNone}};
}

Axes axesOf(const RuleSet& rules, std::initializer_list<std::span<const SensorModeCfg>> lists) {
  Axes axes = axesOfRules(lists);
  for (Axis& other : axesOfOverrides({rules.overrides})) {
    if (other.input == kSensor || other.input == kVideo) continue;
    const auto same = std::ranges::find(axes, other.input, &Axis::input);
    if (same == axes.end()) {
      axes.push_back(std::move(other));
      continue;
    }
    // Before the one that stands for all others.
    for (const std::string& value : other.values) {
      if (std::ranges::find(same->values, value) != same->values.end()) continue;
      same->values.insert(same->values.end() - 1, value);
      ++same->another;
    }
  }
  return axes;
}

Inputs plainInputs(std::string_view product, std::int32_t sensor, bool video) {
  Inputs inputs;
  inputs.product = product;
  inputs.sensor = sensor;
  inputs.video = video;
  inputs.size = {.w = 1920, .h = 1080};
  return inputs;
}

std::size_t caseCount(const Axes& axes) {
  std::size_t count = 1;
  for (const Axis& axis : axes) {
    count *= std::min(axis.values.size(), kMostCases + 1);
    if (count > kMostCases) return count;
  }
  return count;
}

void forEachCase(const Axes& axes, Inputs inputs,
                 const std::function<void(const Inputs&, const Case&)>& use) {
  Case values(axes.size());
  for (const Axis& axis : axes) inputField(axis.input).set(inputs, axis.values.front());
  for (;;) {
    use(inputs, values);
    // As an odometer counts, its last wheel first.
    std::size_t wheel = axes.size();
    for (; wheel > 0; --wheel) {
      const Axis& axis = axes[wheel - 1];
      std::size_t& value = values[wheel - 1];
      value = value + 1 < axis.values.size() ? value + 1 : 0;
      inputField(axis.input).set(inputs, axis.values[value]);
      if (value != 0) break;
    }
    if (wheel == 0) return;
  }
}

}  // namespace camhook
