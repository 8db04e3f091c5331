#include "core/SongSysexs.h"

#include <algorithm>
#include <iterator>

namespace Sonarello {

namespace {

constexpr std::int32_t SetupBeats = 8;
/// The setup's own messages stand up to here, ticks. They are found again even where the time base is
/// so coarse that eight beats end before, and do not pile up.
constexpr std::int32_t LatestSetupTick = 200;

/// Track of the sysexes in a format 0 file that was split by channel: channel 10's.
constexpr std::int32_t SplitSysexTrack = 10;
constexpr std::int32_t TempoTrack = 0;
constexpr std::int32_t FirstMusicTrack = 1;

bool InListOrder(const TSourceSysex& a, const TSourceSysex& b) noexcept {
  return a.Track != b.Track ? a.Track < b.Track : a.Event->Position < b.Event->Position;
}

}  // namespace

SongSysexs::SongSysexs(Song& s, const Options& o, std::vector<TSourceSysex>& list)
    : song(s),
      options(o),
      all(list),
      searchLimit(std::max(s.SourceTimeBase * SetupBeats, LatestSetupTick)) {
  if (!std::is_sorted(all.begin(), all.end(), InListOrder))
    std::stable_sort(all.begin(), all.end(), InListOrder);
}

PtrMidiEvent SongSysexs::StartFor(std::int32_t track, std::int32_t position) const {
  // The setup is built in front of whatever stands at the song's start, which may be a million events
  // of one tick: the search goes on from the nearest event that was placed before.
  PtrMidiEvent best = nullptr;
  for (const Placed& p : placed)
    if (p.Sysex.Track == track && p.Sysex.Event->Position <= position &&
        (best == nullptr || best->Position <= p.Sysex.Event->Position))
      best = p.Sysex.Event;
  return best;
}

PtrMidiEvent SongSysexs::Place(std::span<const std::uint8_t> bytes, std::int32_t position) {
  PtrMidiEvent node = NewSysex(song.Pool, bytes, position);
  InsertByPosition(song.MidiTrack[static_cast<std::size_t>(song.SysexTrack)], node,
                   StartFor(song.SysexTrack, position));
  return node;
}

PtrMidiEvent SongSysexs::Insert(std::span<const std::uint8_t> bytes, std::int32_t position,
                                const Reason& why) {
  PtrMidiEvent node = Place(bytes, position);
  placed.push_back({{song.SysexTrack, node}, &why, true, song.SysexTrack, node->Position});
  return node;
}

PtrMidiEvent SongSysexs::InsertPlaceholder(std::span<const std::uint8_t> bytes, std::int32_t position) {
  PtrMidiEvent node = Place(bytes, position);
  MarkRemoved(node);
  placed.push_back({{song.SysexTrack, node}, nullptr, true, song.SysexTrack, node->Position});
  return node;
}

PtrMidiEvent SongSysexs::InsertInstead(const TSourceSysex& former, std::span<const std::uint8_t> bytes,
                                       std::int32_t position, const Reason& why) {
  PtrMidiEvent node = Place(bytes, position);
  placed.push_back({{song.SysexTrack, node}, &why, false, former.Track, former.Event->Position});
  return node;
}

void SongSysexs::Drop(const TSourceSysex& sysex, const Reason& why) {
  LogChange(song, ChangeKind::Dropped, sysex.Track, *sysex.Event, why.German, why.English);
  MarkRemoved(sysex.Event);
}

void SongSysexs::Move(const TSourceSysex& sysex, std::int32_t position, const Reason& why) {
  const TSourceSysex moved = sysex;
  const std::int32_t from = moved.Event->Position;
  MoveTo(TrackOf(moved), moved.Event, position);
  placed.push_back({moved, &why, false, moved.Track, from});
  std::erase_if(all, [&](const TSourceSysex& s) { return s.Event == moved.Event; });
}

std::int32_t SongSysexs::UsableTrack(std::int32_t track) const {
  const auto heldOut = [&](std::int32_t t) {
    return song.MidiTrack[static_cast<std::size_t>(t)].TrkIgnore;
  };
  if (track < song.NumberOfSourceTracks && !heldOut(track)) return track;
  // On a track that is held out nothing would find the message again when the song is next opened.
  for (std::int32_t t = FirstMusicTrack; t < song.NumberOfSourceTracks; ++t)
    if (!heldOut(t)) return t;
  return TempoTrack;
}

void SongSysexs::ChooseSysexTrack(bool followDrums) {
  const std::int32_t byFormat = song.MidiFileFormat == 0 ? TempoTrack : FirstMusicTrack;
  std::int32_t track = byFormat;
  if (song.NumberOfSourceTracks < 2) {
    track = TempoTrack;
  } else if (followDrums && options.SpecialD) {
    const int drums = TrackOfChannel(song, 9);
    if (drums >= 0) track = drums;
  } else if (song.MidiFileOrgFormat != 0) {
    if (song.SysexFoundOnTrack >= 0) track = song.SysexFoundOnTrack;
  } else if (song.MidiFileFormat != 0) {
    track = SplitSysexTrack;
  }
  song.SysexTrack = UsableTrack(track);
}

void SongSysexs::Close() {
  std::erase_if(all, [](const TSourceSysex& s) { return s.Event->Command != Sysex; });
  const auto former = static_cast<std::ptrdiff_t>(all.size());
  for (const Placed& p : placed) all.push_back(p.Sysex);
  // Placed events stand behind all others of their tick, the later placed the later.
  std::stable_sort(all.begin() + former, all.end(), InListOrder);
  std::inplace_merge(all.begin(), all.begin() + former, all.end(), InListOrder);
  LeaveTempoTrack();
  TellPlaced();
}

void SongSysexs::LeaveTempoTrack() {
  if (song.MidiFileFormat == 0 || song.NumberOfSourceTracks < 2) return;
  TMyTrack& source = song.MidiTrack[TempoTrack];
  TMyTrack& target = song.MidiTrack[FirstMusicTrack];
  if (source.TrkIgnore || target.TrkIgnore) return;

  static constexpr Reason why = {"Sysex gehört nicht auf die Tempospur",
                                 "sysex does not belong on the tempo track"};
  const auto trackIs = [](std::int32_t track) {
    return [track](const TSourceSysex& s) { return s.Track <= track; };
  };
  const auto behind = std::partition_point(all.begin(), all.end(), trackIs(TempoTrack));
  const auto last = std::partition_point(behind, all.end(), trackIs(FirstMusicTrack));
  PtrMidiEvent from = nullptr;
  for (auto sysex = all.begin(); sysex != behind; ++sysex) {
    Unlink(source, sysex->Event);
    InsertByPosition(target, sysex->Event, from);
    from = sysex->Event;
    sysex->Track = FirstMusicTrack;
    if (song.Changes == nullptr || sysex->Event->IsRemoved()) continue;
    const bool told =
        std::ranges::any_of(placed, [&](const Placed& p) { return p.Sysex.Event == sysex->Event; });
    if (!told)
      LogMove(song, FirstMusicTrack, *sysex->Event, sysex->Event->Position, why.German, why.English);
  }
  // The moved ones stand behind those that track 1 had at the same tick.
  const auto own = std::rotate(all.begin(), behind, last);
  std::inplace_merge(all.begin(), own, last, InListOrder);

  for (Placed& p : placed)
    if (p.Sysex.Track == TempoTrack) p.Sysex.Track = FirstMusicTrack;
  for (std::int32_t* track : {&song.SysexTrack, &song.RolandDelaySysexTrack, &song.RolandInsFxOnTrack})
    if (*track == TempoTrack) *track = FirstMusicTrack;
}

void SongSysexs::TellPlaced() {
  if (song.Changes == nullptr) return;
  for (const Placed& p : placed) {
    const TypMidiEvent& event = *p.Sysex.Event;
    if (p.Why == nullptr) continue;
    if (p.New)
      LogChange(song, ChangeKind::Inserted, p.Sysex.Track, event, p.Why->German, p.Why->English);
    else if (p.OldTrack != p.Sysex.Track || p.OldPosition != event.Position)
      LogMove(song, p.Sysex.Track, event, p.OldPosition, p.Why->German, p.Why->English);
  }
}

}  // namespace Sonarello
