#include "platform/StereoSettingProvider.h"

#include "host/Phone.h"

void StereoSettingProvider::setEisEnable(int enable) {
  host::Phone::current().effects.add([&] {
    return host::Effect{"stereo.setEisEnable", {{"value", enable}}};
  });
}

void StereoSettingProvider::setVideoAlgoType(int type) {
  host::Phone::current().effects.add([&] {
    return host::Effect{"stereo.setVideoAlgoType", {{"value", type}}};
  });
}
