// Values of tags that the library compares or writes, kinds of sessions, and the number of the
// front sensor. A value without a known meaning has its number in its name.

#pragma once

#include <concepts>
#include <cstdint>

namespace hesk {

/// Returns the HESK_CONTROL_CURRENTMODE in which these bits are set.
constexpr std::int64_t modeBits(std::integral auto... numbers) noexcept {
  return ((std::int64_t{1} << numbers) | ...);
}

/// Bits of HESK_CONTROL_CURRENTMODE.
namespace mode {
inline constexpr std::int64_t kPhoto = modeBits(0);  // beauty or native
inline constexpr std::int64_t kHdr = modeBits(1);
inline constexpr std::int64_t kBit3 = modeBits(3);
inline constexpr std::int64_t kBit5 = modeBits(5);
inline constexpr std::int64_t kSingleFrame = modeBits(13);
inline constexpr std::int64_t kBit24 = modeBits(24);
inline constexpr std::int64_t kPanorama59 = modeBits(59);

// Several bits, of which one is enough.
inline constexpr std::int64_t kPanorama = modeBits(15, 16) | kPanorama59;
inline constexpr std::int64_t kRawType = kHdr | modeBits(18, 19, 27, 51, 52);
inline constexpr std::int64_t kShadingFrom3A = modeBits(18, 27, 35, 51, 52, 53, 55);
inline constexpr std::int64_t kRawAlgorithm = kShadingFrom3A | kBit3 | modeBits(2, 19, 54);
}  // namespace mode

/// Values of COM_HESK_CURRENTUIMODULE. Modules that only have a tuning profile's name are listed in
/// updater/TuningAppName.cpp.
namespace uimodule {
inline constexpr std::int32_t k3 = 3;
inline constexpr std::int32_t kSuperNight = 7;
inline constexpr std::int32_t k8 = 8;
inline constexpr std::int32_t kProfessional16 = 16;
inline constexpr std::int32_t kArStickers = 24;
inline constexpr std::int32_t kFunVideo = 26;
inline constexpr std::int32_t kPhoto = 31;  // beauty or native
inline constexpr std::int32_t kMoon = 32;
inline constexpr std::int32_t kProfessional51 = 51;
inline constexpr std::int32_t k53 = 53;
}  // namespace uimodule

/// Values of ANDROID_CONTROL_CAPTURE_INTENT.
namespace intent {
inline constexpr std::uint8_t kPreview = 1;
inline constexpr std::uint8_t kStillCapture = 2;
}  // namespace intent

/// Values of MTK_HDR_FEATURE_HDR_MODE.
namespace hdr {
inline constexpr std::int32_t kOff = 0;
inline constexpr std::int32_t kVideoOn = 3;
}  // namespace hdr

/// Values of HESK_CONTROL_MULTICAM_FEATURE_MODE in multi-camera sessions; 0 is a session of one
/// camera.
namespace multicam {
inline constexpr std::int32_t kMulticam = 1;
inline constexpr std::int32_t kLogicalMulticam = 2;
}  // namespace multicam

inline constexpr std::int32_t kFrontSensor = 1;

}  // namespace hesk
