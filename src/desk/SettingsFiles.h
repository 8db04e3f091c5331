// Sonarello: the settings to and from a registry text file on disk.
#pragma once

#include <string>

#include "core/FileCalls.h"
#include "core/Ports.h"
#include "desk/MyRegistry.h"

namespace Sonarello {

/// Writes all settings into a file (path, UTF-8). False if that failed; why was shown, and a file that
/// was there is as it was.
bool ExportSettingsFile(const IRegistryStore& store, const std::string& file, IMessages& messages,
                        FileCalls& calls = FileCalls::System());

/// Reads a file, checks it whole, asks, and only then takes over what it says. False if nothing was
/// changed; why was shown unless the user said no.
bool ImportSettingsFile(IRegistryStore& store, const std::string& file, IMessages& messages);

}  // namespace Sonarello
