// Tuning of a request for the calling app and the camera app's mode. The request hook calls these
// operations in their places; none of them changes a request yet.

#include "common/HeskParameterUpdater.h"

void HeskParameterUpdater::update3rdpartyAppControlMeta(NSCam::IMetadata* /*request*/,
                                                        unsigned int /*requestNo*/) {}

void HeskParameterUpdater::updateTuningAppName(NSCam::IMetadata* /*request*/,
                                               unsigned int /*requestNo*/) {}

void HeskParameterUpdater::updateProfModeControlMeta(NSCam::IMetadata* /*request*/,
                                                     unsigned int /*requestNo*/) {}

void HeskParameterUpdater::setDumpPathForHeskDump(int /*instanceId*/,
                                                  NSCam::IMetadata* /*request*/) {}

int HeskParameterUpdater::getMulticamMainID(int deviceId) { return deviceId; }
