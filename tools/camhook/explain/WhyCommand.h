// `camhook why`: tags after one call, explained.

#pragma once

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "tools/camhook/explain/Answer.h"
#include "tools/camhook/explain/Input.h"
#include "tools/camhook/show/Terminal.h"

namespace camhook {

struct WhyOptions {
  std::string call;               // from 1, or "last"
  std::vector<std::string> tags;  // or "return"
  std::string container;          // empty: the one that the call writes
  std::string want;               // as JSON; empty: not given
  bool all = false;
  bool json = false;
};

struct WhyQuestion {
  Question question;
  std::vector<Asked> asked;
};

/// Reads a scenario and what is asked of it. Throws InputError.
WhyQuestion readQuestion(std::string_view text, const WhyOptions& options);

/// Answers. Returns the exit status: 1 where nothing gives what is wanted, else 0. Throws
/// InputError.
int why(std::ostream& out, const WhyQuestion& asking, const WhyOptions& options, Style style);

}  // namespace camhook
