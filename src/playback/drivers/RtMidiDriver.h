// Sonarello: MIDI ports of the system.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "playback/MidiDriver.h"

namespace Sonarello {

/// The ports of ALSA, or of JACK where there is no ALSA sequencer. With neither it has no devices and
/// is called "none", and looks for them anew whenever names are asked for. Nothing is ever printed.
///
/// An output's `Send` waits where the system has no room for the moment, at most a second, and loses
/// nothing in silence: it raises `InvalidHandle` once the port or the server is gone, `NotReady` if no
/// room comes free, `InvalidParameter` for bytes that are no MIDI.
class RtMidiDriver : public IMidiDriver {
 public:
  enum class TSystem { Any, Alsa, Jack };

  /// `clientName`: how other programs see us. Ports of clients with names that begin so are not listed:
  /// an input of ours is nobody's output. `system`: the only one that may be taken.
  explicit RtMidiDriver(std::string clientName = "Sonarello", TSystem system = TSystem::Any);
  ~RtMidiDriver() override;
  RtMidiDriver(const RtMidiDriver&) = delete;
  RtMidiDriver& operator=(const RtMidiDriver&) = delete;

  /// "ALSA", "JACK" or "none", as found when names were asked for last.
  [[nodiscard]] std::string ApiName() const override;
  [[nodiscard]] std::vector<std::string> InputNames() override;
  [[nodiscard]] std::vector<std::string> OutputNames() override;
  [[nodiscard]] std::unique_ptr<IDriverOutput> OpenOutput(int device) override;
  [[nodiscard]] std::unique_ptr<IDriverInput> OpenInput(int device,
                                                        TDriverInputCallback callback) override;

 private:
  struct Session;
  /// The running MIDI system, found anew if there was none or it has died; null if there is none.
  Session* Current();

  const std::string client;
  const TSystem wanted;
  std::unique_ptr<Session> session;
  std::vector<std::string> inputs;
  std::vector<std::string> outputs;
};

}  // namespace Sonarello
