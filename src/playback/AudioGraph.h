// Sonarello: the way of the sound: instruments, mixer, effects, queue, device.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <mutex>
#include <span>

#include "playback/AudioDevice.h"
#include "playback/AudioRing.h"
#include "playback/HostedEffect.h"
#include "playback/HostedInstrument.h"

namespace Sonarello {

inline constexpr int InstrumentSlots = 5;
inline constexpr int EffectSlots = 2;
inline constexpr int BytesPerFrame = AudioChannels * static_cast<int>(sizeof(float));

/// Milliseconds of frames, rounded to the nearest.
[[nodiscard]] constexpr int MillisecondsOf(int frames) noexcept {
  return static_cast<int>((static_cast<std::int64_t>(frames) * 1000 + AudioSampleRate / 2) /
                          AudioSampleRate);
}

/// Mixes the instruments' streams, passes the mix through the effects, and queues it for the device.
///
/// The push stream is the time base: sound comes into being only as the player pushes blocks
/// (`PutNewData`), on the thread that pushes. The device's callback takes it from a queue without
/// locks and has no part in rendering. Off line, `Render` pulls the same sound into a buffer.
///
/// Samples stay as the instruments made them, beyond full scale too; only what goes to a device is
/// clipped at full scale there.
class AudioGraph {
 public:
  AudioGraph();
  AudioGraph(const AudioGraph&) = delete;
  AudioGraph& operator=(const AudioGraph&) = delete;
  ~AudioGraph();

  /// Puts an instrument or effect into a slot (from 0), or empties it (nil). The old one is not in use
  /// any more when this returns; it is not owned.
  void SetInstrument(int slot, IHostedInstrument* instrument);
  void SetEffect(int slot, IHostedEffect* effect);
  /// A bypassed effect is not run.
  void SetBypass(int slot, bool bypassed) noexcept;

  /// Effects forget the sound that they still hold.
  void ResetEffects();

  /// Starts a device, in place of one that is playing. `reserveFrames` is how late the player may come
  /// with its blocks. The driver must live until the device is stopped. Raises TAudioError; then no
  /// device plays.
  void StartDevice(IAudioDriver& driver, int device, int bufferFrames, int reserveFrames = 882);
  void StopDevice();
  [[nodiscard]] bool IsPlaying() const noexcept { return stream != nullptr; }

  /// Renders bytes / 8 frames and queues them for the device. False if the queue is full; the frames
  /// are rendered all the same, so that instruments keep the song's time. Belongs to the player thread.
  bool PutNewData(int bytes);
  [[nodiscard]] std::size_t QueuedBytes() const noexcept { return ring.Queued() * sizeof(float); }
  /// Throws away what is queued. Any thread may ask for it.
  void ClearQueue() noexcept;

  /// Off line the player's blocks are silence, and the instruments sound only for `Render`.
  void TakeOffline();
  void ReturnLive();
  [[nodiscard]] bool IsOffline() const noexcept { return offline; }
  /// Renders the next frames straight into a buffer, left and right in turn.
  void Render(std::span<float> stereo);

  /// Highest absolute sample put since the last call; above 1 the device clips.
  [[nodiscard]] float TakePeak() noexcept { return peak.exchange(0); }
  /// How often the sound broke off because the queue ran dry.
  [[nodiscard]] int Underruns() const noexcept { return underruns; }
  /// Samples that were skipped because the queue had grown far beyond what the device needs.
  [[nodiscard]] std::int64_t SkippedSamples() const noexcept { return skipped; }

  // What the device's buffers are counted by.
  std::atomic<std::int64_t> AudioMixerBytesCnt{0};
  std::atomic<int> DelayStart{0};  ///< buffers still to pass before the song starts
  std::atomic<bool> SwitchToMidiPlayThread{false};

  // Figures of the device that plays. `AudioBuffer...` is the sound that is kept queued for it,
  // `AudioLatency...` what passes from its callback to the ear. 0 without a device.
  int AudioBufferBytes = 0, AudioBufferSamples = 0, AudioBufferTime = 0;
  int AudioLatencyBytes = 0, AudioLatencySamples = 0, AudioLatencyTime = 0;
  int AudioTotalLatencyTime = 0;  ///< ms from the push of a block to the ear

 private:
  static constexpr std::size_t BlockSamples = 512 * AudioChannels;
  static constexpr std::size_t NeverEnough = std::numeric_limits<std::size_t>::max();
  using Block = std::array<float, BlockSamples>;

  void RenderLive(std::span<float> block);
  void RenderBlock(std::span<float> block);  // under the gate
  void ClipAndMeasure(std::span<float> block) noexcept;
  void SetFigures(int buffered, int latency) noexcept;
  void OnDeviceBuffer(std::span<float> stereo) noexcept;
  void Pull(std::span<float> stereo) noexcept;
  [[nodiscard]] bool HasGathered(std::size_t wanted) noexcept;
  void CountBuffer(std::size_t bytes) noexcept;

  // Held while a block is rendered, and for moments when a slot changes.
  std::mutex gate;
  std::array<IHostedInstrument*, InstrumentSlots> instruments{};
  std::array<IHostedEffect*, EffectSlots> effects{};
  std::array<std::atomic<bool>, EffectSlots> bypass{};
  Block scratch{};
  std::atomic<bool> offline{false};

  Block pushed{};  // belongs to the player thread
  TAudioRing ring;
  std::atomic<float> peak{0};

  // Samples that wait in the queue before the device begins to play from it.
  std::atomic<std::size_t> cushion{NeverEnough};
  std::atomic<bool> cleared{false};
  bool gathering = true;  // belongs to the device's thread
  std::atomic<int> underruns{0};
  std::atomic<std::int64_t> skipped{0};
  std::unique_ptr<IAudioStream> stream;
};

}  // namespace Sonarello
