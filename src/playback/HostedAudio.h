// Sonarello: hosted sound as the player sees it.
#pragma once

namespace Sonarello {

/// The audio that hosted instruments sound through. The player keeps it fed, by the millisecond.
class IHostedAudio {
 public:
  virtual ~IHostedAudio() = default;
  /// True if hosted audio is enabled, in use by a route, loaded and playing.
  [[nodiscard]] virtual bool IsRunning() const = 0;
  /// Renders the next bytes (8 a frame) into the device's queue.
  virtual void PutNewData(int bytes) = 0;
  /// Throws away what is queued.
  virtual void ClearQueue() = 0;
  /// Lets `buffers` buffers of the device pass; then `IsStartDue` tells that the song may start.
  virtual void DelayStart(int buffers) = 0;
  [[nodiscard]] virtual bool IsStartDue() = 0;
  /// Length of the device's buffer, ms.
  [[nodiscard]] virtual int BufferTime() const = 0;
};

/// Bytes of stereo float frames in a millisecond of the position: 44 frames, and 45 at every tenth,
/// which makes exactly 44,100 a second.
[[nodiscard]] constexpr int BytesOfMillisecond(int position) noexcept {
  return position % 10 == 0 ? 360 : 352;
}

}  // namespace Sonarello
