#include "tools/camhook/input/PlatformReader.h"

#include <array>
#include <charconv>
#include <ctime>
#include <iomanip>
#include <sstream>
#include <string>

#include "tools/camhook/input/ObjectReader.h"
#include "tools/camhook/input/ScenarioKeys.h"

namespace camhook {
namespace {

/// Hands every item of a list and its place to `use`.
template <typename Use>
void forEachItem(const Json& list, const Place& place, Use use) {
  if (!list.is_array()) place.fail("must be a list");
  for (std::size_t i = 0; i < list.size(); ++i) use(list[i], place[i]);
}

/// Reads a list into an array; what the list is too short for stays as it is.
template <typename T, std::size_t Size, typename ReadItem>
void readList(std::array<T, Size>& target, const Json& list, const Place& place,
              ReadItem readItem) {
  std::size_t count = 0;
  forEachItem(list, place, [&](const Json& item, const Place& itemPlace) {
    if (count == Size) place.fail("more than " + std::to_string(Size) + " items");
    target[count++] = readItem(item, itemPlace);
  });
}

host::SensorConfig::Pair pairFromJson(const Json& json, const Place& place) {
  host::SensorConfig::Pair pair{};
  if (!json.is_array() || json.size() != pair.size()) place.fail("must be a pair [a, b]");
  readList(pair, json, place, integerFromJson<std::int32_t>);
  return pair;
}

host::TextMap textsFromJson(const Json& json, const Place& place) {
  if (!json.is_object()) place.fail("must be an object from text to text");
  host::TextMap texts;
  for (const auto& [key, value] : json.items()) {
    if (!value.is_string()) place[key].fail("must be a text");
    texts.emplace(key, value.get<std::string>());
  }
  return texts;
}

/// A time such as 2021-03-04T05:06:07, as it stands on a calendar and a clock.
std::tm clockFromJson(const Json& json, const Place& place) {
  constexpr const char* kFormat = "%Y-%m-%dT%H:%M:%S";
  constexpr std::size_t kLength = 19;

  std::tm time{};
  if (json.is_string()) {
    const auto& text = json.get_ref<const std::string&>();
    std::istringstream in(text);
    in >> std::get_time(&time, kFormat);
    std::ostringstream again;
    again << std::put_time(&time, kFormat);
    // Through UTC, so that days that no month has are noticed and no time zone gets in the way.
    std::tm normal = time;
    const bool onCalendar = timegm(&normal) != -1 && normal.tm_mday == time.tm_mday;
    if (in && text.size() == kLength && again.str() == text && onCalendar) return normal;
  }
  place.fail("must be a time such as \"2021-03-04T05:06:07\"");
}

host::SensorConfig sensorFromJson(const Json& json, const Place& place) {
  const ObjectReader reader(json, place, keysOf("sensor"));
  host::SensorConfig sensor;
  reader.readInto(sensor.index, "index");
  reader.readInto(sensor.pdSupported, "pdSupported");
  reader.ifPresent("pdWords", [&](const Json& list, const Place& at) {
    readList(sensor.pdWords, list, at, integerFromJson<std::int32_t>);
  });
  reader.ifPresent("pdLeft", [&](const Json& list, const Place& at) {
    readList(sensor.pdLeft, list, at, pairFromJson);
  });
  reader.ifPresent("pdRight", [&](const Json& list, const Place& at) {
    readList(sensor.pdRight, list, at, pairFromJson);
  });
  reader.ifPresent("pdTail", [&](const Json& list, const Place& at) {
    readList(sensor.pdTail, list, at, integerFromJson<std::int32_t>);
  });
  return sensor;
}

host::FaceConfig faceFromJson(const Json& json, const Place& place) {
  const ObjectReader reader(json, place, keysOf("face"));
  host::FaceConfig face;
  reader.readInto(face.rect, "rect");
  reader.readInto(face.score, "score");
  return face;
}

host::DeviceConfig deviceFromJson(const Json& json, const Place& place) {
  const ObjectReader reader(json, place, keysOf("device"));
  host::DeviceConfig device;
  reader.readInto(device.statics, "static");
  reader.ifPresent("hal3a", [&](const Json& hal3A, const Place& at) {
    const ObjectReader inner(hal3A, at, keysOf("hal3a"));
    inner.readInto(device.hal3A.available, "available");
    inner.readInto(device.hal3A.shadingBase, "shadingBase");
  });
  reader.ifPresent("defaultShading", [&](const Json& shading, const Place& at) {
    device.hasDefaultShading = !shading.is_null();
    if (device.hasDefaultShading) device.defaultShading = metadataFromJson(shading, at);
  });
  reader.ifPresent("faces", [&](const Json& faces, const Place& at) {
    forEachItem(faces, at, [&](const Json& face, const Place& faceAt) {
      device.faces.push_back(faceFromJson(face, faceAt));
    });
  });
  reader.ifPresent("sensor", [&](const Json& sensor, const Place& at) {
    device.sensor = sensorFromJson(sensor, at);
  });
  return device;
}

std::int32_t deviceIdFromText(const std::string& text, const Place& place) {
  std::int32_t id = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, id);
  if (error != std::errc() || stop != end || std::to_string(id) != text) {
    place.fail("a device's key is its number");
  }
  return id;
}

host::SatConfig satFromJson(const Json& json, const Place& place) {
  const ObjectReader reader(json, place, keysOf("sat"));
  host::SatConfig sat;
  reader.ifPresent("cameras", [&](const Json& cameras, const Place& at) {
    forEachItem(cameras, at, [&](const Json& camera, const Place& cameraAt) {
      const ObjectReader inner(camera, cameraAt, keysOf("satCamera"));
      auto& added = sat.cameras.emplace_back();
      inner.readInto(added.id, "id");
      inner.readInto(added.role, "role");
      inner.readInto(added.fov, "fov");
    });
  });
  reader.ifPresent("configured", [&](const Json& configured, const Place& at) {
    sat.configured = integerFromJson<std::int32_t>(configured, at);
  });
  reader.readInto(sat.defaultRole, "defaultRole");
  reader.ifPresent("translate", [&](const Json& translate, const Place& at) {
    const ObjectReader inner(translate, at, keysOf("satTranslate"));
    inner.readInto(sat.translate.scale, "scale");
    inner.readInto(sat.translate.dx, "dx");
    inner.readInto(sat.translate.dy, "dy");
  });
  return sat;
}

host::TuningBufferConfig tuningBufferFromJson(const Json& json, const Place& place) {
  const ObjectReader reader(json, place, keysOf("tuningBuffer"));
  host::TuningBufferConfig buffer;
  const auto readNumber = [&](std::optional<std::int32_t>& target, const char* key) {
    reader.ifPresent(key, [&](const Json& number, const Place& at) {
      target = integerFromJson<std::int32_t>(number, at);
    });
  };
  readNumber(buffer.fd, "fd");
  readNumber(buffer.bufferSize, "bufferSize");
  readNumber(buffer.bufferIndex, "bufferIndex");
  return buffer;
}

}  // namespace

host::PhoneConfig platformFromJson(const Json& json, const Place& place) {
  const ObjectReader reader(json, place, keysOf("platform"));
  host::PhoneConfig phone;
  reader.ifPresent("properties", [&](const Json& texts, const Place& at) {
    phone.properties = textsFromJson(texts, at);
  });
  reader.ifPresent("eventStore", [&](const Json& texts, const Place& at) {
    phone.eventStore = textsFromJson(texts, at);
  });
  reader.ifPresent("devices", [&](const Json& devices, const Place& at) {
    if (!devices.is_object()) at.fail("must be an object from device number to device");
    for (const auto& [key, device] : devices.items()) {
      const Place deviceAt = at[key];
      phone.devices[deviceIdFromText(key, deviceAt)] = deviceFromJson(device, deviceAt);
    }
  });
  reader.readInto(phone.sensorList, "sensorList");
  reader.readInto(phone.hal3AModule, "hal3aModule");
  reader.readInto(phone.defaultShadingModule, "defaultShadingModule");
  reader.readInto(phone.faceDetection, "faceDetection");
  reader.ifPresent("sat",
                   [&](const Json& sat, const Place& at) { phone.sat = satFromJson(sat, at); });
  reader.ifPresent("provider", [&](const Json& provider, const Place& at) {
    const ObjectReader inner(provider, at, keysOf("provider"));
    inner.readInto(phone.provider.emplace().fpsCap, "fpsCap");
  });
  reader.ifPresent("tuningBuffer", [&](const Json& buffer, const Place& at) {
    phone.tuningBuffer = tuningBufferFromJson(buffer, at);
  });
  reader.ifPresent(
      "clock", [&](const Json& clock, const Place& at) { phone.clock = clockFromJson(clock, at); });
  return phone;
}

}  // namespace camhook
