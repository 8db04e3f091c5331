#include "core/Song.h"

#include <utility>

namespace Sonarello {

namespace {

/// Catalogue numbers of the instruments that have an effect memory.
struct TDSPTrackRow {
  int InstrumValue;
  TMyTrack Song::TDSPTracks::*Track;
};
using Tracks = Song::TDSPTracks;
constexpr TDSPTrackRow DSPTrackRows[] = {
    {9, &Tracks::Tyros1DSPTrack},   {26, &Tracks::MotifESDSPTrack},  {31, &Tracks::Tyros2DSPTrack},
    {41, &Tracks::PSRS900DSPTrack}, {51, &Tracks::MotifXSDSPTrack},  {54, &Tracks::Tyros3DSPTrack},
    {59, &Tracks::PSRS910DSPTrack}, {62, &Tracks::Tyros4DSPTrack},   {69, &Tracks::MotifXFDSPTrack},
    {70, &Tracks::PSRS950DSPTrack}, {74, &Tracks::Tyros5DSPTrack},   {80, &Tracks::PSRS970DSPTrack},
    {87, &Tracks::GenosDSPTrack},   {97, &Tracks::PSRSX900DSPTrack},
};

void ForgetList(TMyTrack& track) {
  track.TrkEventCounter = 0;
  track.TrkFirstEvent = track.TrkLastEvent = track.TrkPlayEvent = track.TrkLoopStart = nullptr;
  track.TrkCopyRDest = track.TrkCopyRFirst = track.TrkCopyRLast = nullptr;
  track.TrkCopyRDestArr.reset();
  track.TrkCopyRFirstArr.reset();
  track.TrkCopyRLastArr.reset();
}

}  // namespace

const TMyTrack* Song::DSPTrackOf(int instrumValue) const noexcept {
  for (const TDSPTrackRow& row : DSPTrackRows)
    if (row.InstrumValue == instrumValue) return &(DSPTracks.*row.Track);
  return nullptr;
}

TMyTrack* Song::DSPTrackOf(int instrumValue) noexcept {
  return const_cast<TMyTrack*>(std::as_const(*this).DSPTrackOf(instrumValue));
}

void Song::ClearMidiMemory() {
  ForgetReferences();
  for (TMyTrack& track : MidiTrack) ForgetList(track);
  MidiFileLoaded = false;
  for (TMidiChannelData& channel : MidiData) channel.Active = false;
  // The effect memories' nodes come from the same pool, so the sweep takes them with the song's.
  for (const TDSPTrackRow& row : DSPTrackRows) ForgetList(DSPTracks.*row.Track);
  Pool.ReleaseAll();
}

void Song::ResetChannels() {
  for (int c = 0; c < ChannelCount; ++c) {
    MidiData[c] = TMidiChannelData{};
    MidiData[c].MidiChannel = static_cast<std::int8_t>(c);
  }
  FirstPatches.fill(nullptr);
  for (auto& channel : FirstControllers) channel.fill(nullptr);
  MidiOutIndex.fill(0);
  VelocityDelta.fill(0);
  ManualTransposeArray.fill(0);
  TransposeNew = 0;
  NotesVelocities.fill({});
}

void Song::ForgetReferences() noexcept {
  ForEachReference([](PtrMidiEvent& e) { e = nullptr; });
}

}  // namespace Sonarello
