// The metadata tags as typed constants: `hesk::tags::HESK_CONTROL_ISO` knows its value and the type
// of its items.

#pragma once

#include <cstdint>

#include "platform/Geometry.h"
#include "platform/IMetadata.h"

namespace hesk {

/// A metadata tag whose items are of type `T`.
template <NSCam::MetadataItem T>
struct Tag {
  std::uint32_t value;
};

namespace tags {

namespace item {
using type_int32 = std::int32_t;
using type_int64 = std::int64_t;
using type_uint8 = std::uint8_t;
using type_float = float;
using type_rect = NSCam::MRect;
using type_rational = NSCam::MRational;
}  // namespace item

#define TAG(name, value, type, count, meaning) inline constexpr Tag<item::type_##type> name{value};
#include "common/tags/Tags.def"
#undef TAG

/// Tags of the platform that the catalogue, and so `camhook tags`, does not publish.
namespace unlisted {

inline constexpr Tag<std::int32_t> SESSION_4K60_0{0x80070000};           // session: 1, 4K at 60 fps
inline constexpr Tag<std::int32_t> SESSION_4K60_3{0x80070003};           // session: 1 with it
inline constexpr Tag<std::int32_t> PLATFORM_LUX{0x8006001a};             // result: a lux value
inline constexpr Tag<std::uint8_t> SESSION_MARK{0x800b000a};             // session: always 1
inline constexpr Tag<std::int32_t> SESSION_HIGH_SPEED{0x800f0000};       // session: fps, fps / 30
inline constexpr Tag<std::int32_t> APP_PIP_DEVICES{0xc003009a};          // session: two devices
inline constexpr Tag<std::int32_t> APP_VIDEO_FLIP{0xc003009c};           // session: not 0 flips
inline constexpr Tag<std::uint8_t> STATIC_MULTICAM_FEATURE{0xc008000e};  // static: kind of device
inline constexpr Tag<std::int32_t> RESULT_EYE_REGIONS{0xc00e0000};
inline constexpr Tag<std::int32_t> RESULT_HUMAN_BODY_REGIONS{0xc00e0014};
inline constexpr Tag<std::int32_t> RESULT_LOT_REGIONS{0xc00e0017};

}  // namespace unlisted
}  // namespace tags
}  // namespace hesk
