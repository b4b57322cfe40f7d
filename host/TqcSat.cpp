// The multi-camera library of the simulated phone.

#include "platform/TqcSat.h"

#include <algorithm>
#include <string>
#include <utility>

#include "host/Phone.h"

namespace {

/// Returns a translated coordinate or side, wrapped to 32 bits.
std::int32_t translated(std::int32_t value, std::int32_t scale, std::int32_t offset) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(value) *
                                       static_cast<std::uint32_t>(scale) +
                                   static_cast<std::uint32_t>(offset));
}

class SimulatedConverter final : public TqcMetaConverter {
 public:
  float GetSensorFovByCameraIdx(int index) override {
    const auto& cameras = host::Phone::current().config.sat.cameras;
    host::observe(
        [&] { return host::ServiceRead{"sat.cameras[" + std::to_string(index) + "].fov"}; });
    if (index < 0 || static_cast<std::size_t>(index) >= cameras.size()) return 0.0F;
    return cameras[static_cast<std::size_t>(index)].fov;
  }

  void TranslateResultRegion(std::vector<TagInfo>& regions, float ratio, int index) override {
    host::observe([] { return host::ServiceRead{"sat.translate"}; });
    host::observe([&] {
      std::vector<host::Effect::Region> inputs;
      inputs.reserve(regions.size());
      for (const TagInfo& region : regions) inputs.push_back({region.kind, region.input});
      return host::Effect{"sat.translate",
                          {{"ratio", ratio}, {"index", index}, {"regions", std::move(inputs)}}};
    });
    const auto& [scale, dx, dy] = host::Phone::current().config.sat.translate;
    for (TagInfo& region : regions) {
      region.output = {translated(region.input.x, scale, dx), translated(region.input.y, scale, dy),
                       translated(region.input.w, scale, 0), translated(region.input.h, scale, 0)};
    }
  }
};

class SimulatedSat final : public TqcSat {
 public:
  [[nodiscard]] std::vector<Camera> cameras() const override {
    host::observe([] { return host::ServiceRead{"sat.cameras"}; });
    host::observe([] { return host::ServiceRead{"sat.configured"}; });
    const host::SatConfig& sat = host::Phone::current().config.sat;
    const auto listed = static_cast<std::int32_t>(sat.cameras.size());
    std::vector<Camera> configured;
    for (const auto& camera : sat.cameras) configured.push_back({camera.role, camera.id});
    configured.resize(
        static_cast<std::size_t>(std::clamp(sat.configured.value_or(listed), 0, listed)));
    return configured;
  }

  [[nodiscard]] std::int32_t defaultRole() const override {
    host::observe([] { return host::ServiceRead{"sat.defaultRole"}; });
    return host::Phone::current().config.sat.defaultRole;
  }

  [[nodiscard]] TqcMetaConverter& converter() override { return mConverter; }

 private:
  SimulatedConverter mConverter;
};

SimulatedSat sSat;

}  // namespace

TqcSat& TqcSat::GetInstance() { return sSat; }
