// All sensors at work at once, each on a thread, while the app changes its settings.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <barrier>
#include <charconv>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "common/HeskSensorModeControl.h"
#include "host/Phone.h"
#include "tests/support/SensorPipeline.h"
#include "tools/camhook/run/DataRoot.h"

namespace {

constexpr int kSensors = SensorPipeline::kSensors;
constexpr int kFrames = 6;
constexpr std::size_t kChoices = 4;

/// What the app and the system set while the hooks run: every key and property that they read.
/// Texts too long for a string's own room break where two threads meet in one.
struct Setting {
  std::string key;
  std::array<std::string, kChoices> values;
};

const Setting kEvents[] = {
    {"APP_TYPE", {"heskCamera", "engcamera", "CTS", "an app of a type that nobody knows"}},
    {"APP_NAME", {"TikTok", "VideoNight", "SuperMoon", "Production"}},
    {"APP_MODE", {"", "Professional", "a mode that nobody knows", ""}},
    {"HESK_EXP", {"1111111111111111111", "2222222222222222222", "", "3"}},
    {"HESK_ISO", {"100000000", "222222222", "", "3"}},
    {"HESK_EV", {"1.11111111111111111", "-2.22222222222222222", "", "3"}},
    {"HESK_VIDEONRRECOMMAND", {"7", "7", "7", "7"}},  // read under one name alone
};
const Setting kProperties[] = {
    {"ro.product.model.zdm", {"KX0102", "KX0106", "KX0107", "a product that nobody knows"}},
    {"vendor.debug.camera.fps.low", {"", "5", "10", "15"}},
    {"vendor.debug.camera.fps.max", {"", "30", "20", "15"}},
    {"vendor.debug.camera.VideoFlip", {"0", "1", "", "1"}},
    {"vendor.camera.dumprawhifmetadata", {"1", "0", "true", ""}},
};

void choose(host::Phone& phone, std::size_t choice) {
  for (const Setting& event : kEvents) phone.eventStore.set(event.key, event.values[choice]);
  for (const Setting& property : kProperties) {
    phone.properties.set(property.key, property.values[choice]);
  }
}

/// What a frame may come to: an outcome for every choice of settings.
using Outcomes = std::array<FrameOutcome, kChoices>;

Outcomes runAlone(host::Phone& phone, SensorPipeline& pipeline, int frame) {
  Outcomes outcomes;
  for (std::size_t choice = 0; choice < kChoices; ++choice) {
    choose(phone, choice);
    outcomes[choice] = pipeline.run(frame);
  }
  return outcomes;
}

/// Every field is as one of the choices has it: settings change between the steps of a frame.
void expectOneOf(const Outcomes& outcomes, const FrameOutcome& found) {
  std::set<FrameField> fields;
  for (const auto& [field, items] : found) fields.insert(field);
  for (const auto& [field, items] : outcomes.front()) fields.insert(field);
  const auto itemsIn = [](const FrameOutcome& outcome, const FrameField& field) {
    const auto place = outcome.find(field);
    return place != outcome.end() ? &place->second : nullptr;
  };
  for (const FrameField& field : fields) {
    const host::ItemList* items = itemsIn(found, field);
    const bool isKnown = std::ranges::any_of(outcomes, [&](const FrameOutcome& outcome) {
      const host::ItemList* alone = itemsIn(outcome, field);
      return items == nullptr || alone == nullptr ? items == alone : *items == *alone;
    });
    EXPECT_TRUE(isKnown) << field.container << ' ' << std::hex << field.tag;
  }
}

/// Takes the log's records as they come, and of those that name a result's frame its number.
class LogReader {
 public:
  void read(host::Phone& phone) {
    constexpr std::string_view kBefore = "[updateResultMeta] update frameNo ";
    constexpr std::string_view kBehind = " in HESK_CONTROL_REQUESTNO";
    for (const host::LogRecord& record : phone.log.take()) {
      const std::string_view message = record.message;
      if (!message.starts_with(kBefore) || !message.ends_with(kBehind)) continue;
      std::int32_t number = 0;
      std::from_chars(message.begin() + kBefore.size(), message.end(), number);
      numbers.push_back(number);
    }
  }

  std::vector<std::int32_t> numbers;
};

/// A sensor's pipeline, and what each of its frames comes to while no other is under way.
struct Sensor {
  SensorPipeline pipeline;
  std::vector<Outcomes> alone;
};

class PipelineThreads : public testing::Test {
 protected:
  using Work = std::function<void(unsigned int)>;

  PipelineThreads() {
    // Every lock that two threads take puts them in an order in which a race of theirs is not seen.
    host::LogSink::openLevels({});
    mPhone.setObserver(nullptr);
    for (int index = 0; index < kSensors; ++index) {
      Sensor& sensor = mSensors.emplace_back(Sensor{SensorPipeline(index), {}});
      for (int frame = 0; frame < kFrames; ++frame) {
        sensor.alone.push_back(runAlone(mPhone, sensor.pipeline, frame));
      }
    }
  }

  /// Runs all pipelines at once, each as many times. Until they are done, `work` and what always
  /// goes on beside them is repeated; it is handed 0, 1, 2 and on.
  void serve(int times, const Work& work) {
    std::vector<std::thread> others;
    for (const Work& each : {work, Work(decideScenario), Work([this](unsigned int round) {
                               choose(mPhone, round % kChoices);
                             })}) {
      others.emplace_back([this, each] {
        for (unsigned int round = 0; !mDone; ++round) each(round);
      });
    }
    std::vector<std::thread> pipelines;
    for (Sensor& sensor : mSensors) {
      pipelines.emplace_back([this, &sensor, times] { run(sensor, times); });
    }
    for (std::thread& pipeline : pipelines) pipeline.join();
    mDone = true;
    for (std::thread& other : others) other.join();
  }

  camhook::DataRoot mDataRoot{""};
  host::Phone mPhone{SensorPipeline::phoneConfig(mDataRoot.path().string())};
  std::vector<Sensor> mSensors;

 private:
  void run(Sensor& sensor, int times) {
    mStart.arrive_and_wait();
    for (int time = 0; time < times; ++time) {
      int frame = 0;
      for (const Outcomes& alone : sensor.alone) expectOneOf(alone, sensor.pipeline.run(frame++));
    }
  }

  static void decideScenario(unsigned int round) {
    NSCam::IMetadata session;
    const auto streams = std::make_shared<HeskSensorModeControl::StreamInfo>();
    streams->hasVideoConsumer = round % 3 == 0;
    const int sensor = static_cast<int>(round % 2);
    const int scenario =
        HeskSensorModeControl::createInstance(sensor)->decideSensorScenario(&session, streams);
    EXPECT_TRUE(scenario <= 8 || scenario == 255) << scenario;
  }

  std::barrier<> mStart{kSensors};
  std::atomic<bool> mDone = false;
};

TEST_F(PipelineThreads, GiveEveryFrameWhatItGetsAlone) {
  constexpr int kTimes = 10;
  serve(kTimes, [this](unsigned int) { mPhone.openedFiles.take(); });
}

TEST_F(PipelineThreads, LogEveryFrameOnce) {
  constexpr int kTimes = 2;
  host::LogSink::openLevels({'D', 'E', 'I'});
  mPhone.setObserver(&mPhone.effects);
  LogReader reader;
  serve(kTimes, [&](unsigned int) {
    reader.read(mPhone);
    mPhone.effects.take();
  });
  reader.read(mPhone);

  std::vector<std::int32_t> expected;
  for (const Sensor& sensor : mSensors) {
    for (int frame = 0; frame < kFrames; ++frame) {
      expected.insert(expected.end(), kTimes, sensor.pipeline.numberOf(frame));
    }
  }
  std::ranges::sort(reader.numbers);
  EXPECT_EQ(reader.numbers, expected);
}

}  // namespace
