// Sonarello: the built-in synthesizer, which plays SoundFonts.
#pragma once

#include <memory>
#include <string>

#include "playback/HostedInstrument.h"

namespace Sonarello {

/// A SoundFont player in a host slot. It understands GM, GM2, GS and XG songs (see SynthParts.h). The
/// same messages at the same frames make the same bytes, as long as it renders from its start or a
/// `Reset` on. A message takes effect with the next block of 64 frames that is begun.
class FluidSynthInstrument final : public IHostedInstrument {
 public:
  /// Loads a bank (path, UTF-8); without a path the first of the system's General MIDI banks. Raises
  /// TAudioError with a text for the user if there is none or it cannot be read.
  [[nodiscard]] static std::unique_ptr<FluidSynthInstrument> Load(const std::string& bankFile = {});
  ~FluidSynthInstrument() override;

  [[nodiscard]] std::string Name() const override;
  [[nodiscard]] std::int32_t UniqueID() const override;
  [[nodiscard]] int InitDelay() const override { return 0; }
  void SendMidiData(std::uint8_t status, std::uint8_t data1, std::uint8_t data2) override;
  void SendSysex(std::span<const std::uint8_t> message) override;
  void Render(std::span<float> stereo) override;
  void Reset() override;
  [[nodiscard]] std::vector<std::uint8_t> GetChunk() const override;
  /// A chunk's bank that cannot be read any more leaves the present one in place; the rest of the
  /// chunk is taken over all the same.
  bool SetChunk(std::span<const std::uint8_t> chunk) override;

  [[nodiscard]] std::string BankFile() const;
  /// Loudness of the whole, 0 to 10; 0.2 at the start. A bank's dense songs stay below full scale by
  /// it.
  [[nodiscard]] float Gain() const;
  void SetGain(float gain);
  [[nodiscard]] int ActiveVoices() const;

 private:
  class Player;
  explicit FluidSynthInstrument(std::unique_ptr<Player> p);

  std::unique_ptr<Player> player;
};

}  // namespace Sonarello
