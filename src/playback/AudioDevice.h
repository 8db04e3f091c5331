// Sonarello: what the system's audio is asked for. Implemented in drivers/, and by a paced null device.
#pragma once

#include <functional>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace Sonarello {

/// A failure of the system's audio, in its own words.
class TAudioError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Fills a buffer of stereo frames, left and right in turn. Called on a thread of the device; it must
/// neither wait nor allocate.
using TAudioCallback = std::function<void(std::span<float> stereo)>;

/// An output that is playing. Stops when it goes; after that its callback is not called any more.
class IAudioStream {
 public:
  virtual ~IAudioStream() = default;
  [[nodiscard]] virtual int BufferFrames() const = 0;
  /// Frames between the callback and the ear, the buffer included, as far as the system tells.
  [[nodiscard]] virtual int LatencyFrames() const = 0;
};

/// One audio system.
class IAudioDriver {
 public:
  virtual ~IAudioDriver() = default;
  [[nodiscard]] virtual std::string ApiName() const = 0;
  [[nodiscard]] virtual std::vector<std::string> DeviceNames() = 0;
  /// Opens and starts a device at 44,100 Hz, stereo; number as in the names. Raises TAudioError.
  [[nodiscard]] virtual std::unique_ptr<IAudioStream> Start(int device, int bufferFrames,
                                                            TAudioCallback callback) = 0;
};

}  // namespace Sonarello
