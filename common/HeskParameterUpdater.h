// The per-sensor hooks of the camera HAL.
//
// There is one updater a sensor index, made on first use and kept until the process ends. The
// pipeline obtains it with `createInstance` and hands its hooks the metadata containers that it
// owns; a hook reads them, writes derived tags into them and returns before the pipeline goes on.
//
// Failure: no hook reports any. What cannot be read takes the default stated with the operation,
// else 0, and failures are logged. A null container reads as an empty one, but in the session hook;
// writes to it are skipped.
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

namespace hesk {

/// What kind of session a sensor is configured for. Other positive numbers are multi-camera
/// sessions of no kind known here.
enum class MulticamFeatureMode : std::int32_t {
  singleCamera = 0,
  multicam = 1,
  logicalMulticam = 2,
};

constexpr bool isMulticam(MulticamFeatureMode mode) { return static_cast<std::int32_t>(mode) > 0; }

}  // namespace hesk

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
  /// sensor. Rewrites `sessionMeta`, the app's session parameters, in place, and keeps the kind of
  /// multi-camera session, the streams' ids in the map's order and whether one is for video. What
  /// it reads of a null session is -1. Streams may be null.
  ///
  /// Reads: HESK_CONTROL_EISENABLE, HESK_CONTROL_VIDEOALGOTYPE, COM_HESK_CURRENTUIMODULE (-1 where
  /// absent), MTK_CONTROL_AE_TARGET_FPS_RANGE, HESK_CONTROL_VIDEO_HDR, HESK_CONTROL_STREAM_FLAGS,
  /// the app's 0xc003009a and 0xc003009c; of the streams their usage and size; of the sensor's
  /// static characteristics 0xc008000e; the event store's "APP_TYPE" and "APP_NAME"; the properties
  /// ro.product.model.zdm and vendor.debug.camera.VideoFlip; the camera provider service's cap of
  /// frame rates.
  ///
  /// Writes: MTK_HESK_MULTICAM_ENABLE, MTK_CONTROL_SELECTED_STREAM_ID and the platform's 0x800b000a
  /// always; HESK_CONTROL_EISENABLE, ANDROID_CONTROL_VIDEO_STABILIZATION_MODE,
  /// ANDROID_CONTROL_SCENE_MODE, MTK_STREAMING_FEATURE_HFPS_MODE,
  /// MTK_STREAMING_FEATURE_PIP_DEVICES, MTK_HDR_FEATURE_HDR_MODE, MTK_CONTROL_AE_TARGET_FPS_RANGE,
  /// HESK_CONTROL_FPSLIMITTYPE and the platform's 0x800f0000, 0x80070000 and 0x80070003 as the
  /// session asks. Tells the stereo settings of stabilisation and video algorithm; flips video
  /// streams.
  void updateSessionParams(NSCam::IMetadata* sessionMeta, ImageStreams streams);

  /// The request hook, called once for every capture request, on the updater of the request's
  /// sensor, before the request enters the pipeline. Rewrites `meta`, the request's app metadata,
  /// in place, and keeps the book of burst frames: how many are still to come, and which frame of
  /// the burst a request is. The book keeps the first 1,024 frames of a burst; a longer one is
  /// logged.
  ///
  /// Reads: HESK_CONTROL_FPS_RANGE_MAX, MTK_CONTROL_AE_TARGET_FPS_RANGE, HESK_CONTROL_STREAM_FLAGS,
  /// HESK_CONTROL_CURRENTMODE, COM_HESK_CURRENTUIMODULE, COM_HESK_SCENETYPE,
  /// HESK_CONTROL_VIDEOMODE, HESK_CONTROL_NIGHTMODE, HESK_CONTROL_NATIVEMODE,
  /// HESK_CONTROL_ISSECONDSNAPSHOT, HESK_CONTROL_MOONMODE, HESK_CONTROL_EISENABLE,
  /// HESK_CONTROL_ENGTESTITEM, HESK_CONTROL_MOTIONLEVEL, HESK_CONTROL_COLOURTEMPERATURE,
  /// HESK_CONTROL_ALGO_OVERRIDE, HESK_CONTROL_KEEP_CAPTURE_INTENT, HESK_CONTROL_HISFRAME,
  /// HESK_CONTROL_ZOOM_ZOOM_RATIO, HESK_CONTROL_VIDEO_HDR, ANDROID_CONTROL_CAPTURE_INTENT,
  /// ANDROID_CONTROL_ENABLE_ZSL, ANDROID_CONTROL_AWB_MODE, ANDROID_FLASH_MODE,
  /// ANDROID_SENSOR_EXPOSURE_TIME (ns), ANDROID_SENSOR_SENSITIVITY,
  /// ANDROID_STATISTICS_FACE_DETECT_MODE; the device's static
  /// ANDROID_LOGICAL_MULTI_CAMERA_PHYSICAL_IDS; the event store's "APP_TYPE", "APP_NAME" and
  /// "APP_MODE"; the properties ro.product.model.zdm, vendor.debug.camera.fps.low and
  /// vendor.debug.camera.fps.max; the camera provider service's cap of frame rates; the local time.
  ///
  /// Writes always: MTK_CONTROL_SELECTED_STREAM_ID, and MTK_CONTROL_RAW_TYPE, mostly without item.
  /// On still captures (ANDROID_CONTROL_CAPTURE_INTENT 2): MTK_HESK_STILL_CAPTURE,
  /// MTK_HESK_CAPTURE_COUNT, MTK_HESK_FRAME_COUNT, MTK_HESK_FRAME_INDEX, MTK_HESK_NON_ZSL_CAPTURE,
  /// MTK_HESK_NO_VIDEO_STREAM, MTK_HESK_SUPER_NIGHT_ON, MTK_HAL_REQUEST_CAPTURE_FLAG0,
  /// MTK_HAL_REQUEST_CAPTURE_FLAG1, HESK_CONTROL_DUMPPATH (the local time as text with its zero),
  /// HESK_CONTROL_MULTICAM_FEATURE_MODE; a burst's count of frames goes to 3A. As the request, its
  /// app and product ask: MTK_CONTROL_AE_TARGET_FPS_RANGE, HESK_CONTROL_FPSLIMITTYPE,
  /// ANDROID_CONTROL_SCENE_MODE, ANDROID_CONTROL_VIDEO_STABILIZATION_MODE,
  /// ANDROID_STATISTICS_FACE_DETECT_MODE, ANDROID_CONTROL_CAPTURE_INTENT and
  /// ANDROID_CONTROL_ENABLE_ZSL (int32 items both), HESK_EISSTATE, HESK_CONTROL_EXPTIME (ns),
  /// HESK_CONTROL_ISO, MTK_CONTROL_CAPTURE_REMOSAIC_EN, MTK_HESK_MULTICAM_ENABLE,
  /// MTK_HDR_FEATURE_HDR_MODE, MTK_RAW_ALGO_DIAGONAL_FOV (degrees).
  ///
  /// Sets the event store's "APP_NAME" (the tuning profile) and "APP_MODE" and, as decimal texts,
  /// "MTK_EXPTIME" (ns), "MTK_ISO", "HESK_COLOURTEMPERATURE", "MTK_AWBMODE", "HESK_CURRENTUIMODE",
  /// "HESK_ISSECONDSNAPSHOT" and, always, "HESK_MOTIONLEVEL".
  void updateRequestMeta(NSCam::IMetadata* meta, unsigned int requestNo);

  /// The result hook, called once for every result, on the updater of the result's sensor. Adds to
  /// `result`, the result's metadata.
  ///
  /// Reads: COM_HESK_SCENETYPE, HESK_CONTROL_PAIR_SOURCE, HESK_CONTROL_PAIR_INPUT,
  /// MTK_3A_AE_LUX_INDEX, the platform's 0x8006001a, ANDROID_SENSOR_SENSITIVITY,
  /// MTK_3A_AE_CCT_USE_DATA; the event store's "APP_NAME" and, in brackets what stands for a text
  /// that is no such number, "HESK_ISO" (100), "HESK_EXP" (0), "HESK_EV" (0) and
  /// "HESK_VIDEONRRECOMMAND" (0).
  ///
  /// Writes always: HESK_CONTROL_EXPTIME (1000 times "HESK_EXP"), HESK_CONTROL_ISO,
  /// HESK_CONTROL_EV, MTK_RAW_ALGO_SENSITIVITY, HESK_CONTROL_REQUESTNO,
  /// MTK_RAW_ALGO_AE_CCT_USE_DATA. As the result and its app ask: HESK_RESULT_PAIR_FIRST,
  /// HESK_RESULT_PAIR_SECOND, MTK_HESK_RESULT_LUX_INDEX, HESK_FEEDBACK_VIDEONRRECOMMEND. Sets the
  /// event store's "PREVIEW_SCENEMODE" to "128" or "0" where there is a scene type.
  void updateResultMeta(NSCam::IMetadata* result, unsigned int requestNo);

  /// The capture hook, called once for every still-capture frame that goes through the multi-frame
  /// raw algorithms, on the updater of the sensor that opened the pipeline. `appMeta` is the
  /// frame's app metadata with its 3A results, `halMeta` its HAL metadata, `outMeta` what the raw
  /// algorithms are handed.
  ///
  /// Reads, besides what the operations below read: HESK_CONTROL_CURRENTMODE,
  /// COM_HESK_CURRENTUIMODULE and HESK_CONTROL_ZOOM_ZOOM_RATIO of `appMeta`;
  /// MTK_HAL_REQUEST_SENSOR_ID, MTK_MULTICAM_MASTER_SLAVE_ID, MTK_P1NODE_SCALAR_CROP_REGION and
  /// MTK_P1NODE_CAPTURE_VALUE64 of `halMeta`; of the capturing camera's static characteristics
  /// MTK_SENSOR_INFO_ACTIVE_ARRAY_REGION, COM_HESK_ISPDCOMPENSATION, COM_HESK_PDBUFFERTYPE and
  /// MTK_RAW_ALGO_STATIC_INFO; the lens shading of 3A, or the default one; in logical multi-camera
  /// sessions the master camera's faces.
  ///
  /// Writes to `outMeta`, besides what the operations below write:
  /// ANDROID_STATISTICS_LENS_SHADING_MAP (from 3A 17 x 13 points of 4 channels, else whatever the
  /// default-shading module returns), HESK_CONTROL_CURRENT_CAMERA_ID (-1 where unknown),
  /// HESK_CONTROL_IS_DUAL_SLAVE, MTK_RAW_ALGO_CAPTURE_VALUE64, MTK_RAW_ALGO_PHYSICAL_ZOOM_RATIO,
  /// MTK_RAW_ALGO_FACE_RECTS (10 at most), MTK_RAW_ALGO_STATIC_INFO. Where the frame goes through
  /// the raw algorithm, to `halMeta`: MTK_RAW_ALGO_PROCESS_TYPE and MTK_CONTROL_RAW_ALGO_ENABLE.
  void updateCaptureRawParameter(NSCam::IMetadata* appMeta, NSCam::IMetadata* halMeta,
                                 NSCam::IMetadata* outMeta);

  /// Writes the frame's 3A state into `outMeta`, every tag on every call. What is read is 0 where
  /// absent.
  ///
  /// Reads of `appMeta`: MTK_3A_AE_LUX_INDEX, MTK_3A_AE_EXP_INDEX, MTK_3A_AE_SENSOR_GAIN (1024 is
  /// 1x), MTK_3A_AE_ISP_GAIN (4096 is 1x), ANDROID_SENSOR_EXPOSURE_TIME (ns),
  /// ANDROID_SENSOR_SENSITIVITY, ANDROID_SENSOR_NEUTRAL_COLOR_POINT, MTK_3A_AWB_RESULT_INFO,
  /// MTK_3A_AWB_OTP_DATA, MTK_3A_AWB_STATS_SIZE (bytes), MTK_3A_AWB_STATS_DATA,
  /// MTK_3A_AE_CCT_USE_DATA; of `halMeta`: MTK_3A_AE_ADRC_GAIN (1000 is 1x).
  ///
  /// Writes: HESK_CONTROL_AE_RESULT (the floats of common/math/AeResult.h), MTK_RAW_ALGO_ISLIGHTENV
  /// (1 below lux index 311), MTK_RAW_ALGO_AWB_GAIN_R, MTK_RAW_ALGO_AWB_GAIN_G and
  /// MTK_RAW_ALGO_AWB_GAIN_B (infinite without a neutral point of three items),
  /// MTK_RAW_ALGO_AWB_RESULT_INFO, MTK_RAW_ALGO_SENSITIVITY, MTK_RAW_ALGO_AWB_OTP_DATA (4 floats),
  /// MTK_RAW_ALGO_AWB_STATS_SIZE and as many bytes of MTK_RAW_ALGO_AWB_STATS_DATA (zeros where the
  /// data is of another size; none, with an error record, for a size below 0 or above 73,728),
  /// MTK_RAW_ALGO_AE_CCT_USE_DATA.
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

  /// Writes MTK_RAW_ALGO_PDAF_INFO (2,080 bytes, the layout in common/updater/PdafRecord.h) from
  /// what the driver of camera `openId` says of its phase-detection pixels. Returns the container's
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
  /// Missing items of the first two are 0; of the bodies those count that are wholly there. As many
  /// regions are written back as the library has left. Another tag is an error record.
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

  // Tuning for the calling app and the camera app's mode, each a step of every request. The request
  // number does not count.
  void update3rdpartyAppControlMeta(NSCam::IMetadata* request, unsigned int requestNo);
  void updateTuningAppName(NSCam::IMetadata* request, unsigned int requestNo);
  void updateProfModeControlMeta(NSCam::IMetadata* request, unsigned int requestNo);

  // Steps of still-capture requests. The dump path's device does not count.
  void setDumpPathForHeskDump(int deviceId, NSCam::IMetadata* request);
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
  hesk::MulticamFeatureMode mMulticamFeatureMode = hesk::MulticamFeatureMode::singleCamera;
  NSCam::MSize mPreviewSize;
  std::int32_t mCaptureCount = 0;              // capture frames still expected
  std::vector<std::uint32_t> mStreamIds;       // the session's streams, in its map's order
  std::int32_t mPrimaryCameraDiagonalFov = 0;  // degrees
};
