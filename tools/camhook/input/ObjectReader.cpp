#include "tools/camhook/input/ObjectReader.h"

#include "tools/camhook/input/WholeNumber.h"

namespace camhook {

void ObjectReader::read(const Value& value, std::optional<std::tm>& target) const {
  target = timeFrom(value.isText() ? value.text() : "");
  if (!target) value.failUnless("a time such as \"2021-03-04T05:06:07\"");
}

void ObjectReader::read(const Value& value, MetadataArgument& target) const {
  if (value.isNull() && !mObject.find(kMetaOfKey)) return;
  readMetadata(value, value.isOnlyChecked() ? nullptr : &target.emplace());
}

void ObjectReader::read(const Value& value, DefaultShading& target) const {
  target.isThere = !value.isNull();
  if (target.isThere) readMetadata(value, &target.values);
}

void ObjectReader::read(const Value& value, NamedTexts& target) const {
  if (!value.isObject()) return value.failUnless("an object from text to text");
  value.forEachMember([&](const Key& key, const Value& member) {
    readValue(member, target.texts[std::string(key.text())]);
  });
}

void ObjectReader::read(const Value& value,
                        std::map<std::int32_t, host::DeviceConfig>& target) const {
  if (!value.isObject()) return value.failUnless("an object from device number to device");
  value.forEachMember([&](const Key& key, const Value& device) {
    const std::int32_t id = wholeNumber<std::int32_t>(key.text()).value_or(0);
    if (std::to_string(id) != key.text()) key.fail("expected a device number");
    read(device, target[id]);
  });
}

void ObjectReader::read(const Value& value, WideTag& target) const {
  if (!value.isText()) return value.failUnless("a text");
  const auto tag = wideTagFrom(value.text());
  if (!tag) value.fail("unknown tag " + value.shown() + nearTags(value.text()));
  target.tag = tag.value_or(0);
}

void ObjectReader::read(const Value& value, BlockSize& target) const {
  readValue(value, target.bytes);
  if (target.bytes > BlockSize::kMost) {
    value.fail("a block has at most " + std::to_string(BlockSize::kMost) + " bytes, not " +
               value.shown());
  }
}

void ObjectReader::read(const Value& value, ScenarioFrame::Calls& /*target*/) const {
  if (!value.isList()) value.failUnless("a list");
}

}  // namespace camhook
