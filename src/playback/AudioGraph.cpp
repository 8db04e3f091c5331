#include "playback/AudioGraph.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include "core/Texts.h"

namespace Sonarello {

namespace {

constexpr std::size_t QueueFrames = 65536;  // 1.5 s
constexpr int LargestReserve = 16384;       // frames
// By so much the queue may exceed what the device needs: as it begins to play, and as it goes on.
constexpr std::size_t SurplusAtStart = 441 * AudioChannels;
constexpr std::size_t SurplusWhilePlaying = 4410 * AudioChannels;

float Clipped(float sample) { return std::isfinite(sample) ? std::clamp(sample, -1.0F, 1.0F) : 0.0F; }

}  // namespace

AudioGraph::AudioGraph() : ring(QueueFrames * AudioChannels) {}

AudioGraph::~AudioGraph() { StopDevice(); }

void AudioGraph::SetInstrument(int slot, IHostedInstrument* instrument) {
  const std::scoped_lock lock(gate);
  instruments.at(static_cast<std::size_t>(slot)) = instrument;
}

void AudioGraph::SetEffect(int slot, IHostedEffect* effect) {
  const std::scoped_lock lock(gate);
  effects.at(static_cast<std::size_t>(slot)) = effect;
}

void AudioGraph::SetBypass(int slot, bool bypassed) noexcept {
  bypass.at(static_cast<std::size_t>(slot)) = bypassed;
}

void AudioGraph::ResetEffects() {
  const std::scoped_lock lock(gate);
  for (IHostedEffect* effect : effects)
    if (effect != nullptr) effect->Reset();
}

void AudioGraph::StartDevice(IAudioDriver& driver, int device, int bufferFrames, int reserveFrames) {
  StopDevice();
  // The device may call before its figures are known; until then it plays silence.
  stream =
      driver.Start(device, bufferFrames, [this](std::span<float> stereo) { OnDeviceBuffer(stereo); });
  const int buffered = stream->BufferFrames() + std::clamp(reserveFrames, 0, LargestReserve);
  if (static_cast<std::size_t>(buffered) > QueueFrames / 2) {
    StopDevice();
    throw TAudioError(Text("Der Puffer des Audio-Ausgangs ist zu groß.",
                           "The buffer of the audio device is too large."));
  }
  SetFigures(buffered, std::max(stream->LatencyFrames(), stream->BufferFrames()));
  cushion = static_cast<std::size_t>(buffered) * AudioChannels;
}

void AudioGraph::StopDevice() {
  stream.reset();
  cushion = NeverEnough;
  gathering = true;
  DelayStart = 0;
  SetFigures(0, 0);
  ring.Discard();
  ring.Skip(0);
}

void AudioGraph::ClearQueue() noexcept {
  ring.Discard();
  cleared = true;
}

void AudioGraph::SetFigures(int buffered, int latency) noexcept {
  AudioBufferSamples = buffered;
  AudioBufferBytes = buffered * BytesPerFrame;
  AudioBufferTime = MillisecondsOf(buffered);
  AudioLatencySamples = latency;
  AudioLatencyBytes = latency * BytesPerFrame;
  AudioLatencyTime = MillisecondsOf(latency);
  AudioTotalLatencyTime = MillisecondsOf(buffered + latency);
}

bool AudioGraph::PutNewData(int bytes) {
  auto samples = static_cast<std::size_t>(std::max(bytes, 0) / BytesPerFrame * AudioChannels);
  bool taken = true;
  while (samples > 0) {
    const auto block = std::span(pushed).first(std::min(samples, BlockSamples));
    RenderLive(block);
    ClipAndMeasure(block);
    taken = ring.Put(block) && taken;
    samples -= block.size();
  }
  return taken;
}

void AudioGraph::ClipAndMeasure(std::span<float> block) noexcept {
  float highest = 0;
  for (float& sample : block) {
    highest = std::max(highest, std::abs(sample));  // a sample that is no number counts for nothing
    sample = Clipped(sample);
  }
  if (highest > peak.load(std::memory_order_relaxed)) peak.store(highest, std::memory_order_relaxed);
}

void AudioGraph::TakeOffline() {
  const std::scoped_lock lock(gate);
  offline = true;
}

void AudioGraph::ReturnLive() {
  const std::scoped_lock lock(gate);
  offline = false;
}

void AudioGraph::Render(std::span<float> stereo) {
  while (!stereo.empty()) {
    const auto block = stereo.first(std::min(stereo.size(), BlockSamples));
    const std::scoped_lock lock(gate);
    RenderBlock(block);
    stereo = stereo.subspan(block.size());
  }
}

void AudioGraph::RenderLive(std::span<float> block) {
  const std::scoped_lock lock(gate);
  if (offline)
    std::ranges::fill(block, 0.0F);
  else
    RenderBlock(block);
}

void AudioGraph::RenderBlock(std::span<float> block) {
  const auto part = std::span(scratch).first(block.size());
  std::ranges::fill(block, 0.0F);
  for (IHostedInstrument* instrument : instruments) {
    if (instrument == nullptr) continue;
    instrument->Render(part);
    std::ranges::transform(block, part, block.begin(), std::plus<>());
  }
  for (std::size_t slot = 0; slot < effects.size(); ++slot)
    if (effects[slot] != nullptr && !bypass[slot]) effects[slot]->Process(block);
}

void AudioGraph::OnDeviceBuffer(std::span<float> stereo) noexcept {
  Pull(stereo);
  CountBuffer(stereo.size_bytes());
}

bool AudioGraph::HasGathered(std::size_t wanted) noexcept {
  const std::size_t enough = cushion.load(std::memory_order_acquire);
  const std::size_t queued = ring.Queued();
  if (enough == NeverEnough || (gathering && queued < enough)) return false;
  // The clocks of player and device differ; sound that comes too late is left out.
  const std::size_t surplus = gathering ? SurplusAtStart : SurplusWhilePlaying;
  if (queued > enough + wanted + surplus) {
    ring.Skip(queued - enough);
    skipped.fetch_add(static_cast<std::int64_t>(queued - enough), std::memory_order_relaxed);
  }
  gathering = false;
  return true;
}

void AudioGraph::Pull(std::span<float> stereo) noexcept {
  if (cleared.exchange(false)) {
    gathering = true;
    ring.Skip(0);  // the room of what was thrown away comes free
  }
  const std::size_t got = HasGathered(stereo.size()) ? ring.Get(stereo) : 0;
  std::ranges::fill(stereo.subspan(got), 0.0F);
  if (got == stereo.size() || gathering) return;
  gathering = true;
  underruns.fetch_add(1, std::memory_order_relaxed);
}

void AudioGraph::CountBuffer(std::size_t bytes) noexcept {
  AudioMixerBytesCnt.fetch_add(static_cast<std::int64_t>(bytes), std::memory_order_relaxed);
  int left = DelayStart.load(std::memory_order_relaxed);
  if (left > 0 && DelayStart.compare_exchange_strong(left, left - 1) && left == 1)
    SwitchToMidiPlayThread = true;
}

}  // namespace Sonarello
