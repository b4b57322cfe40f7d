// A scenario's phone and the call in question, with changes.

#pragma once

#include <vector>

#include "host/Phone.h"
#include "tools/camhook/explain/Input.h"

namespace camhook {

/// The phone with a clock that stands: what it says must not differ between runs.
host::PhoneConfig withStandingClock(host::PhoneConfig config);

/// The phone with the changes that concern it. Throws InputError where it cannot be so.
host::PhoneConfig changedPhone(const Question& question, const std::vector<Change>& changes);

/// The question's call with the changes that concern it. Throws InputError where it cannot be so.
ScenarioCall changedCall(const Question& question, const std::vector<Change>& changes);

/// Sets the event-store values and properties that are changed, as at the start of the call.
void setTexts(host::Phone& phone, const std::vector<Change>& changes);

}  // namespace camhook
