#include "playback/HostedOutputs.h"

#include <gtest/gtest.h>

#include "helpers/InGerman.h"
#include "helpers/TestInstrument.h"

namespace Sonarello {
namespace {

/// An audio system that does not ask for a buffer.
class StillDriver : public IAudioDriver {
 public:
  struct Stream : IAudioStream {
    explicit Stream(int f) : frames(f) {}
    [[nodiscard]] int BufferFrames() const override { return frames; }
    [[nodiscard]] int LatencyFrames() const override { return frames; }
    int frames;
  };
  StillDriver(std::string n, std::vector<std::string> devices, bool f)
      : name(std::move(n)), names(std::move(devices)), fails(f) {}
  [[nodiscard]] std::string ApiName() const override { return name; }
  [[nodiscard]] std::vector<std::string> DeviceNames() override { return names; }
  [[nodiscard]] std::unique_ptr<IAudioStream> Start(int device, int frames, TAudioCallback) override {
    EXPECT_EQ(device, 0);
    EXPECT_EQ(frames, 441) << "10 ms";
    if (fails) throw TAudioError("busy");
    return std::make_unique<Stream>(frames);
  }

 private:
  std::string name;
  std::vector<std::string> names;
  bool fails;
};

/// Audio systems, and a host that may play through them.
struct Systems {
  void Add(const std::string& name, std::vector<std::string> devices, bool fails = false) {
    drivers.push_back(std::make_unique<StillDriver>(name, std::move(devices), fails));
  }
  std::vector<std::unique_ptr<IAudioDriver>> drivers;  // outlive the host's audio
  TVSTInstruments host;
};

TEST(HostedOutputs, TheFirstDeviceThatCanPlayDoes) {
  Systems systems;
  systems.Add("empty", {});
  systems.Add("busy", {"card"}, true);
  systems.Add("free", {"speakers", "phones"});
  systems.Add("further", {"others"});
  EXPECT_EQ(StartFirstAudio(systems.host, systems.drivers), "free: speakers");
  EXPECT_TRUE(systems.host.AudioPlaying);
}

TEST(HostedOutputs, WithoutADeviceAudioRunsUnheard) {
  Systems systems;
  systems.Add("busy", {"card"}, true);
  EXPECT_EQ(StartFirstAudio(systems.host, systems.drivers), "null: no sound");
  EXPECT_EQ(systems.drivers.size(), 2U);
  EXPECT_TRUE(systems.host.AudioPlaying);
  const InGerman german;
  Systems none;
  EXPECT_EQ(StartFirstAudio(none.host, none.drivers), "null: kein Ton");
}

TEST(HostedOutputs, EverySlotOfTheHostIsOneOfTheRoutes) {
  TVSTInstruments host;
  host.LoadInstrument(2, std::make_unique<TestInstrument>());
  const std::vector<TInstrumentSlot> slots = SlotsOf(host);
  ASSERT_EQ(slots.size(), host.VSTiArray().size());
  for (std::size_t n = 0; n < slots.size(); ++n) {
    EXPECT_EQ(slots[n].IsFilled(), n == 2);
    EXPECT_EQ(slots[n].MidiRoutingIdx, -1);
  }
  EXPECT_EQ(slots[2].Name, host.VSTiArray()[2].Name);
  EXPECT_EQ(slots[2].Handle, host.VSTiArray()[2].Handle);
  EXPECT_EQ(slots[2].UniqueID, host.VSTiArray()[2].uniqueID);
}

}  // namespace
}  // namespace Sonarello
