// The containers that are measured beside one another, behind the same few operations: set the one
// item of a key, get the item of one that is there, look for one that is not.

#pragma once

#include <libcamera/controls.h>

#include <cstdint>
#include <map>
#include <memory>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/IMetadata.h"

namespace bench {

class Metadata {
 public:
  using Key = std::uint32_t;
  static Key keyOf(std::uint32_t tag) { return tag; }

  void set(Key tag, std::int32_t item) {
    NSCam::IMetadata::IEntry entry(tag);
    entry.push_back(item, NSCam::Type2Type<std::int32_t>{});
    mMetadata.update(tag, std::move(entry));
  }
  [[nodiscard]] std::int32_t get(Key tag) const {
    return mMetadata.entryFor(tag).itemAt(0, NSCam::Type2Type<std::int32_t>{});
  }
  [[nodiscard]] bool has(Key tag) const { return !mMetadata.entryFor(tag).isEmpty(); }

 private:
  NSCam::IMetadata mMetadata;
};

/// The controls that libcamera's container must know of before it takes them.
class KnownControls {
 public:
  using Control = libcamera::Control<std::int32_t>;

  static const Control* get(std::uint32_t number) {
    auto& control = all().mControls[number];
    if (control == nullptr) {
      control = std::make_unique<Control>(number, "control");
      all().mIds[number] = control.get();
    }
    return control.get();
  }
  static const libcamera::ControlIdMap& ids() { return all().mIds; }

 private:
  static KnownControls& all() {
    static KnownControls controls;
    return controls;
  }

  std::map<std::uint32_t, std::unique_ptr<Control>> mControls;
  libcamera::ControlIdMap mIds;
};

/// libcamera's container by number, as the HAL's is used.
class ControlList {
 public:
  using Key = std::uint32_t;
  static Key keyOf(std::uint32_t tag) { return KnownControls::get(tag)->id(); }

  void set(Key number, std::int32_t item) { mList.set(number, libcamera::ControlValue(item)); }
  [[nodiscard]] std::int32_t get(Key number) const { return mList.get(number).get<std::int32_t>(); }
  // Its get() writes a line to the log where there is nothing.
  [[nodiscard]] bool has(Key number) const { return mList.contains(number); }

 private:
  libcamera::ControlList mList{KnownControls::ids()};
};

/// The same by control object, which compilers turn into code in the caller's place.
class TypedControlList {
 public:
  using Key = const KnownControls::Control*;
  static Key keyOf(std::uint32_t tag) { return KnownControls::get(tag); }

  void set(Key control, std::int32_t item) { mList.set(*control, item); }
  [[nodiscard]] std::int32_t get(Key control) const { return mList.get(*control).value_or(0); }
  [[nodiscard]] bool has(Key control) const { return mList.get(*control).has_value(); }

 private:
  libcamera::ControlList mList{KnownControls::ids()};
};

/// A standard map from tag to items.
template <typename Map>
class MapOf {
 public:
  using Key = std::uint32_t;
  static Key keyOf(std::uint32_t tag) { return tag; }

  void set(Key tag, std::int32_t item) { mMap[tag].assign(1, item); }
  [[nodiscard]] std::int32_t get(Key tag) const { return mMap.find(tag)->second.front(); }
  [[nodiscard]] bool has(Key tag) const { return mMap.find(tag) != mMap.end(); }

 private:
  Map mMap;
};

using OrderedMap = MapOf<std::map<std::uint32_t, std::vector<std::int32_t>>>;
using HashMap = MapOf<std::unordered_map<std::uint32_t, std::vector<std::int32_t>>>;

}  // namespace bench
