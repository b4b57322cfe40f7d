// The stereo settings of the process, as far as the camera app decides on them.

#pragma once

/// Threads: any.
class StereoSettingProvider {
 public:
  /// Tells whether the app wants electronic stabilisation: its value, -1 where it has not said.
  static void setEisEnable(int enable);

  /// Tells the video algorithm that the app chose: its type, -1 where it has not said.
  static void setVideoAlgoType(int type);
};
