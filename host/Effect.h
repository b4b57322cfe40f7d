// Effects of the library on the platform.

#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "platform/Geometry.h"

namespace host {

/// One effect: its name and fields, as shown in a trace.
struct Effect {
  /// A region that was passed to the multi-camera library.
  struct Region {
    std::int32_t kind = 0;
    NSCam::MRect rect;

    friend bool operator==(const Region&, const Region&) = default;
  };
  using Value = std::variant<bool, std::int64_t, float, std::string, std::vector<std::int64_t>,
                             std::vector<Region>>;
  struct Field {
    std::string name;
    Value value;

    friend bool operator==(const Field&, const Field&) = default;
  };

  std::string op;
  std::vector<Field> fields;

  friend bool operator==(const Effect&, const Effect&) = default;
};

}  // namespace host
