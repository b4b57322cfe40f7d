// An entry of a metadata dump: a head, then the values in rows.
//
//   android.control.captureIntent (1000d): byte[1]
//     [STILL_CAPTURE ]

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/IMetadata.h"
#include "tools/camhook/input/Json.h"

namespace camhook {

struct DumpHead {
  std::string_view title;  // the name and the number: "android.control.awbMode (1000b)"
  std::string_view name;   // the phone's own; only the number identifies the tag
  std::uint32_t tag = 0;
  std::string_view type;  // "byte", "int32", "float", "int64", "double" or "rational"
  std::size_t count = 0;
};

/// Returns the head at the end of a line, if there is one.
std::optional<DumpHead> findDumpHead(std::string_view line);

/// Returns the values of the row at the end of a line, if there is one. A space follows each value.
std::optional<std::string_view> findDumpRow(std::string_view line);

class DumpEntry {
 public:
  explicit DumpEntry(const DumpHead& head);

  void addRow(std::string_view row);

  /// True once there are as many values as the head announces.
  [[nodiscard]] bool isComplete() const { return mSeen >= mCount; }

  [[nodiscard]] std::uint32_t tag() const { return mTag; }

  /// The name and the number: "android.control.awbMode (1000b)".
  [[nodiscard]] const std::string& title() const { return mTitle; }

  /// The entry with the phone's type. Four int32 of a tag that is a rect in the catalogue are one
  /// rect. Throws InputError if a scenario cannot have the entry. `isCutOff`: the dump ends in it.
  [[nodiscard]] NSCam::IMetadata::IEntry metadataEntry(bool isCutOff) const;

  /// A reason to doubt that `entry` has the catalogue's meaning on the phone; empty if there is
  /// none.
  [[nodiscard]] std::string warning(const NSCam::IMetadata::IEntry& entry) const;

 private:
  void checkCount(bool isCutOff) const;

  std::string mTitle;
  std::string mName;
  std::uint32_t mTag;
  std::string mType;
  std::size_t mCount;
  std::size_t mSeen = 0;
  Json::List mItems;
};

}  // namespace camhook
