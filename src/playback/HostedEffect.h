// Sonarello: an effect that works on the whole sound inside the program.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace Sonarello {

/// A software effect in a host slot. Processing happens on one thread at a time and allocates nothing.
class IHostedEffect {
 public:
  virtual ~IHostedEffect() = default;
  [[nodiscard]] virtual std::string Name() const = 0;
  [[nodiscard]] virtual std::int32_t UniqueID() const = 0;
  /// Frames at 44,100 Hz by which its sound comes late.
  [[nodiscard]] virtual int InitDelay() const = 0;
  /// Number of the program that is set, -1 if it has none.
  [[nodiscard]] virtual int Program() const = 0;
  /// Works on the next frames in place: left and right in turn, at 44,100 Hz.
  virtual void Process(std::span<float> stereo) = 0;
  /// Forgets all sound that it still holds.
  virtual void Reset() = 0;
  [[nodiscard]] virtual std::vector<std::uint8_t> GetChunk() const = 0;
  virtual bool SetChunk(std::span<const std::uint8_t> chunk) = 0;
};

}  // namespace Sonarello
