#include <string>

#include "core/EventList.h"
#include "core/OpenPipeline.h"
#include "core/Texts.h"

namespace Sonarello {

namespace {

/// The same closing request for every fault; it names the first kind in all cases.
std::string Request() {
  return Text("\rBitte senden Sie diese Datei mit dem Hinweis \"Pointer-Error\" an den Support.",
              "\rPlease send this file to support stating \"Pointer-Error\".");
}

std::string PositionFault(int t, const TypMidiEvent& e) {
  const std::string channel = e.IsChannelEvent() ? std::to_string(e.Channel() + 1) : "-";
  return Text("Position-Fehler beim Laden des Midifiles:\rSpur: " + std::to_string(t) +
                  " Midikanal: " + channel + " Position: " + std::to_string(e.Position),
              "Position-Error opening the midifile!");
}

/// What is wrong with an event and its link to the next one; empty if nothing is.
std::string FaultOf(int t, const TypMidiEvent& e) {
  const std::string ms = std::to_string(e.TimePosition);
  const PtrMidiEvent next = e.NextEvent;
  if (next != nullptr && next->PrevEvent != &e)
    return Text("Pointer-Fehler auf Spur " + std::to_string(t) + " bei Position " +
                    std::to_string(e.Position) + " / " + ms,
                "Pointer-Error opening the midifile!");
  if (next != nullptr && next->Position < e.Position) return PositionFault(t, e);
  if (e.Value[0] > 127)
    return Text("Midi-Wert-1 grösser als 127 bei " + ms + "ms!",
                "Midi-Value-1 greater than 127 at " + ms + "ms!");
  if (e.Value[1] > 127)
    return Text("Midi-Wert-2 grösser als 127 bei " + ms + "ms!",
                "Midi-Value-2 greater than 127 at " + ms + "ms!");
  return {};
}

}  // namespace

std::string ListFault(const Song& song) {
  for (int t = 0; t < song.NumberOfSourceTracks; ++t) {
    const TMyTrack& track = song.MidiTrack[static_cast<std::size_t>(t)];
    for (PtrMidiEvent e = track.TrkFirstEvent; e != nullptr; e = Following(e)) {
      const PtrMidiEvent next = e->NextEvent;
      const bool sound = next == nullptr || (next->PrevEvent == e && next->Position >= e->Position);
      if (sound && ((e->Value[0] | e->Value[1]) & 0x80) == 0) continue;
      return FaultOf(t, *e) + Request();
    }
  }
  return {};
}

}  // namespace Sonarello
