// Sonarello: an eye on a JACK server.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace Sonarello {

/// Keeps something for the rest of the program. For what belongs to a JACK server that died: the JACK
/// library frees all clients of a dead server by itself when anybody in the program, our audio
/// included, looks for a server again. Closing such a client then would be closing freed memory.
template <class T>
void Abandon(std::unique_ptr<T> thing) {
  static std::mutex guard;
  static auto* const kept = new std::vector<std::unique_ptr<T>>;
  const std::lock_guard lock(guard);
  kept->push_back(std::move(thing));
}

/// A silent client of a JACK server that sees what the MIDI library does not tell: whether the server
/// lives, whether its cycles go on, which ports there are. All but `Connect` may be called by any
/// thread; but for `Ports` and `AwaitCycles`, none takes longer than a look into memory.
class JackWatch {
 public:
  /// Null if no server runs; starts none. Prints nothing, and makes the JACK library print nothing.
  [[nodiscard]] static std::shared_ptr<JackWatch> Connect(const std::string& clientName);
  ~JackWatch();
  JackWatch(const JackWatch&) = delete;
  JackWatch& operator=(const JackWatch&) = delete;

  [[nodiscard]] bool Alive() const noexcept;
  /// Cycles of the server since the connection; wraps.
  [[nodiscard]] std::uint32_t Cycles() const noexcept;
  /// Cycles until what was connected just now carries data for certain, and until no cycle of before
  /// is under way any more.
  static constexpr std::uint32_t ConnectionDelay = 3;
  /// Waits for so many cycles, a second at most.
  void AwaitCycles() const;
  [[nodiscard]] bool HasPort(const std::string& name) const;
  /// Full names of all MIDI ports that receive (`inputs` of their clients) or that send.
  [[nodiscard]] std::vector<std::string> Ports(bool inputs) const;

 private:
  struct State;
  explicit JackWatch(std::unique_ptr<State> opened);
  std::unique_ptr<State> state;
};

}  // namespace Sonarello
