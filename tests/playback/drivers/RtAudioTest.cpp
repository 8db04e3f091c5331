#include "playback/drivers/RtAudioDriver.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sndfile.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <numbers>
#include <thread>

#include "helpers/InGerman.h"
#include "playback/AudioGraph.h"
#include "playback/drivers/JackServer.h"

namespace Sonarello {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

/// The driver for JACK, once the server answers.
std::unique_ptr<IAudioDriver> Jack() {
  const Clock::time_point patience = Clock::now() + std::chrono::seconds(20);
  while (Clock::now() < patience) {
    for (auto& driver : FindAudioDrivers())
      if (driver->ApiName() == "Jack") return std::move(driver);
    std::this_thread::sleep_for(milliseconds(50));
  }
  throw std::runtime_error("no JACK driver");
}

bool Within20Seconds(const std::function<bool()>& reached) {
  const Clock::time_point patience = Clock::now() + std::chrono::seconds(20);
  while (!reached() && Clock::now() < patience) std::this_thread::sleep_for(milliseconds(2));
  return reached();
}

TEST(RtAudio, TakesAComputerWithoutSoundAsItIs) {
  ::setenv("JACK_DEFAULT_SERVER", "sonarello-no-such-server", 1);
  ::setenv("JACK_NO_START_SERVER", "1", 1);
  testing::internal::CaptureStderr();
  testing::internal::CaptureStdout();
  for (const auto& driver : FindAudioDrivers()) {
    EXPECT_NE(driver->ApiName(), "Jack");
    EXPECT_FALSE(driver->DeviceNames().empty()) << "a system without an output is not told of";
  }
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST(RtAudio, PlaysThroughJackAtThePaceOfTheServer) {
  const JackServer server;
  const auto driver = Jack();
  ASSERT_FALSE(driver->DeviceNames().empty());
  std::atomic<int> frames{0}, wrong{0};
  const auto stream = driver->Start(0, 441, [&](std::span<float> stereo) {
    wrong += stereo.size() != 128;
    frames += static_cast<int>(stereo.size() / 2);
  });
  EXPECT_EQ(stream->BufferFrames(), 64) << "the server's length, not that asked for";
  EXPECT_GE(stream->LatencyFrames(), 64);
  const Clock::time_point start = Clock::now();
  const int before = frames;
  EXPECT_TRUE(Within20Seconds([&] { return frames - before >= 22050; }));
  const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
  EXPECT_GT(seconds, 0.4) << "half a second of sound";
  EXPECT_EQ(wrong, 0);
}

TEST(RtAudio, CallsNobodyAfterItsEnd) {
  const JackServer server;
  const auto driver = Jack();
  std::atomic<int> calls{0};
  auto stream = driver->Start(0, 64, [&](std::span<float>) { ++calls; });
  EXPECT_TRUE(Within20Seconds([&] { return calls > 3; }));
  stream.reset();
  const int atTheEnd = calls;
  std::this_thread::sleep_for(milliseconds(30));
  EXPECT_EQ(calls, atTheEnd);
}

TEST(RtAudio, RefusesDevicesThatAreNotThere) {
  const JackServer server;
  const auto driver = Jack();
  const auto told = [&](int device) -> std::string {
    try {
      const auto stream = driver->Start(device, 64, [](std::span<float>) {});
    } catch (const TAudioError& error) {
      return error.what();
    }
    return "started";
  };
  EXPECT_EQ(told(99), "There is no such audio device.");
  EXPECT_EQ(told(-1), "There is no such audio device.");
  const InGerman german;
  EXPECT_EQ(told(99), "Diesen Audio-Ausgang gibt es nicht.");
}

TEST(RtAudio, SaysWhyADeviceCanNotBeUsed) {
  JackServer server;
  const auto driver = Jack();
  const std::string name = driver->DeviceNames().at(0);
  server.Stop();
  testing::internal::CaptureStderr();
  const auto told = [&]() -> std::string {
    try {
      const auto stream = driver->Start(0, 64, [](std::span<float>) {});
    } catch (const TAudioError& error) {
      return error.what();
    }
    return "started";
  };
  EXPECT_THAT(told(), testing::StartsWith("The audio device " + name + " can not be used: "));
  {
    const InGerman german;
    EXPECT_THAT(told(),
                testing::StartsWith("Der Audio-Ausgang " + name + " kann nicht benutzt werden: "));
  }
  EXPECT_TRUE(driver->DeviceNames().empty());
  EXPECT_EQ(told(), "There is no such audio device.");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

/// Plays a sine of 441 Hz, 100 frames a period.
class Sine : public IHostedInstrument {
 public:
  std::string Name() const override { return "Sine"; }
  std::int32_t UniqueID() const override { return 1; }
  int InitDelay() const override { return 0; }
  void SendMidiData(std::uint8_t, std::uint8_t, std::uint8_t) override {}
  void SendSysex(std::span<const std::uint8_t>) override {}
  void Render(std::span<float> stereo) override {
    for (std::size_t i = 0; i < stereo.size(); i += 2, ++frame) {
      stereo[i] = 0.5F * static_cast<float>(std::sin(2 * std::numbers::pi * frame / 100));
      stereo[i + 1] = -stereo[i];
    }
  }
  void Reset() override {}
  std::vector<std::uint8_t> GetChunk() const override { return {}; }
  bool SetChunk(std::span<const std::uint8_t>) override { return false; }

 private:
  int frame = 0;
};

/// Records what comes out of a client's two ports, by an independent program.
std::vector<float> Record(const std::string& file) {
  const pid_t recorder = ::fork();
  if (recorder == 0) {
    const int nowhere = ::open("/dev/null", O_RDWR);
    ::dup2(nowhere, 1);
    ::dup2(nowhere, 2);
    ::execlp("jack_rec", "jack_rec", "-f", file.c_str(), "-d", "1", "-b", "16", "Sonarello:outport 0",
             "Sonarello:outport 1", static_cast<char*>(nullptr));
    ::_exit(127);
  }
  int status = -1;
  ::waitpid(recorder, &status, 0);
  EXPECT_EQ(status, 0);
  SF_INFO info{};
  SNDFILE* const sound = ::sf_open(file.c_str(), SFM_READ, &info);
  if (sound == nullptr || info.channels != 2) return {};
  std::vector<float> stereo(static_cast<std::size_t>(info.frames) * 2);
  ::sf_readf_float(sound, stereo.data(), info.frames);
  ::sf_close(sound);
  return stereo;
}

/// Samples of a recorded sine that differ from those of a period ago, or from the other side's.
int Breaks(const std::vector<float>& stereo) {
  int breaks = 0;
  for (std::size_t f = 100; f < stereo.size() / 2; ++f) {
    breaks += std::abs(stereo[2 * f] - stereo[2 * (f - 100)]) > 0.001F;
    breaks += std::abs(stereo[2 * f] + stereo[2 * f + 1]) > 0.001F;
  }
  return breaks;
}

TEST(RtAudio, CarriesTheSoundOfTheGraphWithoutAGap) {
  const JackServer server;
  const auto driver = Jack();
  Sine sine;
  AudioGraph graph;
  graph.SetInstrument(0, &sine);
  graph.StartDevice(*driver, 0, 64, 16384);
  std::atomic<bool> ending{false};
  std::thread player([&] {
    const auto enough = static_cast<std::size_t>(graph.AudioBufferBytes) + 2000 * BytesPerFrame;
    for (; !ending; std::this_thread::sleep_for(milliseconds(1)))
      while (graph.QueuedBytes() < enough) graph.PutNewData(352);
  });
  EXPECT_TRUE(Within20Seconds([&] { return graph.AudioMixerBytesCnt > 40000; }));
  const fs::path file = fs::temp_directory_path() / ("sine" + std::to_string(::getpid()) + ".wav");
  // On a busy machine the recorder loses frames of its own; a gap of ours would be in every recording.
  std::vector<float> stereo;
  int breaks = 1;
  for (int attempt = 0; attempt < 4 && breaks > 0; ++attempt) {
    stereo = Record(file.string());
    breaks = Breaks(stereo);
  }
  ending = true;
  player.join();
  fs::remove(file);
  ASSERT_GE(stereo.size(), 2U * 40000);
  EXPECT_EQ(breaks, 0);
  EXPECT_NEAR(*std::ranges::max_element(stereo), 0.5, 0.001);
  EXPECT_EQ(graph.Underruns(), 0);
}

TEST(RtAudio, OutlivesItsServer) {
  for (const int signal : {SIGTERM, SIGKILL}) {
    JackServer server;
    const auto driver = Jack();
    Sine sine;
    AudioGraph graph;
    graph.SetInstrument(0, &sine);
    graph.StartDevice(*driver, 0, 64);
    EXPECT_TRUE(Within20Seconds([&] { return graph.AudioMixerBytesCnt > 0; }));
    server.Signal(signal);
    for (int n = 0; n < 20; ++n) {
      graph.PutNewData(352);
      std::this_thread::sleep_for(milliseconds(5));
    }
    graph.StopDevice();
    EXPECT_THROW(graph.StartDevice(*driver, 0, 64), TAudioError);
  }
}

}  // namespace
}  // namespace Sonarello
