// The per-sensor hooks of the camera HAL.
//
// There is one updater a sensor index, made on first use and kept until the process ends. The
// pipeline obtains it with `createInstance` and hands its hooks the metadata containers that it
// owns; a hook reads them, writes derived tags into them and returns before the pipeline goes on.
//
// Failure: no hook reports any. What cannot be read takes the default stated with the operation,
// and failures are logged. A null container reads as an empty one; writes to it are skipped.
//
// Threads: `createInstance` may be called from any threads at once. The hooks of one updater are
// called from one thread at a time; those of different updaters may run at once. They share the
// handle of the camera provider service alone, behind a lock.

#pragma once

#include <cstdint>
#include <map>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/Geometry.h"
#include "platform/IMetadata.h"
#include "platform/ImageStreamInfo.h"

struct camera_metadata;
class TqcMetaConverter;

/// The white-box window of the replay tool and the tests.
struct HeskParameterUpdaterInspector;

class __attribute__((visibility("default"))) HeskParameterUpdater {
 public:
  /// The highest sensor index that has an updater; the lowest is 0.
  static constexpr int kMaxInstanceId = 10;

  /// The configured streams of a session by their ids.
  using ImageStreams = std::unordered_map<std::int64_t, android::sp<NSCam::v3::IImageStreamInfo>>;

  HeskParameterUpdater(const HeskParameterUpdater&) = delete;
  HeskParameterUpdater& operator=(const HeskParameterUpdater&) = delete;

  /// The updater of sensor `instanceId`, constructed on the first call for that index; null, with a
  /// debug record, where the index is not 0 to 10. The caller does not own it.
  ///
  /// Construction computes the sensor's diagonal field of view from the static characteristics of
  /// device `instanceId`: it reads ANDROID_SENSOR_INFO_PHYSICAL_SIZE (width and height in mm) and
  /// ANDROID_LENS_INFO_AVAILABLE_FOCAL_LENGTHS (item 0, mm), each 0 where absent.
  static HeskParameterUpdater* createInstance(int instanceId);

  /// The session hook, called once for every stream configuration, on the updater of the configured
  /// sensor. Rewrites `sessionMeta`, the app's session parameters, in place. What it reads of a
  /// null one is -1, the frame rates too. Null streams are passed over.
  ///
  /// In this order it
  ///  - tells the stereo settings HESK_CONTROL_EISENABLE and HESK_CONTROL_VIDEOALGOTYPE, -1 where
  ///    absent;
  ///  - sets the multi-camera feature mode by the static tag 0xc008000e (uint8) of the sensor's
  ///    device, and writes MTK_HESK_MULTICAM_ENABLE: 1 or 0 by the kind, -1 for another value,
  ///    which leaves the mode as it was;
  ///  - writes the platform's 0x800b000a = 1 (uint8);
  ///  - writes MTK_STREAMING_FEATURE_HFPS_MODE = 1 where the upper bound of
  ///    MTK_CONTROL_AE_TARGET_FPS_RANGE is 60 or 50;
  ///  - for the app type "HeskCamera" writes an upper bound of 120 or more, and its ratio to 30, to
  ///    the platform's 0x800f0000;
  ///  - for the app type "heskCamera" writes ANDROID_CONTROL_VIDEO_STABILIZATION_MODE: 1 for video
  ///    of 4K at 60 frames a second unless HESK_CONTROL_EISENABLE is 0, with HESK_CONTROL_EISENABLE
  ///    = 0 and the platform's 0x80070000 and 0x80070003 = 1; else 0;
  ///  - records the streams' ids in the map's order, and whether there is one for video: one with
  ///    the video encoder's usage bit, or any in UI module 3 (COM_HESK_CURRENTUIMODULE). Flips
  ///    these where the property vendor.debug.camera.VideoFlip, by default the app's 0xc003009c
  ///    (int32), is not 0;
  ///  - copies the app's 0xc003009a to MTK_STREAMING_FEATURE_PIP_DEVICES;
  ///  - writes MTK_HDR_FEATURE_HDR_MODE from HESK_CONTROL_VIDEO_HDR;
  ///  - writes MTK_CONTROL_SELECTED_STREAM_ID from HESK_CONTROL_STREAM_FLAGS;
  ///  - switches ANDROID_CONTROL_VIDEO_STABILIZATION_MODE off for other apps on sensor 1 of the
  ///    products KX0106 and KX0107;
  ///  - writes ANDROID_CONTROL_SCENE_MODE = 9 for the app name "Production" on sensor 2;
  ///  - limits MTK_CONTROL_AE_TARGET_FPS_RANGE to what the camera provider service says, 15 to 25
  ///    frames a second, and notes it in HESK_CONTROL_FPSLIMITTYPE, for app types other than
  ///    "heskCamera" and "CTS".
  ///
  /// Reads the event store's "APP_TYPE" and "APP_NAME" and the property ro.product.model.zdm.
  void updateSessionParams(NSCam::IMetadata* sessionMeta, ImageStreams streams);

  /// The request hook, called once for every capture request, on the updater of the request's
  /// sensor, before the request enters the pipeline. Rewrites `meta`, the request's app metadata,
  /// in place.
  ///
  /// In this order it
  ///  - replaces the upper bound of MTK_CONTROL_AE_TARGET_FPS_RANGE by HESK_CONTROL_FPS_RANGE_MAX;
  ///  - for the app names "TikTok" and "TikTokExternal" writes
  ///    ANDROID_STATISTICS_FACE_DETECT_MODE = 1; for "Production" on sensor 2
  ///    ANDROID_CONTROL_SCENE_MODE = 9;
  ///  - limits the range of other makers' apps to what the camera provider service says, and notes
  ///    it in HESK_CONTROL_FPSLIMITTYPE, as the session hook does; that of communication apps and
  ///    of photos, mode bit 5 and UI module 24 to 5 to 24 frames a second, or to the properties
  ///    vendor.debug.camera.fps.low and vendor.debug.camera.fps.max, which limit every request;
  ///    pins it in night mode (HESK_CONTROL_NIGHTMODE 1) to a HESK_CONTROL_FPS_RANGE_MAX of 12, 15
  ///    or 24, unless it was limited: then the pinned pair stands behind the limit;
  ///  - for the app type "heskCamera" sets the event store's "APP_NAME" to the tuning profile of
  ///    the app's mode (HESK_CONTROL_CURRENTMODE, COM_HESK_SCENETYPE, HESK_CONTROL_NATIVEMODE,
  ///    HESK_CONTROL_ISSECONDSNAPSHOT, HESK_CONTROL_VIDEOMODE, HESK_CONTROL_NIGHTMODE,
  ///    HESK_CONTROL_MOONMODE) and UI module, and "APP_MODE" to "Professional" or the empty text;
  ///    writes ANDROID_CONTROL_SCENE_MODE (4 panorama, 5 super night, 14 professional),
  ///    MTK_HESK_SUPER_NIGHT_ON = 1 on super-night captures and, for video, HESK_EISSTATE from
  ///    HESK_CONTROL_EISENABLE. For "engcamera" and HESK_CONTROL_ENGTESTITEM 8 the profile is
  ///    "OISTest";
  ///  - publishes in the event store, as decimal texts, what the request holds of
  ///    ANDROID_SENSOR_EXPOSURE_TIME ("MTK_EXPTIME", ns), ANDROID_SENSOR_SENSITIVITY ("MTK_ISO"),
  ///    HESK_CONTROL_COLOURTEMPERATURE and with it ANDROID_CONTROL_AWB_MODE
  ///    ("HESK_COLOURTEMPERATURE", "MTK_AWBMODE"), UI module ("HESK_CURRENTUIMODE"), second
  ///    snapshot ("HESK_ISSECONDSNAPSHOT") and, always, HESK_CONTROL_MOTIONLEVEL
  ///    ("HESK_MOTIONLEVEL", -1 where absent); writes HESK_CONTROL_EXPTIME unless "APP_MODE" is
  ///    "Professional", HESK_CONTROL_ISO and MTK_CONTROL_CAPTURE_REMOSAIC_EN, a copy of
  ///    HESK_CONTROL_ALGO_OVERRIDE;
  ///  - writes MTK_CONTROL_SELECTED_STREAM_ID, the last configured stream that
  ///    HESK_CONTROL_STREAM_FLAGS marks, -1 for none;
  ///  - in multi-camera sessions writes MTK_HESK_MULTICAM_ENABLE;
  ///  - turns a request of UI module 8 (COM_HESK_CURRENTUIMODULE) into a preview, by
  ///    ANDROID_CONTROL_CAPTURE_INTENT = 1 and ANDROID_CONTROL_ENABLE_ZSL = 0 (int32 items both),
  ///    unless HESK_CONTROL_KEEP_CAPTURE_INTENT is 1;
  ///  - on still captures (ANDROID_CONTROL_CAPTURE_INTENT 2) keeps the book of burst frames:
  ///    reads ANDROID_CONTROL_ENABLE_ZSL, HESK_CONTROL_HISFRAME, HESK_CONTROL_CURRENTMODE,
  ///    ANDROID_FLASH_MODE and HESK_CONTROL_ALGO_OVERRIDE; writes MTK_HESK_NON_ZSL_CAPTURE,
  ///    MTK_HESK_FRAME_COUNT, MTK_HESK_FRAME_INDEX, MTK_HESK_NO_VIDEO_STREAM,
  ///    MTK_HESK_STILL_CAPTURE, MTK_HAL_REQUEST_CAPTURE_FLAG0 and MTK_HAL_REQUEST_CAPTURE_FLAG1,
  ///    MTK_HESK_CAPTURE_COUNT, HESK_CONTROL_DUMPPATH (the local time as text with its zero) and
  ///    HESK_CONTROL_MULTICAM_FEATURE_MODE; announces a burst's non-zero-shutter-lag frames to 3A
  ///    (control 541), in multi-camera sessions to that of the camera that the device's static
  ///    ANDROID_LOGICAL_MULTI_CAMERA_PHYSICAL_IDS begins with. The book keeps the first 1,024
  ///    frames of a burst; a longer one is logged;
  ///  - writes MTK_CONTROL_RAW_TYPE: 60 for a zoomed (HESK_CONTROL_ZOOM_ZOOM_RATIO above 1)
  ///    super-moon request, else without item;
  ///  - caps the range's upper bound at 29 in dual-camera sessions of product KX0102;
  ///  - writes MTK_HDR_FEATURE_HDR_MODE from HESK_CONTROL_VIDEO_HDR;
  ///  - switches ANDROID_CONTROL_VIDEO_STABILIZATION_MODE off for other apps on sensor 1 of the
  ///    products KX0106 and KX0107;
  ///  - fixes the range to HESK_CONTROL_FPS_RANGE_MAX when that is 31 or more;
  ///  - writes MTK_RAW_ALGO_DIAGONAL_FOV (degrees) in mode bit 59 of UI module 8.
  ///
  /// Reads the event store's "APP_TYPE" and "APP_NAME" and the property ro.product.model.zdm.
  void updateRequestMeta(NSCam::IMetadata* meta, unsigned int requestNo);

  /// The result hook, called once for every result, on the updater of the result's sensor. Adds to
  /// `result`, the result's metadata.
  ///
  /// In this order it
  ///  - writes what 3A left in the event store: HESK_CONTROL_EXPTIME, 1000 times "HESK_EXP" (0);
  ///    HESK_CONTROL_ISO, "HESK_ISO" (100); HESK_CONTROL_EV, "HESK_EV" (0). In brackets what stands
  ///    for a text that is no such number;
  ///  - for the app name "VideoNight" writes HESK_FEEDBACK_VIDEONRRECOMMEND, the event store's
  ///    "HESK_VIDEONRRECOMMAND" (0);
  ///  - sets the event store's "PREVIEW_SCENEMODE" to "128" where COM_HESK_SCENETYPE is 128, to "0"
  ///    where it is another;
  ///  - writes HESK_RESULT_PAIR_FIRST, HESK_RESULT_PAIR_SECOND and MTK_HESK_RESULT_LUX_INDEX.
  ///    Where HESK_CONTROL_PAIR_SOURCE is 1 they are HESK_CONTROL_PAIR_INPUT and
  ///    MTK_3A_AE_LUX_INDEX; where it is 0 or absent, the sensor's fixed pair and the platform's
  ///    0x8006001a (int32); else none is written. No lux value is written where its source is
  ///    absent;
  ///  - echoes ANDROID_SENSOR_SENSITIVITY in MTK_RAW_ALGO_SENSITIVITY, `requestNo` in
  ///    HESK_CONTROL_REQUESTNO, MTK_3A_AE_CCT_USE_DATA in MTK_RAW_ALGO_AE_CCT_USE_DATA, 0 where
  ///    absent.
  ///
  /// Reads the event store's "APP_NAME", too.
  void updateResultMeta(NSCam::IMetadata* result, unsigned int requestNo);

  /// The capture hook, called once for every still-capture frame that goes through the multi-frame
  /// raw algorithms, on the updater of the sensor that opened the pipeline. `appMeta` is the
  /// frame's app metadata with its 3A results, `halMeta` its HAL metadata, `outMeta` what the raw
  /// algorithms are handed.
  ///
  /// In this order it writes into `outMeta`
  ///  - ANDROID_STATISTICS_LENS_SHADING_MAP, from 3A (17 x 13 points, 4 channels) for the
  ///    multi-frame modes of HESK_CONTROL_CURRENTMODE, else whatever the default-shading module
  ///    returns;
  ///  - HESK_CONTROL_CURRENT_CAMERA_ID, MTK_HAL_REQUEST_SENSOR_ID of `halMeta` or -1; in
  ///    multi-camera sessions HESK_CONTROL_IS_DUAL_SLAVE = 1 where that is the slave of
  ///    MTK_MULTICAM_MASTER_SLAVE_ID;
  ///  - what `update3ACaptureRawParameter` writes;
  ///  - what `setSATCropInfo` and `setCameraRole` write, but for mode bit 24 of UI module 32;
  ///  - MTK_RAW_ALGO_CAPTURE_VALUE64, MTK_P1NODE_CAPTURE_VALUE64 of `halMeta` or 0;
  ///  - MTK_RAW_ALGO_PHYSICAL_ZOOM_RATIO: the width of the camera's
  ///    MTK_SENSOR_INFO_ACTIVE_ARRAY_REGION by that of MTK_P1NODE_SCALAR_CROP_REGION, without a
  ///    crop HESK_CONTROL_ZOOM_ZOOM_RATIO, else 1;
  ///  - what `updateSensorPdafInfo` writes, where the static COM_HESK_PDBUFFERTYPE and
  ///    COM_HESK_ISPDCOMPENSATION of the camera ask for it;
  ///  - in logical multi-camera sessions MTK_RAW_ALGO_FACE_RECTS, at most 10 faces of the master;
  ///  - MTK_RAW_ALGO_STATIC_INFO, a copy of the camera's static bytes,
  ///
  /// and where `isNeedRawAlgo` into `halMeta` MTK_RAW_ALGO_PROCESS_TYPE = 14 and
  /// MTK_CONTROL_RAW_ALGO_ENABLE = 1.
  void updateCaptureRawParameter(NSCam::IMetadata* appMeta, NSCam::IMetadata* halMeta,
                                 NSCam::IMetadata* outMeta);

  /// Writes the frame's 3A state into `outMeta`:
  ///  - HESK_CONTROL_AE_RESULT (22 floats, the order in common/math/AeResult.h), from
  ///    MTK_3A_AE_LUX_INDEX, MTK_3A_AE_EXP_INDEX, MTK_3A_AE_SENSOR_GAIN, MTK_3A_AE_ISP_GAIN and
  ///    ANDROID_SENSOR_EXPOSURE_TIME of `appMeta` and MTK_3A_AE_ADRC_GAIN of `halMeta`;
  ///  - MTK_RAW_ALGO_ISLIGHTENV (1 below lux index 311);
  ///  - MTK_RAW_ALGO_AWB_GAIN_R, MTK_RAW_ALGO_AWB_GAIN_G and MTK_RAW_ALGO_AWB_GAIN_B, the inverse
  ///    of ANDROID_SENSOR_NEUTRAL_COLOR_POINT, infinite without one;
  ///  - MTK_RAW_ALGO_AWB_STATS_SIZE and as many bytes of MTK_RAW_ALGO_AWB_STATS_DATA, from
  ///    MTK_3A_AWB_STATS_SIZE and MTK_3A_AWB_STATS_DATA: zeros where the data has another size;
  ///    empty, with an error record, for a size below 0 or above 73,728;
  ///  - copies: MTK_RAW_ALGO_SENSITIVITY of ANDROID_SENSOR_SENSITIVITY, and the namesakes of
  ///    MTK_3A_AWB_RESULT_INFO, MTK_3A_AWB_OTP_DATA and MTK_3A_AE_CCT_USE_DATA,
  ///    MTK_RAW_ALGO_AWB_RESULT_INFO, MTK_RAW_ALGO_AWB_OTP_DATA and MTK_RAW_ALGO_AE_CCT_USE_DATA.
  ///
  /// Without container it is of `appMeta`. Each is 0 where absent.
  void update3ACaptureRawParameter(NSCam::IMetadata* appMeta, NSCam::IMetadata* halMeta,
                                   NSCam::IMetadata* outMeta);

  /// The camera whose 3A and faces count for a frame: in logical multi-camera sessions
  /// MTK_MULTICAM_REAL_MASTER_ID of `halMeta`; without it, and in other sessions, the first digit
  /// of the device's static ANDROID_LOGICAL_MULTI_CAMERA_PHYSICAL_IDS, -48 where there is none.
  std::int32_t getMulticamMasterID(int deviceId, NSCam::IMetadata* halMeta);

  /// Whether a frame goes through the raw algorithm, by HESK_CONTROL_CURRENTMODE and
  /// HESK_CONTROL_ALGO_OVERRIDE of `appMeta` and HESK_CONTROL_IS_DUAL_SLAVE of `outMeta`. The last
  /// argument does not count.
  static bool isNeedRawAlgo(NSCam::IMetadata* appMeta, NSCam::IMetadata* outMeta, int unused);

  /// Writes the camera's role in the zoom transition to MTK_RAW_ALGO_CAMERA_ROLE.
  void setCameraRole(NSCam::IMetadata* outMeta, int cameraId);

  /// Writes MTK_P1NODE_SCALAR_CROP_REGION of `halMeta` in the shape of the preview, against the
  /// active array as the preview sees it, to MTK_RAW_ALGO_SAT_CROP_REGION. The array is the static
  /// MTK_SENSOR_INFO_ACTIVE_ARRAY_REGION of MTK_MULTICAM_REAL_MASTER_ID of `halMeta`, by default of
  /// the updater's own sensor. Writes nothing, with an error record, without
  /// HESK_CONTROL_CURRENTMODE in `appMeta` or without a crop.
  void setSATCropInfo(NSCam::IMetadata* appMeta, NSCam::IMetadata* halMeta,
                      NSCam::IMetadata* outMeta);

  /// Writes MTK_RAW_ALGO_PDAF_INFO (2,080 bytes, the layout in common/math/PdafRecord.h) from what
  /// the driver of camera `openId` says of its phase-detection pixels. Returns the container's
  /// status; -1, and nothing is written, where there is no such sensor or it has no such pixels.
  int updateSensorPdafInfo(int openId, int isPDComp, int pdBufferType, NSCam::IMetadata* outMeta);

  /// Copies a frame's tuning data, `tuningDataSize` bytes, into a shared buffer of the 3A
  /// information manager and writes the buffer's index to MTK_RAW_ALGO_TUNING_BUFFER_INDEX of
  /// `meta`. Returns whether it did; where no buffer has room nothing is written.
  bool updateTuningData(NSCam::IMetadata* meta, void* tuningData, unsigned int tuningDataSize);

  /// Moves the detected regions of one tag of a result from the coordinates of camera `cameraId` to
  /// those of the app, through the zoom-transition library, at the ratio of `value` to the camera's
  /// field of view. All items are int32:
  ///  - 0xc00e0000, eyes: twice left, right, top, bottom, then an item that stays;
  ///  - 0xc00e0017, a lot: left, top, right, bottom;
  ///  - 0xc00e0014, human bodies: their count, then each as left, top, right, bottom.
  ///
  /// Missing items of the first two are 0; of the bodies those count that are wholly there. Another
  /// tag is an error record.
  void translateResultRegionForHesk(NSCam::IMetadata* result, float value, int cameraId, long tag);

  /// Keeps the preview's size in pixels for `setSATCropInfo`.
  void setPreviewSize(NSCam::MSize size);

  /// Cuts the width or the height of `size` so that it has the aspect ratio of `reference`. Neither
  /// is null.
  void matchAspectRatio(const NSCam::MSize* reference, NSCam::MSize* size);

  /// A debugging aid that writes the metadata of still captures to files. Where the property
  /// vendor.camera.dumprawhifmetadata is true and `meta` is of a still capture
  /// (ANDROID_CONTROL_CAPTURE_INTENT 2) it writes all of `meta` as text to
  ///
  ///     /data/vendor/camera/NAME_metadata_[FRAME]_YYYYMMDDHHMMSS.txt
  ///
  /// in local time. The folder must be there; a file of that name is overwritten, not cut. Does
  /// nothing where the file cannot be opened. `name` is short: a path of more than 99 characters
  /// ends the process. May be called from any thread.
  void dumpMetadata(camera_metadata* meta, const char* name, int frameNumber);

  /// Writes the local time as "20210304050607" and a zero into `out`, which has room for 15
  /// characters; the empty text where there is no local time. Any thread.
  static void getCurrentTime(char* out);

 private:
  friend struct HeskParameterUpdaterInspector;

  explicit HeskParameterUpdater(int instanceId);
  ~HeskParameterUpdater() = default;

  template <int InstanceId>
  static HeskParameterUpdater* slot();

  // Session: what it teaches the updater.
  void chooseMulticamFeatureMode(NSCam::IMetadata* session);
  void recordStreams(const NSCam::IMetadata* session, const ImageStreams& streams,
                     std::int32_t uiModule);

  // Tuning for the calling app and the camera app's mode, each a step of every request.
  // The app type is the event store's, read once a request.
  void update3rdpartyAppControlMeta(NSCam::IMetadata* request, std::string_view appType) const;
  void updateTuningAppName(NSCam::IMetadata* request, std::string_view appType) const;
  void updateProfModeControlMeta(NSCam::IMetadata* request);
  void setDumpPathForHeskDump(int instanceId, NSCam::IMetadata* request);
  int getMulticamMainID(int deviceId);

  // Result regions, kind by kind.
  void translateEyeRegion(NSCam::IMetadata* result, TqcMetaConverter* converter, float ratio,
                          int index);
  void translatLotRegion(NSCam::IMetadata* result, TqcMetaConverter* converter, float ratio,
                         int index);
  void translatHumanBodyRegion(NSCam::IMetadata* result, TqcMetaConverter* converter, float ratio,
                               int index);

  // Still captures: the book of multi-frame captures, and what a capture request carries.
  void updateStillCapture(NSCam::IMetadata* meta, unsigned int requestNo, std::string_view appType,
                          std::int64_t currentMode);
  void bookAnnouncedFrames(const NSCam::IMetadata* meta, unsigned int requestNo, int mainId);
  void bookBurst(unsigned int firstRequestNo, std::int32_t frameCount);
  void writeBurstFrame(NSCam::IMetadata* meta, unsigned int requestNo) const;

  std::int32_t mInstanceId;                              // sensor index, 0 to 10
  bool mHasVideoStream = false;                          // the session has a stream for video
  std::map<std::uint32_t, std::uint32_t> mNonZslFrames;  // latest burst: request to frame index
  std::int32_t mMulticamFeatureMode = 0;  // 0 single camera; 1, 2 kinds of multi-camera
  NSCam::MSize mPreviewSize;
  std::int32_t mCaptureCount = 0;              // capture frames still expected
  std::vector<std::uint32_t> mStreamIds;       // the session's streams, in its map's order
  std::int32_t mPrimaryCameraDiagonalFov = 0;  // degrees
};
