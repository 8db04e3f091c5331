// Sonarello: an instrument that plays inside the program.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace Sonarello {

/// A software instrument in a host slot: a plug-in, or the built-in synthesizer. Messages may come from
/// any thread; rendering happens on one thread at a time. Neither allocates once the instrument is
/// ready, but for sysex longer than what it keeps room for.
class IHostedInstrument {
 public:
  virtual ~IHostedInstrument() = default;
  [[nodiscard]] virtual std::string Name() const = 0;
  [[nodiscard]] virtual std::int32_t UniqueID() const = 0;
  /// Frames at 44,100 Hz by which its sound comes late.
  [[nodiscard]] virtual int InitDelay() const = 0;
  /// A short message; takes effect with the next frame that is rendered.
  virtual void SendMidiData(std::uint8_t status, std::uint8_t data1, std::uint8_t data2) = 0;
  /// A whole sysex, from F0 to F7.
  virtual void SendSysex(std::span<const std::uint8_t> message) = 0;
  /// Renders the next frames: left and right in turn, at 44,100 Hz. Overwrites the buffer.
  virtual void Render(std::span<float> stereo) = 0;
  /// Silences it at once and takes it back to the state of its start.
  virtual void Reset() = 0;
  /// Its whole state as bytes, and back. False if the bytes are none of its own.
  [[nodiscard]] virtual std::vector<std::uint8_t> GetChunk() const = 0;
  virtual bool SetChunk(std::span<const std::uint8_t> chunk) = 0;
};

inline constexpr int AudioSampleRate = 44100;
inline constexpr int AudioChannels = 2;

}  // namespace Sonarello
