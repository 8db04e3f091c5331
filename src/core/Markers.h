// Sonarello: the program's own marks in instrument-name metas.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "core/Song.h"

namespace Sonarello {

/// What an instrument-name text says: "SRL_ch.3 Yamaha Genos_Drums///USB MIDI 1" and its kin.
struct TMarker {
  enum class Kind { Route, HostedRoute, DrumForce, Ignore };
  Kind What = Kind::Route;
  int Channel = 0;         ///< 1-16; 0 if the text names none
  bool Drums = false;      ///< the channel is a drum part
  std::string Instrument;  ///< name, or the plug-in's ID for a hosted route
  std::string OutputName;
  bool HasOutput = false;  ///< an output is named
  int DrumForm = 0;        ///< 2 or 3: that drum editor's channel is forced to 10; 0 says nothing
};

/// Reads a marker; none if the text begins with no prefix of ours. Case counts.
[[nodiscard]] std::optional<TMarker> ParseMarker(std::string_view text);

/// The route that a channel marker means, or -1. Name and output together win over the name alone; the
/// first hit counts.
[[nodiscard]] int RouteOfMarker(const TMarker& marker, std::span<const TMidiRouting> routes);

/// The current name of an instrument that was renamed since it was written into songs.
[[nodiscard]] std::string_view CurrentInstrumentName(std::string_view name);

/// Obeys the marker in an instrument-name event of a track, if it holds one. A marker that the writer
/// builds anew is marked as removed, so that markers do not pile up.
void ApplyMarker(Song& song, int track, PtrMidiEvent event, std::span<const TMidiRouting> routes);

}  // namespace Sonarello
