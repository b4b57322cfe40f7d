// The per-sensor hooks of the camera HAL. The pipeline passes its own metadata containers to the
// hooks, which read them, write derived tags into them and return before the pipeline continues.
// docs/hooks.md, installed with the documentation, lists what each step of a hook reads and writes.
//
// The hooks return no status: their failures are only logged. An absent value is read as 0 if no
// other default is stated. A null container is read as empty, except where `updateSessionParams`
// states otherwise; writes to it are skipped.
//
// Threads: `createInstance` may be called from any thread. The hooks of one updater are called from
// one thread at a time; hooks of different updaters may run at once. They share the provider
// service's handle, protected by a lock, and the event store: a request hook writes "APP_NAME" in
// several steps and reads it back, so requests of two sensors at once can see each other's name.
// Updaters are destroyed at process exit; no hook may run then.

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

/// Gives the replay tool and the tests access to the private members.
struct HeskParameterUpdaterInspector;

class __attribute__((visibility("default"))) HeskParameterUpdater {
 public:
  /// The highest sensor index that has an updater; the lowest is 0.
  static constexpr int kMaxInstanceId = 10;

  using IMetadata = NSCam::IMetadata;

  /// The configured streams of a session by stream id.
  using ImageStreams = std::unordered_map<std::int64_t, android::sp<NSCam::v3::IImageStreamInfo>>;

  HeskParameterUpdater(const HeskParameterUpdater&) = delete;
  HeskParameterUpdater& operator=(const HeskParameterUpdater&) = delete;

  /// Returns the updater of sensor `instanceId`, which the caller does not own. If the index is not
  /// 0 to 10, returns null and writes a debug record. The first call for an index constructs the
  /// updater and computes the sensor's diagonal field of view from its static characteristics.
  static HeskParameterUpdater* createInstance(int instanceId);

  /// The session hook, for every stream configuration, on the updater of the configured sensor.
  /// `sessionMeta` contains the app's session parameters; a stream may be null. Always writes the
  /// multi-camera flag, the selected stream and tag 0x800b000a; other tags when the session, app or
  /// product requires them. Passes stabilisation and video algorithm to the stereo settings, flips
  /// video streams on request. In UI module 3 every stream is flipped and stored as a video stream.
  /// Stores the kind of multi-camera session (kept if the device has none), the low 32 bits of the
  /// stream ids in map order, and whether there is a video stream.
  ///
  /// HESK_CONTROL_EISENABLE, HESK_CONTROL_VIDEOALGOTYPE and COM_HESK_CURRENTUIMODULE are -1 if
  /// absent. From a null session these three tags, both bounds of MTK_CONTROL_AE_TARGET_FPS_RANGE
  /// and the app's flip flag (0xc003009c) are read as -1, all others as absent.
  void updateSessionParams(IMetadata* sessionMeta, ImageStreams streams);

  /// The request hook, for every capture request, on the updater of the request's sensor, before
  /// the request enters the pipeline. `meta` is the request's app metadata. Always writes the
  /// selected stream and MTK_CONTROL_RAW_TYPE, the latter usually without items; on still captures
  /// (ANDROID_CONTROL_CAPTURE_INTENT 2) capture flags and counts, the frame's burst position and
  /// the dump time stamp; other tags when the request, app or product requires them. Exposure times
  /// are in ns, frame rates in frames per second. Defaults other than 0: ZSL on, zoom 1, video mode
  /// 1 for the fps limit; for the tuning profile UI module, EISENABLE and mode -1 (all bits set).
  ///
  /// In UI module 8, unless HESK_CONTROL_KEEP_CAPTURE_INTENT is 1, makes the request a preview:
  /// writes ANDROID_CONTROL_CAPTURE_INTENT 1 and ANDROID_CONTROL_ENABLE_ZSL 0 as int32 items,
  /// although they are byte tags.
  ///
  /// Tracks the latest burst, at most its first 1,024 frames (a longer one is logged), and the
  /// number of capture frames still expected; sends the size of a burst to 3A. Sets the event
  /// store's "APP_NAME" (the tuning profile) and "APP_MODE" for the OEM camera app; for every app
  /// manual settings, UI module, second snapshot and motion level (by default -1) as decimal texts.
  void updateRequestMeta(IMetadata* meta, unsigned int requestNo);

  /// The result hook, for every result, on the updater of the result's sensor. Always writes
  /// exposure time (1000 times the event store's "HESK_EXP"), ISO, EV, sensitivity, request number
  /// and the AE colour-temperature flag; the result pair and lux value according to
  /// HESK_CONTROL_PAIR_SOURCE; the video noise-reduction recommendation when "APP_NAME" is
  /// "VideoNight". Event store values without a leading number take a default: "HESK_ISO" 100,
  /// "HESK_EXP", "HESK_EV" and "HESK_VIDEONRRECOMMAND" 0. Sets "PREVIEW_SCENEMODE" to "128" or "0"
  /// when the result has a scene type.
  void updateResultMeta(IMetadata* result, unsigned int requestNo);

  /// The capture hook, for every still-capture frame of the multi-frame raw algorithms, on the
  /// updater of the sensor that the pipeline opened. `appMeta` is the frame's app metadata with its
  /// 3A results, `halMeta` its HAL metadata; `outMeta` is passed to the algorithms. Writes the lens
  /// shading map (17 x 13 points of 4 channels from 3A, or what the default-shading module
  /// returns), the capturing camera (-1 if unknown), its zoom ratio and static bytes, and the
  /// frame's 64-bit value; in multi-camera sessions the flag of a slave camera, in logical
  /// multi-camera sessions at most 10 faces of the master camera. Calls
  /// `update3ACaptureRawParameter`, and depending on mode and sensor `setSATCropInfo`,
  /// `setCameraRole` and `updateSensorPdafInfo`. If `isNeedRawAlgo` returns true, marks the frame
  /// for the raw algorithm in `halMeta`.
  void updateCaptureRawParameter(IMetadata* appMeta, IMetadata* halMeta, IMetadata* outMeta);

  /// Writes the 3A state of a frame to `outMeta`, every tag on every call: AE, sensitivity and AWB.
  /// AWB gains are infinite without a neutral point of three items. AWB statistics are zeros if the
  /// data does not have the announced size, and empty, with an error record, for a size outside 0
  /// to 73,728 bytes.
  void update3ACaptureRawParameter(IMetadata* appMeta, IMetadata* halMeta, IMetadata* outMeta);

  /// Returns the camera whose 3A and faces are used for a frame: MTK_MULTICAM_REAL_MASTER_ID of
  /// `halMeta` in logical multi-camera sessions; otherwise, or if it is absent, the first item of
  /// the device's ANDROID_LOGICAL_MULTI_CAMERA_PHYSICAL_IDS (a character; 0 if absent) minus 48.
  std::int32_t getMulticamMasterID(int deviceId, IMetadata* halMeta);

  /// Returns true if a frame goes through the raw algorithm, according to HESK_CONTROL_CURRENTMODE
  /// and HESK_CONTROL_ALGO_OVERRIDE of `appMeta` and HESK_CONTROL_IS_DUAL_SLAVE of `outMeta`. The
  /// last argument is unused.
  static bool isNeedRawAlgo(IMetadata* appMeta, IMetadata* outMeta, int);

  /// Writes the camera's role in the zoom transition to MTK_RAW_ALGO_CAMERA_ROLE.
  void setCameraRole(IMetadata* outMeta, int cameraId);

  /// Writes the crop region of `halMeta` to MTK_RAW_ALGO_SAT_CROP_REGION, cut to the aspect ratio
  /// of the preview and relative to the active array of the real master camera (by default the
  /// updater's sensor), which is cut to the same ratio. Writes only an error record if
  /// HESK_CONTROL_CURRENTMODE of `appMeta` or the crop region is absent.
  void setSATCropInfo(IMetadata* appMeta, IMetadata* halMeta, IMetadata* outMeta);

  /// Writes the layout of the phase-detection pixels of camera `openId`, which its sensor driver
  /// reports for sensor mode 1, to MTK_RAW_ALGO_PDAF_INFO (2,080 bytes). `pdBufferType` is copied
  /// into the record; `isPDComp` is only logged. Returns the container's status; -1 without a write
  /// if there is no such sensor or it has no phase detection.
  int updateSensorPdafInfo(int openId, int isPDComp, int pdBufferType, IMetadata* outMeta);

  /// Copies `tuningDataSize` bytes of tuning data into a shared buffer of the 3A information
  /// manager and writes the buffer's index to MTK_RAW_ALGO_TUNING_BUFFER_INDEX of `meta`. Returns
  /// true if the data was copied, also if `meta` is null and no index is written. Returns false,
  /// without a write, if the buffer is missing or too small, or `tuningData` is null.
  bool updateTuningData(IMetadata* meta, void* tuningData, unsigned int tuningDataSize);

  /// Translates the detected regions of one result tag from the coordinates of camera `cameraId` to
  /// those of the app. Passes to the zoom-transition library the camera's index, -1 if it does not
  /// list the camera, and the ratio of `value` to the field of view that it returns for this index.
  /// The int32 items are:
  ///  - 0xc00e0000, eyes: twice left, right, top, bottom, then an item that is kept;
  ///  - 0xc00e0017, lot: left, top, right, bottom;
  ///  - 0xc00e0014, human bodies: their number, then left, top, right, bottom of each.
  ///
  /// Missing items of eyes and lot are 0; only bodies whose data is complete are used. The tag gets
  /// as many regions as the zoom-transition library returns. Any other tag only causes an error
  /// record.
  void translateResultRegionForHesk(IMetadata* result, float value, int cameraId, long tag);

  /// Stores the preview size in pixels for `setSATCropInfo`.
  void setPreviewSize(NSCam::MSize size);

  /// Reduces the width or height of `size` to the aspect ratio of `reference`. Does not change
  /// `size` if the ratios are equal or one of them is 0 / 0. Neither may be null.
  void matchAspectRatio(const NSCam::MSize* reference, NSCam::MSize* size);

  /// Debugging aid: if the property vendor.camera.dumprawhifmetadata is true and `meta` is of a
  /// still capture, writes `meta` as text to
  /// /data/vendor/camera/NAME_metadata_[FRAME]_YYYYMMDDHHMMSS.txt in local time. The directory must
  /// exist. An existing file is overwritten but not truncated. Writes nothing if `meta` is null or
  /// the file cannot be opened; aborts the process if the path has more than 99 characters. Any
  /// thread.
  void dumpMetadata(camera_metadata* meta, const char* name, int frameNumber);

  /// Writes the local time as "20210304050607" to `out`, which must hold 15 characters; an empty
  /// text if it is not available. Follows changes of the time zone. Any thread.
  static void getCurrentTime(char* out);

 private:
  friend struct HeskParameterUpdaterInspector;

  explicit HeskParameterUpdater(int instanceId);
  ~HeskParameterUpdater() = default;

  template <int InstanceId>
  static HeskParameterUpdater* slot();

  // Steps of the session and the request hook.
  void chooseMulticamFeatureMode(IMetadata* session);
  void recordStreams(const IMetadata* session, const ImageStreams& streams, std::int32_t uiModule);
  void update3rdpartyAppControlMeta(IMetadata* request, unsigned int);
  void updateTuningAppName(IMetadata* request, unsigned int);
  void updateProfModeControlMeta(IMetadata* request, unsigned int);
  void updateStillCapture(IMetadata* meta, unsigned int requestNo, std::string_view appType,
                          std::int64_t currentMode);
  void recordAnnouncedFrames(const IMetadata* meta, unsigned int requestNo, int mainId);
  void recordBurst(unsigned int firstRequestNo, std::int32_t frameCount);
  void writeBurstFrame(IMetadata* meta, unsigned int requestNo) const;
  void setDumpPathForHeskDump(int, IMetadata* request);
  int getMulticamMainID(int deviceId);

  // Result regions by kind.
  void translateEyeRegion(IMetadata* result, TqcMetaConverter* converter, float ratio, int index);
  void translatLotRegion(IMetadata* result, TqcMetaConverter* converter, float ratio, int index);
  void translatHumanBodyRegion(IMetadata* result, TqcMetaConverter* converter, float ratio,
                               int index);

  std::int32_t mInstanceId;                              // sensor index, 0 to 10
  bool mHasVideoStream = false;                          // for an encoder; in UI module 3 any
  std::map<std::uint32_t, std::uint32_t> mNonZslFrames;  // latest burst: request to frame index
  std::int32_t mMulticamFeatureMode = 0;                 // of the session; tags/Values.h
  NSCam::MSize mPreviewSize;
  std::int32_t mCaptureCount = 0;          // capture frames still expected
  std::vector<std::uint32_t> mStreamIds;   // of the session, in the map's order
  std::int32_t mPrimaryCameraDiagonalFov;  // degrees
};
