// What two lists of lines have in common, and what only one of them has.

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace camhook {

struct DiffLine {
  char mark = ' ';  // '-': only the old list has it, '+': only the new one
  std::string_view text;
};

/// All lines of both lists, in order, those in common once. The texts are those of the lists. As
/// few lines as possible are marked, unless the lists are longer than anyone would compare by eye.
std::vector<DiffLine> diffLines(const std::vector<std::string>& old,
                                const std::vector<std::string>& fresh);

}  // namespace camhook
