// Sonarello: an output for instruments that are not connected.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "playback/MidiDriver.h"

namespace Sonarello {

/// A MIDI system with one more output, which swallows what it is sent, so that a song can be prepared
/// for an instrument that stands somewhere else.
class SilentOutput final : public IMidiDriver {
 public:
  static constexpr const char* Name = "Virtual MIDI";

  explicit SilentOutput(IMidiDriver& d) : driver(d) {}
  [[nodiscard]] std::string ApiName() const override { return driver.ApiName(); }
  [[nodiscard]] std::vector<std::string> InputNames() override { return driver.InputNames(); }
  [[nodiscard]] std::vector<std::string> OutputNames() override;
  [[nodiscard]] std::unique_ptr<IDriverOutput> OpenOutput(int device) override;
  [[nodiscard]] std::unique_ptr<IDriverInput> OpenInput(int device,
                                                        TDriverInputCallback callback) override {
    return driver.OpenInput(device, std::move(callback));
  }
  /// True if the system has an output of its own.
  [[nodiscard]] bool HasRealOutput() { return !driver.OutputNames().empty(); }

 private:
  IMidiDriver& driver;
  int own = 0;  ///< number of the silent output: behind those of the system
};

}  // namespace Sonarello
