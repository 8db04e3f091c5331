#include "desk/SoundBrowserInsertion.h"

#include <algorithm>
#include <utility>

#include "core/EventList.h"
#include "core/Texts.h"
#include "playback/EventMessages.h"

namespace Sonarello {

namespace {

constexpr std::int32_t ChannelStep = 4;  ///< ticks between the programs of two channels

/// Tick of a program change: in the setup window, but in front of the first note.
std::int32_t SetupTick(const Song& song, int channel) {
  constexpr std::int32_t banks = 4;  // the bank selects stand up to 4 ticks in front of the program
  const std::int32_t window = song.SourceTimeBase * 300 / 384;
  const std::int32_t last = song.MaxSongPosition - SongTail;
  std::int32_t tick = std::min(window + channel * ChannelStep + 2, last);
  if (const auto note = FirstNoteOf(song, channel)) tick = std::min(tick, *note - 1);
  return std::max(tick, banks);
}

TMyTrack* TrackHolding(Song& song, const TypMidiEvent& event) {
  const TypMidiEvent* head = &event;
  while (head->PrevEvent != nullptr) head = head->PrevEvent;
  const auto track = std::ranges::find(song.MidiTrack, head, &TMyTrack::TrkFirstEvent);
  return track == song.MidiTrack.end() ? nullptr : &*track;
}

}  // namespace

std::optional<std::int32_t> FirstNoteOf(const Song& song, int channel) {
  std::optional<std::int32_t> first;
  for (std::int32_t t = 0; t < song.NumberOfSourceTracks; ++t) {
    const TMyTrack& track = song.MidiTrack[static_cast<std::size_t>(t)];
    if (track.TrkIgnore) continue;
    for (const TypMidiEvent* e = track.TrkFirstEvent; e != nullptr; e = Following(e)) {
      if (first && e->Position >= *first) break;
      if (!e->IsChannelEvent() || e->IsRemoved() || e->Channel() != channel || !StartsNote(*e))
        continue;
      first = e->Position;
      break;
    }
  }
  return first;
}

bool CanInsertPatch(const Song& song, int channel) {
  if (!song.MidiFileLoaded || channel < 0 || channel >= ChannelCount) return false;
  if (song.MidiData[static_cast<std::size_t>(channel)].Patch >= 0 || song.MidiTrack.empty())
    return false;
  return song.MidiFileFormat == 0 || TrackOfChannel(song, channel) >= 0;
}

std::string InsertPatchQuestion(int channel) {
  const std::string number = std::to_string(channel + 1);
  return Text("Soll Programmwechsel auf Kanal " + number + " eingefügt werden?",
              "Insert patch change on channel " + number + "?");
}

bool InsertPatchAtSetup(Song& song, TSoundNames& names, int channel) {
  return names.InsertPatch(channel, SetupTick(song, channel) - channel * ChannelStep);
}

bool InsertMissingBanks(Song& song, int channel, const TAddress& address) {
  const auto c = static_cast<std::size_t>(channel);
  TMidiChannelData& data = song.MidiData[c];
  PtrMidiEvent program = data.PatchEvent;
  TMyTrack* track = program == nullptr ? nullptr : TrackHolding(song, *program);
  if (track == nullptr) return false;
  bool inserted = false;
  for (const auto& [controller, value] :
       {std::pair{std::size_t{0}, address.CC00}, std::pair{std::size_t{32}, address.CC32}}) {
    TCtrl& entry = data.CtrlArray[controller];
    if (value < 0 || entry.Event != nullptr) continue;
    const auto byte = static_cast<std::uint8_t>(value);
    PtrMidiEvent bank = NewChannelEvent(song.Pool, static_cast<std::uint8_t>(Controller | channel),
                                        static_cast<std::uint8_t>(controller), byte, program->Position);
    bank->TimePosition = program->TimePosition;
    LinkBehind(*track, program->PrevEvent, bank);
    entry = {bank, byte};
    PtrMidiEvent& first = song.FirstControllers[c][controller];
    if (first == nullptr) first = bank;
    inserted = true;
  }
  return inserted;
}

}  // namespace Sonarello
