#include "playback/NullAudioDevice.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <thread>
#include <utility>

#include "core/Texts.h"
#include "playback/HostedInstrument.h"

namespace Sonarello {

namespace {

using Clock = std::chrono::steady_clock;
constexpr int SmallestBuffer = 16, LargestBuffer = 16384;  // frames
constexpr auto LongestNap = std::chrono::milliseconds(20);
constexpr auto LateBeyondRepair = std::chrono::seconds(1);

class NullStream final : public IAudioStream {
 public:
  NullStream(int bufferFrames, TAudioCallback c)
      : frames(bufferFrames),
        callback(std::move(c)),
        buffer(static_cast<std::size_t>(bufferFrames) * AudioChannels),
        thread([this] { Run(); }) {}
  NullStream(const NullStream&) = delete;
  NullStream& operator=(const NullStream&) = delete;
  ~NullStream() override {
    ending = true;
    thread.join();
  }

  [[nodiscard]] int BufferFrames() const override { return frames; }
  [[nodiscard]] int LatencyFrames() const override { return frames; }

 private:
  void Run() {
    Clock::time_point start = Clock::now();
    for (std::int64_t number = 0;; ++number) {
      const Clock::time_point due =
          start + std::chrono::nanoseconds(NullAudioDriver::DueTime(number, frames));
      if (!WaitUntil(due)) return;
      callback(buffer);
      // A computer that stood still for long does not make up for it in one rush.
      const auto late = Clock::now() - due;
      if (late > LateBeyondRepair) start += late;
    }
  }

  /// False if the stream is to end. Long waits go in naps, so that the end comes soon.
  bool WaitUntil(Clock::time_point due) {
    while (!ending) {
      const Clock::time_point now = Clock::now();
      if (now >= due) return true;
      std::this_thread::sleep_until(std::min(due, now + LongestNap));
    }
    return false;
  }

  int frames;
  TAudioCallback callback;
  std::vector<float> buffer;
  std::atomic<bool> ending{false};
  std::thread thread;  // last: it uses all of the others
};

}  // namespace

std::vector<std::string> NullAudioDriver::DeviceNames() { return {Text("kein Ton", "no sound")}; }

std::unique_ptr<IAudioStream> NullAudioDriver::Start(int device, int bufferFrames,
                                                     TAudioCallback callback) {
  if (device != 0)
    throw TAudioError(Text("Diesen Audio-Ausgang gibt es nicht.", "There is no such audio device."));
  return std::make_unique<NullStream>(std::clamp(bufferFrames, SmallestBuffer, LargestBuffer),
                                      std::move(callback));
}

}  // namespace Sonarello
