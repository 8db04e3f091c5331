// Sonarello: what the system's MIDI is asked for. Implemented in drivers/, and by a double in tests.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace Sonarello {

/// A failed call of the system's MIDI: its number (0: none known) and its own words.
class TDriverError : public std::runtime_error {
 public:
  TDriverError(int n, const std::string& text) : std::runtime_error(text), Number(n) {}
  int Number;
};

/// Error numbers that ports have words for.
enum DriverErrorNumber : int {
  BadDeviceId = 2,
  InvalidHandle = 5,
  NoMemory = 7,
  NotSupported = 8,
  InvalidFlag = 10,
  InvalidParameter = 11,
  NotPrepared = 64,
  StillPlaying = 65,
  NotReady = 67,
  BadOpenMode = 70,
};

/// An open output of the system. Closed when it goes. Calls come from one thread at a time.
class IDriverOutput {
 public:
  virtual ~IDriverOutput() = default;
  /// Sends one whole message: a short one, or a sysex from F0 to F7. Raises TDriverError.
  virtual void Send(std::span<const std::uint8_t> message) = 0;
};

/// An open input of the system. Closed when it goes; after that its callback is not called any more.
class IDriverInput {
 public:
  virtual ~IDriverInput() = default;
};

/// Called on a thread of the system for each incoming message, with its time in milliseconds since the
/// input was opened. Must neither wait nor allocate.
using TDriverInputCallback =
    std::function<void(std::uint32_t milliseconds, std::span<const std::uint8_t> message)>;

/// One MIDI system (ALSA, JACK, none). Device numbers count from 0 in the order of the names and hold
/// until the names are asked for again.
class IMidiDriver {
 public:
  virtual ~IMidiDriver() = default;
  [[nodiscard]] virtual std::string ApiName() const = 0;
  [[nodiscard]] virtual std::vector<std::string> InputNames() = 0;
  [[nodiscard]] virtual std::vector<std::string> OutputNames() = 0;
  /// Opens a device. Raises TDriverError, for a number out of range with `BadDeviceId`.
  [[nodiscard]] virtual std::unique_ptr<IDriverOutput> OpenOutput(int device) = 0;
  [[nodiscard]] virtual std::unique_ptr<IDriverInput> OpenInput(int device,
                                                                TDriverInputCallback callback) = 0;
};

}  // namespace Sonarello
