// The detected faces of the simulated phone.

#include "platform/FaceDetection.h"

#include <algorithm>
#include <string>

#include "host/Observer.h"
#include "host/Phone.h"

namespace {

using NSCam::FaceRecord;

class SimulatedFaces final : public NSCam::IFDContainer {
 public:
  explicit SimulatedFaces(const char* user) : mUser(user) {}

  void queryLatest(std::int32_t sensor, FaceRecord& record) override {
    host::observe([&] { return host::ServiceRead{host::placeOf(sensor, "faces")}; });
    host::observe([&] {
      return host::Effect{"faces.query", {{"sensor", sensor}, {"user", mUser}}};
    });
    const auto& faces = host::Phone::current().config.deviceOrDefault(sensor).faces;
    record.count = static_cast<std::int32_t>(faces.size());
    std::copy_n(faces.begin(), std::min(faces.size(), FaceRecord::kCapacity), record.faces.begin());
  }

 private:
  std::string mUser;
};

}  // namespace

std::unique_ptr<NSCam::IFDContainer> NSCam::IFDContainer::createInstance(const char* user,
                                                                         int /*option*/) {
  host::observe([] { return host::ServiceRead{"faceDetection"}; });
  if (!host::Phone::current().config.faceDetection) return nullptr;
  return std::make_unique<SimulatedFaces>(user);
}
