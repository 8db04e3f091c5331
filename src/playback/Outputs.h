// Sonarello: where the messages of a route go.
#pragma once

#include <cstdint>
#include <span>

namespace Sonarello {

/// The outputs of the routes, by their index. The program's are ports and hosted instruments; tests
/// have one that writes down what comes.
class IOutputs {
 public:
  virtual ~IOutputs() = default;
  /// Opens every port of the routes that are no hosted instruments. False if one did not open; its
  /// error has been raised or told by then.
  virtual bool OpenAll() = 0;
  /// Opens the port of one route; true for a hosted instrument and a port that is open already.
  virtual bool Open(int route) = 0;
  [[nodiscard]] virtual bool IsOpen(int route) const = 0;
  virtual void CloseAll() = 0;
  /// A short message. Raises EMidiOutputError.
  virtual void SendShort(int route, std::uint8_t status, std::uint8_t data1, std::uint8_t data2) = 0;
  /// A whole sysex, from F0 to F7, or the bytes behind an F7 escape. Raises EMidiOutputError.
  virtual void SendLong(int route, std::span<const std::uint8_t> message) = 0;
};

}  // namespace Sonarello
