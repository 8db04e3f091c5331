// Sonarello: the light of the MIDI input.
#pragma once

#include <string>

#include "core/Ports.h"
#include "playback/MidiIn.h"

namespace Sonarello {

/// Listens to the chosen MIDI input and tells whether something came. Main thread.
class TMidiInMonitor {
 public:
  explicit TMidiInMonitor(IMidiDriver& midi) : driver(midi) {}

  /// Listens to the input of a name, or to none. An input that is not there or does not open is none;
  /// why it did not open is `Failure`.
  void Listen(const std::string& name);
  [[nodiscard]] bool IsListening() const { return input != nullptr; }
  [[nodiscard]] const std::string& Name() const { return listened; }
  [[nodiscard]] const std::string& Failure() const { return failure; }
  /// True if a message came since the last call; called every 100 ms.
  bool TakeActivity();

 private:
  IMidiDriver& driver;
  std::unique_ptr<TMidiInput> input;
  std::string listened;
  std::string failure;
};

}  // namespace Sonarello
