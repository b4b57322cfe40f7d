// A scenario: a phone, and the calls made on it.

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "host/PhoneConfig.h"
#include "platform/IMetadata.h"

namespace camhook {

/// A container handed to a hook; none: null.
using MetadataArgument = std::optional<NSCam::IMetadata>;

struct CreateInstance {
  static constexpr std::string_view kName = "createInstance";
  std::int32_t sensor = 0;
};

struct UpdateRequestMeta {
  static constexpr std::string_view kName = "updateRequestMeta";
  std::int32_t sensor = 0;
  std::uint32_t requestNo = 0;
  MetadataArgument meta;
};

struct SetEvent {
  static constexpr std::string_view kName = "setEvent";
  std::string key;
  std::string value;
};

struct SetProperty {
  static constexpr std::string_view kName = "setProperty";
  std::string name;
  std::string value;
};

using Call = std::variant<CreateInstance, UpdateRequestMeta, SetEvent, SetProperty>;

struct Scenario {
  host::PhoneConfig platform;
  std::vector<Call> calls;
};

}  // namespace camhook
