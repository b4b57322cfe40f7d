// The styles and scripts of the page; `page/join` writes the definitions.

#pragma once

#include <string_view>

namespace camhook {

/// The text of one element of the page.
struct PageParts {
  std::string_view hash;  // as in a content policy: "sha256-..."
  std::string_view text;
};

PageParts pageStyles();
PageParts pageScripts();

}  // namespace camhook
