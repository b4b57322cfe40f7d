// The phone and the call of a question, with changes.

#pragma once

#include <optional>
#include <vector>

#include "host/Phone.h"
#include "tools/camhook/explain/Question.h"

namespace camhook {

/// The phone with the changes that affect it; nullopt if no change does. Throws InputError if a
/// scenario cannot have such a phone.
std::optional<host::PhoneConfig> changedPhone(const Question& question,
                                              const std::vector<Change>& changes);

/// `call` with the changes of its arguments and metadata. Its containers must be complete (metaOf
/// applied). Throws InputError if a scenario cannot have such a call.
Call changedCall(const Question& question, Call call, const std::vector<Change>& changes);

/// Sets the event-store values and properties that are changed.
void setTexts(host::Phone& phone, const std::vector<Change>& changes);

}  // namespace camhook
