// Sonarello: failures of MIDI ports.
#pragma once

#include <stdexcept>

namespace Sonarello {

/// A failure of a MIDI input. what() is a text for the user.
class EMidiInputError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A failure of a MIDI output. what() is a text for the user.
class EMidiOutputError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace Sonarello
