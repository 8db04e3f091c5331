#include "core/ProgramSetup.h"

#include <algorithm>

#include "core/EventList.h"

namespace Sonarello {

namespace {

constexpr std::int32_t Step = 2;           ///< ticks between MSB, LSB and program
constexpr std::int32_t DoubledWithin = 5;  ///< ticks
constexpr std::int32_t LatestUnmoved = 8;  ///< banks of programs up to this tick stay where they are
constexpr int DrumChannel = 9;

TMyTrack& TrackAt(Song& song, std::int32_t index) {
  return song.MidiTrack[static_cast<std::size_t>(index)];
}

/// A tick of the setup, which in a short song of a fine time base would lie behind the last event. A
/// song may not grow by being opened.
std::int32_t InsideSong(const Song& song, std::int32_t tick) {
  return std::min(tick, song.MaxSongPosition - SongTail);
}

}  // namespace

void MovePrograms(Song& song) {
  if (song.MaxSongPosition <= 999) return;
  const std::int32_t window = song.SourceTimeBase * 300 / 384;
  std::vector<PtrMidiEvent> moved;
  for (std::int32_t t = 0; t < song.NumberOfSourceTracks; ++t) {
    TMyTrack& track = TrackAt(song, t);
    if (track.TrkIgnore) continue;
    moved.clear();
    for (PtrMidiEvent e = track.TrkFirstEvent; e != nullptr && e->Position < window;) {
      PtrMidiEvent next = e->NextEvent;
      const bool program = e->IsChannelEvent() && e->Kind() == ProgramChange;
      if (program && e != song.PromptaRemotePatch) {
        const std::int32_t from = e->Position;
        Unlink(track, e);
        e->Position = InsideSong(song, window + e->Channel() * 4 + 2);
        moved.push_back(e);
        LogMove(song, t, *e, from, "Klänge werden hinter dem Setup gesetzt",
                "sounds are set behind the setup");
      }
      e = next;
    }
    InsertBatch(track, moved);
  }
}

void EnsureDrumProgram(Song& song, TProgramIndex& programs) {
  if (!song.MidiData[DrumChannel].Active || song.FirstPatches[DrumChannel] != nullptr) return;
  int t = song.MidiFileFormat == 0 ? 0 : TrackOfChannel(song, DrumChannel);
  if (t < 0) t = TrackOfChannel(song, ChannelCount);
  if (t < 0) return;
  TMyTrack& track = TrackAt(song, t);
  PtrMidiEvent e = NewChannelEvent(song.Pool, ProgramChange | DrumChannel, 0, 0,
                                   InsideSong(song, song.SourceTimeBase * 338 / 384));
  InsertByPosition(track, e);
  song.FirstPatches[DrumChannel] = e;
  auto& index = programs[DrumChannel];
  const auto behind = [](std::int32_t tick, const TProgramEvent& p) {
    return tick < p.Event->Position;
  };
  index.insert(std::upper_bound(index.begin(), index.end(), e->Position, behind), {e, t});
  LogChange(song, ChangeKind::Inserted, t, *e, "Kanal 10 hat keinen Programmwechsel",
            "channel 10 has no program change");
}

namespace {

/// Normalises one channel. Events that move or come in are gathered and linked in one walk a track.
class ChannelNormaliser {
 public:
  ChannelNormaliser(Song& s, int c, TBank m, std::vector<std::vector<PtrMidiEvent>>& moves)
      : song(s), channel(c), missing(m), pending(moves) {}

  void DropDoubled(std::vector<TProgramEvent>& events) {
    TProgramEvent* previous = nullptr;
    for (TProgramEvent& p : events) {
      if (p.Event->Kind() != ProgramChange) continue;
      if (previous != nullptr && p.Event->Position - previous->Event->Position < DoubledWithin) {
        LogChange(song, ChangeKind::Dropped, previous->Track, *previous->Event,
                  "doppelter Programmwechsel", "doubled program change");
        Neutralise(previous->Event);
      }
      previous = &p;
    }
    std::erase_if(events, [](const TProgramEvent& p) { return p.Event->IsRemoved(); });
  }

  void Run(const std::vector<TProgramEvent>& events, bool repair) {
    TMidiChannelData& data = song.MidiData[static_cast<std::size_t>(channel)];
    TProgramEvent msb;
    TProgramEvent lsb;
    for (const TProgramEvent& p : events) {
      if (p.Event->Kind() != ProgramChange) {
        TProgramEvent& kept = p.Event->Value[0] == 0 ? msb : lsb;
        if (repair) DropBank(kept);
        kept = p;
        continue;
      }
      if (repair) {
        PutBank(msb, p, 0, missing.MSB, 2 * Step);
        PutBank(lsb, p, 32, missing.LSB, Step);
      }
      data.CtrlArray[0] = InForce(msb);
      data.CtrlArray[32] = InForce(lsb);
      data.Patch = static_cast<std::int8_t>(p.Event->Value[0]);
      data.PatchEvent = p.Event;
      msb = lsb = {};
    }
  }

 private:
  static TCtrl InForce(const TProgramEvent& bank) {
    return bank.Event == nullptr ? TCtrl{} : TCtrl{bank.Event, bank.Event->Value[1]};
  }

  void DropBank(const TProgramEvent& bank) {
    if (bank.Event == nullptr) return;
    LogChange(song, ChangeKind::Dropped, bank.Track, *bank.Event, "überholte Bankwahl",
              "bank select that another one replaces");
    Neutralise(bank.Event);
  }

  std::vector<PtrMidiEvent>& PendingOf(std::int32_t track) {
    if (pending.empty()) pending.resize(song.MidiTrack.size());
    return pending[static_cast<std::size_t>(track)];
  }

  /// Links a bank select by its position. The place is mostly a few nodes in front of the program;
  /// where events crowd, it is left to the one walk over the track.
  void Place(const TProgramEvent& bank, const TProgramEvent& program) {
    constexpr int farthest = 64;  // nodes
    PtrMidiEvent place = bank.Track == program.Track ? program.Event->PrevEvent : nullptr;
    for (int n = 0; n < farthest && place != nullptr && place->Position > bank.Event->Position; ++n)
      place = place->PrevEvent;
    if (place != nullptr && place->Position <= bank.Event->Position)
      InsertByPosition(TrackAt(song, bank.Track), bank.Event, place);
    else
      PendingOf(bank.Track).push_back(bank.Event);
  }

  /// Brings a bank select `distance` ticks in front of its program, or makes the missing one.
  void PutBank(TProgramEvent& bank, const TProgramEvent& program, std::uint8_t controller,
               std::uint8_t value, std::int32_t distance) {
    const std::int32_t at = program.Event->Position;
    if (bank.Event == nullptr) {
      const std::int32_t tick = at < 2 * Step ? 1 : at - distance;
      bank = {NewChannelEvent(song.Pool, static_cast<std::uint8_t>(Controller | channel), controller,
                              value, tick),
              program.Track};
      LogChange(song, ChangeKind::Inserted, bank.Track, *bank.Event, "Bankwahl fehlte",
                "bank select was missing");
      // At the program's own tick the bank goes in front of it.
      if (tick == at)
        return LinkBehind(TrackAt(song, program.Track), program.Event->PrevEvent, bank.Event);
      return Place(bank, program);
    }
    const std::int32_t from = bank.Event->Position;
    bank.Event->ValueOrg = bank.Event->Value;
    if (at <= LatestUnmoved || from == at - distance) return;
    Unlink(TrackAt(song, bank.Track), bank.Event);
    bank.Event->Position = at - distance;
    Place(bank, program);
    LogMove(song, bank.Track, *bank.Event, from, "Bankwahl steht vor dem Programmwechsel",
            "bank select stands in front of its program");
  }

  Song& song;
  int channel;
  TBank missing;
  std::vector<std::vector<PtrMidiEvent>>& pending;
};

}  // namespace

void NormalisePrograms(Song& song, TProgramIndex& programs, bool repair,
                       const std::function<TBank(const Song&, int)>& missing) {
  std::vector<std::vector<PtrMidiEvent>> pending;
  for (int c = 0; c < ChannelCount; ++c) {
    ChannelNormaliser channel(song, c, missing ? missing(song, c) : TBank{}, pending);
    auto& events = programs[static_cast<std::size_t>(c)];
    channel.DropDoubled(events);
    channel.Run(events, repair);
  }
  for (std::size_t t = 0; t < pending.size(); ++t) InsertBatch(song.MidiTrack[t], pending[t]);
}

}  // namespace Sonarello
