#include "tools/camhook/show/LineDiff.h"

#include <algorithm>
#include <cstddef>

namespace camhook {
namespace {

constexpr std::size_t kMostCells = 10'000'000;  // of the table

/// How many lines what is left of both lists has in common, by the number of lines passed in each.
class CommonLines {
 public:
  CommonLines(const std::vector<std::string>& old, const std::vector<std::string>& fresh)
      : mRowSize(fresh.size() + 1) {
    if ((old.size() + 1) * mRowSize > kMostCells) return;
    mCounts.resize((old.size() + 1) * mRowSize);
    for (std::size_t i = old.size(); i > 0; --i) {
      for (std::size_t j = fresh.size(); j > 0; --j) {
        mCounts[(i - 1) * mRowSize + j - 1] =
            old[i - 1] == fresh[j - 1] ? at(i, j) + 1 : std::max(at(i, j - 1), at(i - 1, j));
      }
    }
  }

  [[nodiscard]] std::size_t at(std::size_t i, std::size_t j) const {
    return mCounts.empty() ? 0 : mCounts[i * mRowSize + j];
  }

 private:
  std::size_t mRowSize;
  std::vector<std::size_t> mCounts;  // empty: too many
};

}  // namespace

std::vector<DiffLine> diffLines(const std::vector<std::string>& old,
                                const std::vector<std::string>& fresh) {
  const CommonLines common(old, fresh);
  std::vector<DiffLine> lines;
  std::size_t i = 0;
  std::size_t j = 0;
  while (i < old.size() || j < fresh.size()) {
    if (i < old.size() && j < fresh.size() && old[i] == fresh[j]) {
      lines.push_back({' ', old[i++]});
      ++j;
    } else if (j == fresh.size() ||
               (i < old.size() && common.at(i + 1, j) >= common.at(i, j + 1))) {
      lines.push_back({'-', old[i++]});
    } else {
      lines.push_back({'+', fresh[j++]});
    }
  }
  return lines;
}

}  // namespace camhook
