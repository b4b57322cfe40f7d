// The metadata tags as typed constants: `hesk::tags::HESK_CONTROL_ISO` holds the tag's value and
// its item type.

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
#define UNLISTED_TAG TAG
#include "common/tags/Tags.def"
#undef UNLISTED_TAG
#undef TAG

}  // namespace tags
}  // namespace hesk
