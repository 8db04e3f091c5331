#include "playback/NullAudioDevice.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "helpers/InGerman.h"
#include "playback/AudioGraph.h"

namespace Sonarello {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

TEST(NullAudioDevice, IsDueEveryNFrames) {
  EXPECT_EQ(NullAudioDriver::DueTime(0, 512), 0);
  EXPECT_EQ(NullAudioDriver::DueTime(1, 441), 10'000'000);
  EXPECT_EQ(NullAudioDriver::DueTime(1, 1), 22'676) << "22,675.7 ns, never early";
  EXPECT_EQ(NullAudioDriver::DueTime(44100, 512), 512'000'000'000);
}

TEST(NullAudioDevice, DoesNotDriftInADay) {
  for (const int frames : {64, 441, 512, 1024}) {
    const std::int64_t buffers = std::int64_t{24} * 3600 * 44100 / frames;
    const long double exact = static_cast<long double>(buffers) * frames / 44100 * 1e9L;
    EXPECT_GE(static_cast<long double>(NullAudioDriver::DueTime(buffers, frames)), exact - 1e-3L);
    EXPECT_LT(static_cast<long double>(NullAudioDriver::DueTime(buffers, frames)), exact + 1);
  }
}

TEST(NullAudioDevice, PullsNoFrameEarlyAndKeepsPace) {
  NullAudioDriver driver;
  std::atomic<int> frames{0}, early{0}, wrong{0};
  const Clock::time_point start = Clock::now();
  const auto stream = driver.Start(0, 128, [&](std::span<float> stereo) {
    // Buffer n is not asked for before n * 128 / 44100 s.
    const auto passed = std::chrono::duration<double>(Clock::now() - start).count();
    early += frames / 44100.0 > passed;
    wrong += stereo.size() != 256;
    frames += 128;
  });
  EXPECT_EQ(stream->BufferFrames(), 128);
  EXPECT_EQ(stream->LatencyFrames(), 128);
  const Clock::time_point patience = start + std::chrono::seconds(30);
  while (frames < 8820 && Clock::now() < patience) std::this_thread::sleep_for(milliseconds(1));
  EXPECT_GE(frames, 8820) << "a fifth of a second";
  EXPECT_EQ(early, 0);
  EXPECT_EQ(wrong, 0);
}

TEST(NullAudioDevice, CallsNobodyAfterItsEnd) {
  NullAudioDriver driver;
  std::atomic<int> calls{0};
  auto stream = driver.Start(0, 64, [&](std::span<float>) { ++calls; });
  while (calls < 3) std::this_thread::yield();
  stream.reset();
  const int atTheEnd = calls;
  std::this_thread::sleep_for(milliseconds(20));
  EXPECT_EQ(calls, atTheEnd);
}

TEST(NullAudioDevice, EndsSoonWhateverItsBuffer) {
  NullAudioDriver driver;
  auto stream = driver.Start(0, 1'000'000, [](std::span<float>) {});
  EXPECT_EQ(stream->BufferFrames(), 16384) << "a third of a second is the most";
  const Clock::time_point start = Clock::now();
  stream.reset();
  EXPECT_LT(Clock::now() - start, milliseconds(300));
}

TEST(NullAudioDevice, TakesAUsableBufferForNone) {
  NullAudioDriver driver;
  for (const int frames : {0, -5}) {
    const auto stream = driver.Start(0, frames, [](std::span<float>) {});
    EXPECT_EQ(stream->BufferFrames(), 16);
  }
}

TEST(NullAudioDevice, HasOneDeviceAndNoOther) {
  NullAudioDriver driver;
  EXPECT_EQ(driver.ApiName(), "null");
  EXPECT_THAT(driver.DeviceNames(), testing::ElementsAre("no sound"));
  const auto told = [&](int device) -> std::string {
    try {
      const auto stream = driver.Start(device, 64, [](std::span<float>) {});
    } catch (const TAudioError& error) {
      return error.what();
    }
    return "started";
  };
  EXPECT_EQ(told(1), "There is no such audio device.");
  EXPECT_EQ(told(-1), "There is no such audio device.");
  const InGerman german;
  EXPECT_EQ(told(1), "Diesen Audio-Ausgang gibt es nicht.");
  EXPECT_THAT(driver.DeviceNames(), testing::ElementsAre("kein Ton"));
}

TEST(NullAudioDevice, DrainsAGraphThatIsFed) {
  NullAudioDriver driver;
  AudioGraph graph;
  graph.StartDevice(driver, 0, 128);
  for (int n = 0; n < 4; ++n) EXPECT_TRUE(graph.PutNewData(graph.AudioBufferBytes));
  const Clock::time_point patience = Clock::now() + std::chrono::seconds(30);
  while (graph.QueuedBytes() > 0 && Clock::now() < patience)
    std::this_thread::sleep_for(milliseconds(1));
  EXPECT_EQ(graph.QueuedBytes(), 0U);
  EXPECT_GE(graph.AudioMixerBytesCnt, graph.AudioBufferBytes);
}

}  // namespace
}  // namespace Sonarello
