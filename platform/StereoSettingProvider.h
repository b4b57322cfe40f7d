// The stereo settings that the camera app controls.

#pragma once

/// Threads: any.
class StereoSettingProvider {
 public:
  /// Sets electronic stabilisation to the value that the app requested; -1 if it requested none.
  static void setEisEnable(int enable);

  /// Sets the type of video algorithm that the app requested; -1 if it requested none.
  static void setVideoAlgoType(int type);
};
