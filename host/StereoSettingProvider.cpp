#include "platform/StereoSettingProvider.h"

#include "host/Observer.h"

void StereoSettingProvider::setEisEnable(int enable) {
  host::observe([&] { return host::Effect{"stereo.setEisEnable", {{"value", enable}}}; });
}

void StereoSettingProvider::setVideoAlgoType(int type) {
  host::observe([&] { return host::Effect{"stereo.setVideoAlgoType", {{"value", type}}}; });
}
