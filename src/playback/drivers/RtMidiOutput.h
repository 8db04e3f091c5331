// Sonarello: an open output of the system.
#pragma once

#include <memory>
#include <string>

#include "playback/MidiDriver.h"

namespace Sonarello {

class JackWatch;

/// Opens an output by its name. `watch` is the server's for JACK, null for ALSA. Raises TDriverError.
[[nodiscard]] std::unique_ptr<IDriverOutput> OpenRtMidiOutput(const std::string& clientName,
                                                              const std::string& portName,
                                                              std::shared_ptr<JackWatch> watch);

}  // namespace Sonarello
