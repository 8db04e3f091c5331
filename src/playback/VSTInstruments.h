// Sonarello: the host's slots: five instruments, two effects, and the audio that they sound through.
#pragma once

#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <vector>

#include "playback/AudioGraph.h"
#include "playback/HostedAudio.h"

namespace Sonarello {

/// A slot with a hosted instrument.
struct TVSTiArray {
  std::unique_ptr<IHostedInstrument> Instrument;
  int fLeft = 0, fTop = 0;   ///< where the editor window of the instrument stands
  std::uint32_t Handle = 0;  ///< what messages are addressed by; 0: the slot is empty
  int initDelay = 0;         ///< frames by which its sound comes late
  bool isOK = false;
  int MidiRoutingIdx = -1;  ///< route that plays through it, -1: none
  std::string Name;         ///< as a MIDI output is called by it
  int Slot = 0;             ///< from 0
  std::int32_t uniqueID = 0;
};

/// A slot with an effect on the mix.
struct TVSTArray {
  std::unique_ptr<IHostedEffect> Effect;
  bool Bypassed = false;
  std::string FileName;
  int fLeft = 0, fTop = 0;
  std::uint32_t Handle = 0;
  int initDelay = 0;
  bool isOK = false;
  std::string Name;
  int Slot = 0;
  std::int32_t uniqueID = 0;
};

/// The hosted instruments and effects, and the audio device behind them. Slots and device belong to
/// the main thread; messages and blocks may come from the player thread as well.
class TVSTInstruments final : public IHostedAudio {
 public:
  TVSTInstruments();
  TVSTInstruments(const TVSTInstruments&) = delete;
  TVSTInstruments& operator=(const TVSTInstruments&) = delete;
  ~TVSTInstruments() override;

  /// Puts an instrument into a slot, in place of what was there; nil empties it. The instrument's name
  /// becomes that of an output: " (VSTi)" behind it, and " #2" to " #5" if others bear it already.
  void LoadInstrument(int slot, std::unique_ptr<IHostedInstrument> instrument);
  void LoadEffect(int slot, std::unique_ptr<IHostedEffect> effect, std::string fileName);
  void SetBypass(int slot, bool bypassed);
  [[nodiscard]] const std::array<TVSTiArray, InstrumentSlots>& VSTiArray() const { return instruments; }
  [[nodiscard]] const std::array<TVSTArray, EffectSlots>& VSTArray() const { return effects; }
  /// The route that plays through a slot; -1: none.
  void SetRoute(int slot, int route);
  /// Silences every instrument and takes it back to the state of its start. Effects forget their sound.
  void ResetAll();

  /// A message for the instrument with this handle; one that is gone swallows it.
  void SendMidiData(std::uint32_t VSTiHandle, std::uint8_t Status, std::uint8_t Data1,
                    std::uint8_t Data2);
  /// A whole sysex, from F0 to F7.
  void SendSysex(std::uint32_t VSTiHandle, std::span<const std::uint8_t> Data);

  /// Plays on a device (number as in the driver's names) in place of the one that played. Raises
  /// TAudioError, with a text for the user; then no device plays.
  void StartAudio(IAudioDriver& driver, int device, int bufferFrames);
  void StopAudio();

  // What the player asks.
  [[nodiscard]] bool IsRunning() const override;
  void PutNewData(int bytes) override;
  void ClearQueue() override { graph.ClearQueue(); }
  void DelayStart(int buffers) override;
  [[nodiscard]] bool IsStartDue() override;
  [[nodiscard]] int BufferTime() const override { return graph.AudioBufferTime; }

  [[nodiscard]] AudioGraph& Graph() noexcept { return graph; }
  /// Why the last block did not reach the device; empty if it did.
  [[nodiscard]] std::string CurrError() const;

  std::atomic<bool> VSTiEnabled{true};  ///< hosted audio is wanted at all
  std::atomic<bool> VSTiInUse{false};   ///< a channel plays through a hosted instrument
  std::atomic<bool> VSTiLoaded{false};  ///< a slot is filled
  std::atomic<bool> AudioPlaying{false};
  std::atomic<std::int64_t> PutBytesCounter{0};  ///< bytes that reached the queue

 private:
  [[nodiscard]] std::string OutputName(int slot, const std::string& name) const;
  [[nodiscard]] IHostedInstrument* Receiver(std::uint32_t handle) noexcept;  // under the lock

  std::array<TVSTiArray, InstrumentSlots> instruments;
  std::array<TVSTArray, EffectSlots> effects;
  AudioGraph graph;
  std::mutex sending;  // held while a message goes in, and while a slot changes
  std::uint32_t lastHandle = 0;
  std::atomic<bool> queueFull{false};
  std::int64_t bytesAtDelay = 0;
  std::chrono::steady_clock::time_point delayBegan;
};

}  // namespace Sonarello
