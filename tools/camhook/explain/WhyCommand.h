// `camhook why`: one tag after one call, explained.

#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

#include "tools/camhook/explain/Input.h"
#include "tools/camhook/show/Terminal.h"

namespace camhook {

struct WhyOptions {
  std::string call;  // from 1, or "last"
  std::string tag;
  std::string container;  // empty: the one that the call writes
  std::string want;       // as JSON; empty: not given
  bool all = false;
  bool json = false;
};

/// Reads a scenario and what is asked of it. Throws InputError.
Question readQuestion(std::string_view text, const WhyOptions& options);

/// Answers. Returns the exit status: 1 where nothing gives what is wanted, else 0. Throws
/// InputError.
int why(std::ostream& out, const Question& question, const WhyOptions& options, Style style);

}  // namespace camhook
