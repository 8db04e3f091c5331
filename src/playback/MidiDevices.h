// Sonarello: device numbers and names of MIDI ports.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "playback/MidiType.h"

namespace Sonarello {

/// True for a number of one of the devices and for the mapper.
[[nodiscard]] inline bool IsDevice(const std::vector<std::string>& names, std::int32_t id) {
  return id == MidiMapper || (id >= 0 && static_cast<std::size_t>(id) < names.size());
}

[[nodiscard]] inline std::string DeviceName(const std::vector<std::string>& names, std::int32_t id) {
  return id == MidiMapper ? MidiMapperName : names[static_cast<std::size_t>(id)];
}

/// The number that a chosen device has now. Devices come and go, and then the numbers of others move:
/// the name decides, so that nothing is sent to a device that took the number of another. The mapper
/// is device 0. -1 if the device is gone.
[[nodiscard]] inline std::int32_t DeviceNow(const std::vector<std::string>& names, std::int32_t id,
                                            const std::string& name) {
  if (id == MidiMapper) {
    return 0;
  }
  const auto index = static_cast<std::size_t>(id);
  if (index < names.size() && names[index] == name) {
    return id;
  }
  const auto found = std::find(names.begin(), names.end(), name);
  return found == names.end() ? -1 : static_cast<std::int32_t>(found - names.begin());
}

}  // namespace Sonarello
