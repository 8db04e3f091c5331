// Sonarello: parts that several results share as JSON.
#pragma once

#include <nlohmann/json.hpp>

#include "SongFacts.h"
#include "instruments/SoundList.h"

namespace Sonarello {

using Json = nlohmann::ordered_json;

[[nodiscard]] inline Json PlaceJson(const Place& place) {
  return {{"tick", place.Tick}, {"position", place.Text}, {"milliseconds", place.Milliseconds}};
}

/// A number of an address; null if it is not set.
[[nodiscard]] inline Json NumberJson(int number) { return number < 0 ? Json(nullptr) : Json(number); }

[[nodiscard]] inline Json AddressJson(const TAddress& address) {
  return {{"msb", NumberJson(address.CC00)},
          {"lsb", NumberJson(address.CC32)},
          {"program", NumberJson(address.Patch)}};
}

}  // namespace Sonarello
