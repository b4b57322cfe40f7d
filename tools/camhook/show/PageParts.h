// What the page is drawn with: the sources beside `page/join`, which makes C++ of them.

#pragma once

#include <string_view>
#include <vector>

namespace camhook {

/// Texts that stand one behind the other in one element of the page.
struct PageParts {
  std::string_view hash;  // of them all, as a content policy has it: "sha256-..."
  std::vector<std::string_view> texts;
};

PageParts pageStyles();
PageParts pageScripts();

}  // namespace camhook
