// Reads the phone of a scenario.

#pragma once

#include "host/PhoneConfig.h"
#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/Json.h"

namespace camhook {

/// Reads the object "platform". Throws InputError.
host::PhoneConfig platformFromJson(const Json& json, const Place& place);

}  // namespace camhook
