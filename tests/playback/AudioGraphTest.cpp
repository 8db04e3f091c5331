#include "playback/AudioGraph.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <thread>

#include "helpers/Allocations.h"
#include "helpers/InGerman.h"
#include "playback/HostedAudio.h"
#include "playback/VSTInstruments.h"

namespace Sonarello {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::FloatEq;

constexpr float Small = 0x1p-18F;  // some 260,000 frames stay below full scale, each exact

/// Counts its frames upwards: frame n is n * Step on the left and -n * Step on the right.
class Ramp : public IHostedInstrument {
 public:
  explicit Ramp(float step = Small, std::string n = "Ramp") : Step(step), name(std::move(n)) {}
  std::string Name() const override { return name; }
  std::int32_t UniqueID() const override { return 77; }
  int InitDelay() const override { return 5; }
  void SendMidiData(std::uint8_t status, std::uint8_t data1, std::uint8_t data2) override {
    Got.insert(Got.end(), {status, data1, data2});
  }
  void SendSysex(std::span<const std::uint8_t> message) override {
    Got.insert(Got.end(), message.begin(), message.end());
  }
  void Render(std::span<float> stereo) override {
    Blocks.push_back(static_cast<int>(stereo.size() / 2));
    for (std::size_t i = 0; i < stereo.size(); i += 2, ++Frame) {
      stereo[i] = static_cast<float>(Frame) * Step;
      stereo[i + 1] = -stereo[i];
    }
  }
  void Reset() override { Frame = 0; }
  std::vector<std::uint8_t> GetChunk() const override { return {}; }
  bool SetChunk(std::span<const std::uint8_t>) override { return false; }

  float Step;
  std::int64_t Frame = 0;
  std::vector<int> Blocks;
  std::vector<std::uint8_t> Got;

 private:
  std::string name;
};

/// Always the same sample.
class Constant : public Ramp {
 public:
  explicit Constant(float v) : value(v) {}
  void Render(std::span<float> stereo) override { std::ranges::fill(stereo, value); }

 private:
  float value;
};

class Halver : public IHostedEffect {
 public:
  explicit Halver(float f = 0.5F, float o = 0) : factor(f), offset(o) {}
  std::string Name() const override { return "Halver"; }
  std::int32_t UniqueID() const override { return 88; }
  int InitDelay() const override { return 3; }
  int Program() const override { return -1; }
  void Process(std::span<float> stereo) override {
    for (float& sample : stereo) sample = sample * factor + offset;
  }
  void Reset() override { ++Resets; }
  std::vector<std::uint8_t> GetChunk() const override { return {}; }
  bool SetChunk(std::span<const std::uint8_t>) override { return false; }
  int Resets = 0;

 private:
  float factor, offset;
};

/// A device whose buffers are asked for by the test.
class HandDriver : public IAudioDriver {
 public:
  struct Stream : IAudioStream {
    explicit Stream(HandDriver& d) : driver(d) {}
    ~Stream() override { driver.Callback = nullptr; }
    int BufferFrames() const override { return driver.Buffer; }
    int LatencyFrames() const override { return driver.Latency; }
    HandDriver& driver;
  };
  std::string ApiName() const override { return "hand"; }
  std::vector<std::string> DeviceNames() override { return Names; }
  std::unique_ptr<IAudioStream> Start(int device, int, TAudioCallback callback) override {
    if (device != 0) throw TAudioError("no such device");
    Callback = std::move(callback);
    return std::make_unique<Stream>(*this);
  }
  /// The device asks for so many frames.
  std::vector<float> Ask(int frames) {
    std::vector<float> stereo(static_cast<std::size_t>(frames) * 2, 9.0F);
    Callback(stereo);
    return stereo;
  }
  std::vector<float> Ask() { return Ask(Buffer); }

  std::vector<std::string> Names{"speakers"};
  int Buffer = 100;
  int Latency = 300;
  TAudioCallback Callback;
};

constexpr int Reserve = 200;  // with the buffer, 300 frames are kept queued

class Playing : public testing::Test {
 protected:
  void SetUp() override {
    graph.SetInstrument(0, &ramp);
    graph.StartDevice(driver, 0, 100, Reserve);
  }
  static std::vector<float> RampFrom(int frame, int count) {
    std::vector<float> stereo;
    for (int f = frame; f < frame + count; ++f)
      for (const float sign : {1.0F, -1.0F}) stereo.push_back(sign * static_cast<float>(f) * Small);
    return stereo;
  }
  std::vector<float> Silence(int frames) {
    return std::vector<float>(static_cast<std::size_t>(frames) * 2, 0.0F);
  }
  void Put(int frames) { EXPECT_TRUE(graph.PutNewData(frames * BytesPerFrame)); }

  Ramp ramp;
  HandDriver driver;
  AudioGraph graph;
};

TEST(AudioBlocks, TenMillisecondsAre441Frames) {
  for (int start = 0; start < 30; ++start) {
    int bytes = 0;
    for (int t = start; t < start + 10; ++t) bytes += BytesOfMillisecond(t);
    EXPECT_EQ(bytes, 441 * BytesPerFrame);
  }
  EXPECT_EQ(BytesOfMillisecond(0), 360);
  EXPECT_EQ(BytesOfMillisecond(9), 352);
}

TEST(AudioGraph, RendersASecondToTheFrame) {
  AudioGraph graph;
  Ramp ramp;
  graph.SetInstrument(4, &ramp);
  std::vector<float> block(90);
  for (int t = 0; t < 1000; ++t)
    graph.Render(
        std::span(block).first(static_cast<std::size_t>(BytesOfMillisecond(t)) / sizeof(float)));
  EXPECT_EQ(ramp.Frame, 44100);
  EXPECT_FLOAT_EQ(block[86], 44099.0F * Small);
}

TEST(AudioGraph, IsSilentWithoutInstruments) {
  AudioGraph graph;
  std::vector<float> block(88, 5.0F);
  graph.Render(block);
  EXPECT_THAT(block, Each(0.0F));
}

TEST(AudioGraph, AddsTheInstruments) {
  AudioGraph graph;
  Constant a(0.25F), b(0.5F), c(0.125F);
  graph.SetInstrument(0, &a);
  graph.SetInstrument(1, &b);
  graph.SetInstrument(4, &c);
  std::vector<float> block(88);
  graph.Render(block);
  EXPECT_THAT(block, Each(0.875F));
  graph.SetInstrument(1, nullptr);
  graph.Render(block);
  EXPECT_THAT(block, Each(0.375F));
}

TEST(AudioGraph, PassesTheMixThroughTheEffectsInTheOrderOfTheirSlots) {
  AudioGraph graph;
  Constant one(1.0F);
  Halver half, shift(1, 0.25F);
  graph.SetInstrument(0, &one);
  graph.SetEffect(0, &half);
  graph.SetEffect(1, &shift);
  std::vector<float> block(88);
  graph.Render(block);
  EXPECT_THAT(block, Each(0.75F));
  graph.SetBypass(0, true);
  graph.Render(block);
  EXPECT_THAT(block, Each(1.25F)) << "off line nothing is clipped";
  graph.SetEffect(1, nullptr);
  graph.Render(block);
  EXPECT_THAT(block, Each(1.0F));
}

TEST(AudioGraph, RefusesSlotsThatItDoesNotHave) {
  AudioGraph graph;
  EXPECT_THROW(graph.SetInstrument(5, nullptr), std::out_of_range);
  EXPECT_THROW(graph.SetInstrument(-1, nullptr), std::out_of_range);
  EXPECT_THROW(graph.SetEffect(2, nullptr), std::out_of_range);
}

TEST(AudioGraph, RendersLongBuffersWithoutAGap) {
  AudioGraph graph;
  Ramp ramp;
  graph.SetInstrument(0, &ramp);
  std::vector<float> block(2 * 5000);
  graph.Render(block);
  for (std::size_t f = 0; f < 5000; ++f) ASSERT_EQ(block[2 * f], static_cast<float>(f) * Small);
}

TEST_F(Playing, RendersABlockOfAMillisecondInOnePiece) {
  for (int t = 0; t < 3; ++t) graph.PutNewData(BytesOfMillisecond(t));
  EXPECT_THAT(ramp.Blocks, ElementsAre(45, 44, 44));
  EXPECT_EQ(graph.QueuedBytes(), 360U + 352U + 352U);
}

TEST_F(Playing, GathersItsReserveBeforeItBegins) {
  Put(299);
  EXPECT_EQ(driver.Ask(), Silence(100));
  EXPECT_EQ(graph.QueuedBytes(), 299U * 8);
  Put(1);
  EXPECT_EQ(driver.Ask(), RampFrom(0, 100));
  EXPECT_EQ(driver.Ask(), RampFrom(100, 100));
  EXPECT_EQ(graph.Underruns(), 0);
}

TEST_F(Playing, GoesOnWithoutAGapWhileItIsFed) {
  Put(300);
  for (int n = 0; n < 2000; ++n) {
    ASSERT_EQ(driver.Ask(), RampFrom(n * 100, 100));
    Put(100);
  }
  EXPECT_EQ(graph.Underruns(), 0);
  EXPECT_EQ(graph.SkippedSamples(), 0);
}

TEST_F(Playing, CountsEachBreakOfTheSoundOnceAndGathersAgain) {
  Put(350);
  for (int n = 0; n < 3; ++n) EXPECT_EQ(driver.Ask(), RampFrom(n * 100, 100));
  auto expected = RampFrom(300, 50);
  expected.resize(200, 0.0F);
  EXPECT_EQ(driver.Ask(), expected);
  EXPECT_EQ(graph.Underruns(), 1);
  Put(200);
  EXPECT_EQ(driver.Ask(), Silence(100));
  Put(100);
  EXPECT_EQ(driver.Ask(), RampFrom(350, 100));
  EXPECT_EQ(graph.Underruns(), 1);
}

TEST_F(Playing, LeavesOutSoundThatHasBecomeFarTooLate) {
  Put(300);
  driver.Ask();
  Put(5000);
  // 5200 frames wait where 300 do.
  EXPECT_EQ(driver.Ask(), RampFrom(5000, 100));
  EXPECT_EQ(graph.SkippedSamples(), 2 * 4900);
}

TEST_F(Playing, ThrowsAwayWhatIsQueuedWhenToldSo) {
  Put(400);
  driver.Ask();
  graph.ClearQueue();
  EXPECT_EQ(graph.QueuedBytes(), 0U);
  EXPECT_EQ(driver.Ask(), Silence(100));
  EXPECT_EQ(graph.Underruns(), 0) << "nothing ran dry";
  Put(300);
  EXPECT_EQ(driver.Ask(), RampFrom(400, 100));
}

TEST_F(Playing, TellsWhenTheQueueIsFullAndGoesOnAfterwards) {
  int put = 0;
  while (graph.PutNewData(352)) put += 44;
  EXPECT_GT(put, 44100) << "more than a second fits";
  EXPECT_FALSE(graph.PutNewData(352));
  EXPECT_EQ(ramp.Frame, put + 88) << "the instruments keep the song's time all the same";
  graph.ClearQueue();
  driver.Ask();
  Put(300);
}

TEST_F(Playing, HasNoUseForBrokenFrames) {
  EXPECT_TRUE(graph.PutNewData(7));
  EXPECT_TRUE(graph.PutNewData(0));
  EXPECT_TRUE(graph.PutNewData(-8));
  EXPECT_EQ(ramp.Frame, 0);
  EXPECT_TRUE(graph.PutNewData(15));
  EXPECT_EQ(ramp.Frame, 1);
}

TEST_F(Playing, ClipsWhatGoesToTheDevice) {
  for (const auto& [in, out] : {std::pair{1.5F, 1.0F},
                                {-7.0F, -1.0F},
                                {0.5F, 0.5F},
                                {std::numeric_limits<float>::infinity(), 0.0F},
                                {std::numeric_limits<float>::quiet_NaN(), 0.0F}}) {
    Constant loud(in);
    graph.SetInstrument(0, &loud);
    graph.ClearQueue();
    driver.Ask();
    Put(300);
    EXPECT_THAT(driver.Ask(), Each(out)) << in;
    graph.SetInstrument(0, nullptr);
  }
}

TEST_F(Playing, TellsTheHighestSampleSinceItWasAskedLast) {
  Constant loud(-1.25F), quiet(0.5F);
  graph.SetInstrument(0, &loud);
  Put(10);
  graph.SetInstrument(0, &quiet);
  Put(10);
  EXPECT_FLOAT_EQ(graph.TakePeak(), 1.25F);
  Put(10);
  EXPECT_FLOAT_EQ(graph.TakePeak(), 0.5F);
  EXPECT_FLOAT_EQ(graph.TakePeak(), 0);
  graph.SetInstrument(0, nullptr);
}

TEST_F(Playing, CountsTheBytesOfEveryBuffer) {
  driver.Ask(100);
  driver.Ask(64);
  EXPECT_EQ(graph.AudioMixerBytesCnt, 164 * 8);
}

TEST_F(Playing, LetsTheSongStartWhenItsBuffersHavePassed) {
  graph.DelayStart = 2;
  driver.Ask();
  EXPECT_FALSE(graph.SwitchToMidiPlayThread);
  EXPECT_EQ(graph.DelayStart, 1);
  driver.Ask();
  EXPECT_TRUE(graph.SwitchToMidiPlayThread);
  graph.SwitchToMidiPlayThread = false;
  driver.Ask();
  EXPECT_FALSE(graph.SwitchToMidiPlayThread);
  EXPECT_EQ(graph.DelayStart, 0);
}

TEST_F(Playing, KnowsItsLatency) {
  EXPECT_EQ(graph.AudioBufferSamples, 300);
  EXPECT_EQ(graph.AudioBufferBytes, 2400);
  EXPECT_EQ(graph.AudioBufferTime, 7);
  EXPECT_EQ(graph.AudioLatencySamples, 300);
  EXPECT_EQ(graph.AudioLatencyBytes, 2400);
  EXPECT_EQ(graph.AudioLatencyTime, 7);
  EXPECT_EQ(graph.AudioTotalLatencyTime, 14) << "13.6 ms";
  graph.StopDevice();
  EXPECT_EQ(graph.AudioBufferBytes + graph.AudioLatencyBytes + graph.AudioTotalLatencyTime, 0);
}

TEST_F(Playing, CallsNoDeviceLessLateThanItsBuffer) {
  driver.Latency = 0;
  graph.StartDevice(driver, 0, 100, Reserve);
  EXPECT_EQ(graph.AudioLatencySamples, 100);
}

TEST_F(Playing, IsLateByExactlyItsLatency) {
  // One frame stands out; it is heard after as many frames of the device as were queued before it.
  for (int n = 0; n < 100; ++n) {
    Put(10);
    if (n % 10 == 9) driver.Ask();
  }
  const std::int64_t next = ramp.Frame;
  int passed = 0;
  for (bool heard = false; !heard; passed += 100) {
    for (int n = 0; n < 10; ++n) Put(10);
    const auto stereo = driver.Ask();
    for (std::size_t f = 0; f < 100; ++f)
      if (stereo[2 * f] == static_cast<float>(next) * Small) {
        heard = true;
        passed += static_cast<int>(f);
      }
  }
  EXPECT_EQ(passed - 100, 300 - 100) << "from the first callback after the push";
}

TEST_F(Playing, RefusesADeviceWhoseBufferIsLongerThanTheQueue) {
  driver.Buffer = 40000;
  try {
    graph.StartDevice(driver, 0, 100, Reserve);
    FAIL();
  } catch (const TAudioError& error) {
    EXPECT_STREQ(error.what(), "The buffer of the audio device is too large.");
  }
  EXPECT_FALSE(graph.IsPlaying());
  const InGerman german;
  EXPECT_THROW(graph.StartDevice(driver, 0, 100, Reserve), TAudioError);
}

TEST_F(Playing, HasNoDeviceAfterAFailedStart) {
  EXPECT_THROW(graph.StartDevice(driver, 1, 100), TAudioError);
  EXPECT_FALSE(graph.IsPlaying());
  Put(10);
}

TEST_F(Playing, StartsAfreshOnTheNextDevice) {
  Put(400);
  driver.Ask();
  HandDriver other;
  other.Buffer = 50;
  graph.StartDevice(other, 0, 50, 50);
  EXPECT_EQ(driver.Callback, nullptr);
  EXPECT_EQ(graph.QueuedBytes(), 0U);
  Put(100);
  EXPECT_EQ(other.Ask(), RampFrom(400, 50));
  graph.StopDevice();  // a device goes before its driver does
}

TEST_F(Playing, RendersOffLineWhileTheDeviceHearsSilence) {
  graph.TakeOffline();
  Put(300);
  EXPECT_EQ(driver.Ask(), Silence(100));
  EXPECT_EQ(ramp.Frame, 0);
  std::vector<float> pulled(88);
  graph.Render(pulled);
  EXPECT_EQ(pulled, RampFrom(0, 44));
  graph.ReturnLive();
  graph.ClearQueue();
  driver.Ask();
  Put(300);
  EXPECT_EQ(driver.Ask(), RampFrom(44, 100));
}

TEST_F(Playing, AllocatesNothingOnceItPlays) {
  ramp.Blocks.reserve(100000);
  Halver half;
  graph.SetEffect(0, &half);
  std::vector<float> stereo(200);
  const std::uint64_t before = AllocationsOfThread();
  for (int t = 0; t < 2000; ++t) {
    graph.PutNewData(BytesOfMillisecond(t));
    driver.Callback(std::span(stereo).first(t % 3 == 0 ? 200 : 66));
    if (t % 500 == 0) graph.ClearQueue();
  }
  EXPECT_EQ(AllocationsOfThread() - before, 0U);
  graph.PutNewData(8);
  EXPECT_EQ(std::make_unique<Ramp>()->Blocks.size(), 0U);
  EXPECT_GT(AllocationsOfThread() - before, 0U) << "the counter counts";
  graph.SetEffect(0, nullptr);
}

TEST(AudioRing, KeepsOrderBetweenTwoThreads) {
  TAudioRing ring(256);
  constexpr int total = 200000;
  std::thread feeder([&] {
    for (int n = 0; n < total;) {
      std::array<float, 37> part;
      const auto count = static_cast<std::size_t>(std::min<int>(37, total - n));
      for (std::size_t i = 0; i < count; ++i) part[i] = static_cast<float>(n + static_cast<int>(i));
      if (ring.Put(std::span(part).first(count)))
        n += static_cast<int>(count);
      else
        std::this_thread::yield();
    }
  });
  int next = 0, wrong = 0;
  std::array<float, 50> part{};
  while (next < total) {
    const std::size_t got = ring.Get(part);
    for (std::size_t i = 0; i < got; ++i) wrong += part[i] != static_cast<float>(next++);
    if (got == 0) std::this_thread::yield();
  }
  feeder.join();
  EXPECT_EQ(wrong, 0);
  EXPECT_EQ(ring.Queued(), 0U);
}

TEST(AudioRing, TakesAllOfABlockOrNothing) {
  TAudioRing ring(8);
  const std::vector<float> six{1, 2, 3, 4, 5, 6};
  EXPECT_TRUE(ring.Put(six));
  EXPECT_FALSE(ring.Put(six));
  EXPECT_EQ(ring.Queued(), 6U);
  std::vector<float> out(4);
  EXPECT_EQ(ring.Get(out), 4U);
  EXPECT_TRUE(ring.Put(six)) << "across the end of its cells";
  out.resize(10);
  EXPECT_EQ(ring.Get(out), 8U);
  EXPECT_THAT(std::span(out).first(8), ElementsAre(5, 6, 1, 2, 3, 4, 5, 6));
}

TEST(AudioRing, ForgetsOnlyWhatWasThere) {
  TAudioRing ring(8);
  const std::vector<float> some{1, 2, 3};
  EXPECT_TRUE(ring.Put(some));
  ring.Discard();
  EXPECT_TRUE(ring.Put(std::vector<float>{7}));
  EXPECT_EQ(ring.Queued(), 1U);
  ring.Skip(5);
  EXPECT_EQ(ring.Queued(), 0U);
  EXPECT_TRUE(ring.Put(some));
  ring.Skip(1);
  std::vector<float> out(4);
  EXPECT_EQ(ring.Get(out), 2U);
  EXPECT_EQ(out[0], 2);
}

TEST(AudioGraph, StandsThreadsThatPushPullClearAndChangeSlots) {
  AudioGraph graph;
  HandDriver driver;
  Constant a(0.25F), b(0.5F);
  graph.SetInstrument(0, &a);
  graph.StartDevice(driver, 0, 100, Reserve);
  std::atomic<bool> ending{false};
  std::atomic<int> wrong{0};
  std::thread device([&] {
    std::array<float, 200> stereo{};
    while (!ending) {
      driver.Callback(stereo);
      for (const float sample : stereo)
        wrong += sample != 0 && sample != 0.25F && sample != 0.5F && sample != 0.75F;
    }
  });
  std::thread player([&] {
    for (int t = 0; t < 3000; ++t) {
      graph.PutNewData(BytesOfMillisecond(t));
      if (t % 50 == 0) std::this_thread::yield();
    }
  });
  std::array<float, 88> pulled{};
  for (int n = 0; n < 300; ++n) {
    graph.SetInstrument(1, n % 2 == 0 ? &b : nullptr);
    if (n % 10 == 0) graph.ClearQueue();
    graph.TakeOffline();
    graph.Render(pulled);
    graph.ReturnLive();
    wrong += graph.TakePeak() > 0.75F;
  }
  player.join();
  ending = true;
  device.join();
  EXPECT_EQ(wrong, 0);
}

TEST(VSTInstruments, NamesItsOutputs) {
  TVSTInstruments host;
  for (int slot = 0; slot < 3; ++slot) host.LoadInstrument(slot, std::make_unique<Ramp>());
  host.LoadInstrument(3, std::make_unique<Ramp>(1.0F, "Roland SC-VA (VSTi)"));
  host.LoadInstrument(4, std::make_unique<Ramp>(1.0F, "Roland SC-VA (VSTi)"));
  std::vector<std::string> names;
  for (const TVSTiArray& slot : host.VSTiArray()) names.push_back(slot.Name);
  EXPECT_THAT(names, ElementsAre("Ramp (VSTi)", "Ramp (VSTi) #2", "Ramp (VSTi) #3",
                                 "Roland SC-VA (VSTi)", "Roland SC-VA (VSTi) #2"));
  host.LoadInstrument(0, std::make_unique<Ramp>());
  EXPECT_EQ(host.VSTiArray()[0].Name, "Ramp (VSTi)") << "its old name is free again";
}

TEST(VSTInstruments, KnowsWhatItsSlotsHold) {
  TVSTInstruments host;
  EXPECT_FALSE(host.VSTiLoaded);
  EXPECT_EQ(host.VSTiArray()[2].Slot, 2);
  EXPECT_EQ(host.VSTiArray()[2].Handle, 0U);
  EXPECT_EQ(host.VSTiArray()[2].MidiRoutingIdx, -1);
  host.LoadInstrument(2, std::make_unique<Ramp>());
  host.SetRoute(2, 4);
  const TVSTiArray& slot = host.VSTiArray()[2];
  EXPECT_TRUE(host.VSTiLoaded);
  EXPECT_TRUE(slot.isOK);
  EXPECT_NE(slot.Handle, 0U);
  EXPECT_EQ(slot.uniqueID, 77);
  EXPECT_EQ(slot.initDelay, 5);
  EXPECT_EQ(slot.MidiRoutingIdx, 4);
  host.LoadInstrument(2, nullptr);
  EXPECT_FALSE(host.VSTiLoaded);
  EXPECT_FALSE(slot.isOK);
  EXPECT_EQ(slot.MidiRoutingIdx, -1);
  EXPECT_EQ(slot.Name, "");
}

TEST(VSTInstruments, SendsByHandle) {
  TVSTInstruments host;
  for (int slot = 0; slot < 2; ++slot) host.LoadInstrument(slot, std::make_unique<Ramp>());
  const auto& slots = host.VSTiArray();
  const auto got = [&](std::size_t slot) -> auto& {
    return static_cast<Ramp&>(*slots[slot].Instrument).Got;
  };
  host.SendMidiData(slots[1].Handle, 0x93, 60, 100);
  const std::vector<std::uint8_t> gmOn{0xF0, 0x7E, 0x7F, 0x09, 0x01, 0xF7};
  host.SendSysex(slots[0].Handle, gmOn);
  EXPECT_THAT(got(1), ElementsAre(0x93, 60, 100));
  EXPECT_EQ(got(0), gmOn);

  const std::uint32_t old = slots[0].Handle;
  host.LoadInstrument(0, std::make_unique<Ramp>());
  for (const std::uint32_t handle : {old, 0U, 4711U}) {
    host.SendMidiData(handle, 0x90, 60, 100);
    host.SendSysex(handle, gmOn);
  }
  EXPECT_TRUE(got(0).empty()) << "what was meant for the instrument that has gone";
}

TEST(VSTInstruments, HoldsEffectsThatCanBeBypassed) {
  TVSTInstruments host;
  host.LoadInstrument(0, std::make_unique<Constant>(1.0F));
  host.LoadEffect(1, std::make_unique<Halver>(), "/effects/halver");
  const TVSTArray& slot = host.VSTArray()[1];
  EXPECT_EQ(slot.FileName, "/effects/halver");
  EXPECT_EQ(slot.Name, "Halver");
  EXPECT_EQ(slot.uniqueID, 88);
  EXPECT_EQ(slot.initDelay, 3);
  EXPECT_TRUE(slot.isOK);
  std::vector<float> block(2);
  host.Graph().Render(block);
  EXPECT_THAT(block, Each(0.5F));
  host.SetBypass(1, true);
  EXPECT_TRUE(slot.Bypassed);
  host.Graph().Render(block);
  EXPECT_THAT(block, Each(1.0F));
  host.LoadEffect(1, std::make_unique<Halver>(), "/effects/halver");
  EXPECT_FALSE(slot.Bypassed);
  host.Graph().Render(block);
  EXPECT_THAT(block, Each(0.5F)) << "a new effect is not bypassed";
  host.LoadEffect(1, nullptr, "");
  EXPECT_FALSE(slot.isOK);
}

TEST(VSTInstruments, ResetsInstrumentsAndEffects) {
  TVSTInstruments host;
  host.LoadInstrument(0, std::make_unique<Ramp>());
  host.LoadEffect(0, std::make_unique<Halver>(), "");
  std::vector<float> block(88);
  host.Graph().Render(block);
  host.ResetAll();
  EXPECT_EQ(static_cast<Ramp&>(*host.VSTiArray()[0].Instrument).Frame, 0);
  EXPECT_EQ(static_cast<Halver&>(*host.VSTArray()[0].Effect).Resets, 1);
}

TEST(VSTInstruments, RunsWhenItIsWantedLoadedUsedAndPlaying) {
  TVSTInstruments host;
  HandDriver driver;
  EXPECT_FALSE(host.IsRunning());
  host.VSTiInUse = true;
  host.LoadInstrument(0, std::make_unique<Ramp>());
  EXPECT_FALSE(host.IsRunning());
  host.StartAudio(driver, 0, 100);
  EXPECT_TRUE(host.IsRunning());
  EXPECT_EQ(host.BufferTime(), 22) << "a buffer of 100 frames and 20 ms";
  host.VSTiEnabled = false;
  EXPECT_FALSE(host.IsRunning());
  host.VSTiEnabled = true;
  host.VSTiInUse = false;
  EXPECT_FALSE(host.IsRunning());
  host.VSTiInUse = true;
  host.StopAudio();
  EXPECT_FALSE(host.IsRunning());
}

TEST(VSTInstruments, SaysThatThereIsNoDevice) {
  TVSTInstruments host;
  HandDriver driver;
  driver.Names.clear();
  const auto told = [&]() -> std::string {
    try {
      host.StartAudio(driver, 0, 100);
    } catch (const TAudioError& error) {
      return error.what();
    }
    return "started";
  };
  EXPECT_EQ(told(), "No audio devices found.");
  const InGerman german;
  EXPECT_EQ(told(), "Keine Audio-Ausgänge gefunden.");
  EXPECT_FALSE(host.AudioPlaying);
}

TEST(VSTInstruments, CountsTheBytesThatReachTheQueue) {
  TVSTInstruments host;
  HandDriver driver;
  host.StartAudio(driver, 0, 100);
  host.PutNewData(352);
  host.PutNewData(360);
  EXPECT_EQ(host.PutBytesCounter, 712);
  EXPECT_EQ(host.CurrError(), "");
  for (int n = 0; n < 3000; ++n) host.PutNewData(352);
  EXPECT_EQ(host.CurrError(), "The audio device takes no data.");
  const std::int64_t full = host.PutBytesCounter;
  host.PutNewData(352);
  EXPECT_EQ(host.PutBytesCounter, full);
  const InGerman german;
  EXPECT_EQ(host.CurrError(), "Der Audio-Ausgang nimmt keine Daten an.");
  host.ClearQueue();
  driver.Ask();
  host.PutNewData(352);
  EXPECT_EQ(host.CurrError(), "");
}

TEST(VSTInstruments, LetsTheSongStartOnceAfterItsBuffers) {
  TVSTInstruments host;
  HandDriver driver;
  host.StartAudio(driver, 0, 100);
  host.DelayStart(2);
  EXPECT_FALSE(host.IsStartDue());
  driver.Ask();
  EXPECT_FALSE(host.IsStartDue());
  driver.Ask();
  EXPECT_TRUE(host.IsStartDue());
  EXPECT_FALSE(host.IsStartDue());
  host.DelayStart(0);
  EXPECT_TRUE(host.IsStartDue()) << "nothing to wait for";
}

TEST(VSTInstruments, DoesNotWaitForADeviceThatHasDied) {
  TVSTInstruments host;
  HandDriver driver;
  host.StartAudio(driver, 0, 100);
  host.DelayStart(1);
  EXPECT_FALSE(host.IsStartDue());
  std::this_thread::sleep_for(std::chrono::milliseconds(1050));
  EXPECT_TRUE(host.IsStartDue());
  EXPECT_FALSE(host.IsStartDue());
}

}  // namespace
}  // namespace Sonarello
