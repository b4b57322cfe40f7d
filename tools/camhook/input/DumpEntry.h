// An entry of a dump of metadata: a head, and its values in rows.
//
//   android.control.captureIntent (1000d): byte[1]
//     [STILL_CAPTURE ]

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "host/MetadataAccess.h"
#include "platform/IMetadata.h"

namespace camhook {

struct DumpHead {
  std::string_view name;  // the phone's: the number alone tells which tag it is
  std::uint32_t tag = 0;
  std::string_view type;  // "byte", "int32", "float", "int64", "double" or "rational"
  std::size_t count = 0;
};

/// The head that a line ends with.
std::optional<DumpHead> dumpHeadOf(std::string_view line);

/// The values of the row that a line ends with, each with a blank behind it.
std::optional<std::string_view> dumpRowOf(std::string_view line);

/// An entry on its way from its head to its last row.
class DumpEntry {
 public:
  explicit DumpEntry(const DumpHead& head);

  void addRow(std::string_view row);

  /// Whether there are as many values as the head counts.
  [[nodiscard]] bool isComplete() const { return mSeen >= mCount; }

  [[nodiscard]] std::uint32_t tag() const { return mTag; }

  /// The phone's name and the number: "android.control.awbMode (1000b)".
  [[nodiscard]] std::string title() const;

  /// Why a scenario cannot have this entry; empty where it can. Whether the dump is cut off here.
  [[nodiscard]] std::string problem(bool isCutOff) const;

  /// The entry in its own type, but four int32 of what the catalogue has as a rectangle are one.
  [[nodiscard]] NSCam::IMetadata::IEntry take() const;

  /// What makes it doubtful that `taken` means on the phone what the catalogue says; else empty.
  [[nodiscard]] std::string doubt(const NSCam::IMetadata::IEntry& taken) const;

 private:
  void addValue(std::string_view text);

  std::string mName;
  std::uint32_t mTag;
  std::string mType;
  std::size_t mCount;
  std::size_t mSeen = 0;
  host::ItemList mItems;  // none of a type that scenarios do not have
  std::string mProblem;   // of the first value that cannot be read
};

}  // namespace camhook
