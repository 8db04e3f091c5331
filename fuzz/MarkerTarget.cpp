#include <array>
#include <string>

#include "InputReader.h"
#include "Targets.h"
#include "core/EventList.h"
#include "core/Markers.h"

namespace Sonarello::Fuzz {

namespace {

/// Routes of every kind, with names and IDs that occur twice.
std::span<const TMidiRouting> AllRoutes() {
  static const std::array<TMidiRouting, 7> routes = [] {
    std::array<TMidiRouting, 7> table;
    table[0].Instrument = table[1].Instrument = "Yamaha Genos";
    table[1].OutputName = "USB MIDI 1";
    table[1].Delay = 25;
    table[2].Instrument = "Ketron SD2/SD4";
    table[3].Instrument = "Limex Tradition Exclusiv 200v3";
    table[3].OutputName = "b";
    table[4].VSTi = table[5].VSTi = table[6].VSTi = true;
    table[4].VSTiUniqueID = -1;
    table[5].VSTiUniqueID = table[6].VSTiUniqueID = 1349350499;
    table[6].OutputName = "Synth 2";
    return table;
  }();
  return routes;
}

void Demand(bool condition, const char* what) {
  if (!condition) throw Fault(what);
}

bool IsChannelMarker(const TMarker& marker) {
  return marker.What == TMarker::Kind::Route || marker.What == TMarker::Kind::HostedRoute;
}

/// A marker written as the writer of songs does and read again says the same.
void CheckRewritten(const TMarker& marker) {
  if (!IsChannelMarker(marker) || marker.Channel == 0) return;
  const char* prefix = marker.What == TMarker::Kind::Route ? "SRL_ch." : "SRLvsti_ch.";
  const std::string text = prefix + std::to_string(marker.Channel) + " " + marker.Instrument + "///" +
                           marker.OutputName + (marker.Drums ? "_Drums" : "");
  const std::optional<TMarker> again = ParseMarker(text);
  Demand(again && again->Channel == marker.Channel, "a rewritten marker loses its channel");
  // Marks inside the names themselves are read as marks; such names are not ours.
  for (const std::string& name : {marker.Instrument, marker.OutputName})
    if (name.find("_Drums") != name.npos || name.find("/") != name.npos) return;
  Demand(again->Drums == marker.Drums && again->OutputName == marker.OutputName &&
             again->Instrument == marker.Instrument,
         "a rewritten marker says something else");
}

void CheckApplied(std::string_view text, std::span<const TMidiRouting> routes,
                  const std::optional<TMarker>& marker, int route) {
  Song song;
  song.NumberOfSourceTracks = 1;
  song.MidiTrack.resize(1);
  song.KeySignArray.resize(1);
  song.MidiFileLoaded = true;
  TMyTrack& track = song.MidiTrack[0];
  BeginTrack(song.Pool, track);
  const PtrMidiEvent event = NewMeta(song.Pool, MetaInstrumentName, text, 0);
  Append(track, event);
  EndTrack(song.Pool, track, song.MaxSongPosition);
  ApplyMarker(song, 0, event, routes);
  Demand(event->Meta.Text() == text, "the text of a marker changes");
  const bool removed = event->DLength == 0 && !text.empty();
  Demand(removed == (marker && marker->What != TMarker::Kind::Ignore),
         "removed although it is no marker of ours");
  Demand(track.TrkIgnore == (marker && marker->What == TMarker::Kind::Ignore),
         "a track is held out wrongly");
  for (std::size_t i = 0; i < ChannelCount; ++i) {
    const bool meant = marker && IsChannelMarker(*marker) && marker->Channel == static_cast<int>(i) + 1;
    const int wanted = meant && route > 0 ? route : 0;
    Demand(song.MidiOutIndex[i] == wanted, "a channel plays through the wrong route");
    Demand((song.MidiData[i].DrumPart != 0) == (meant && marker->Drums),
           "a drum part is marked wrongly");
  }
  Demand(CheckSong(song).empty(), "a marker breaks the song");
}

}  // namespace

void FuzzMarker(Input input) {
  InputReader in(input);
  const std::span<const TMidiRouting> all = AllRoutes();
  const std::span<const TMidiRouting> routes = all.first(1 + in.Byte() % all.size());
  const std::string_view text = in.Text();
  const std::optional<TMarker> marker = ParseMarker(text);
  int route = -1;
  if (marker) {
    Demand(marker->Channel >= 0 && marker->Channel <= ChannelCount, "a channel beyond the sixteen");
    Demand(marker->DrumForm == 0 || marker->DrumForm == 2 || marker->DrumForm == 3,
           "no such drum form");
    route = RouteOfMarker(*marker, routes);
    Demand(route >= -1 && route < static_cast<int>(routes.size()), "a route that does not exist");
    CheckRewritten(*marker);
  }
  CheckApplied(text, routes, marker, route);
}

}  // namespace Sonarello::Fuzz
