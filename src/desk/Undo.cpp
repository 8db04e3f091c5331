#include "desk/Undo.h"

#include <algorithm>
#include <limits>
#include <new>
#include <span>
#include <unordered_map>
#include <utility>

#include "core/EventList.h"
#include "core/Texts.h"
#include "core/TimeMap.h"
#include "playback/LiveTempo.h"

namespace Sonarello {

namespace {

constexpr std::int32_t AllTracks = -1;
/// `DLength` of nodes that are about to be freed, so that references to them are told from others.
constexpr std::int32_t Doomed = std::numeric_limits<std::int32_t>::min();

/// Calls f(PtrMidiEvent&) for each reference of the song but those of key signatures, whose number may
/// change: the others come in the same order and number every time.
template <class F>
void ForEachFixedReference(Song& song, F&& f) {
  std::vector<TKeySignArray> keys;
  keys.swap(song.KeySignArray);
  song.ForEachReference(f);
  keys.swap(song.KeySignArray);
}

void Call(const std::function<void()>& hook) {
  if (hook) hook();
}

void ReleaseList(EventPool& pool, PtrMidiEvent first) noexcept {
  while (first != nullptr) {
    const PtrMidiEvent next = first->NextEvent;
    pool.Release(first);
    first = next;
  }
}

void Doom(PtrMidiEvent first) noexcept {
  for (PtrMidiEvent e = first; e != nullptr; e = Following(e)) e->DLength = Doomed;
}

bool IsDoomed(PtrMidiEvent e) noexcept { return e != nullptr && e->DLength == Doomed; }

}  // namespace

/// A backup in the making: it frees its nodes unless it is taken over.
class TUndo::TBackup {
 public:
  explicit TBackup(Song& s) : song(s) {}
  TBackup(const TBackup&) = delete;
  TBackup& operator=(const TBackup&) = delete;
  ~TBackup() {
    ReleaseList(song.Pool, MidiTrackBackup.TrkFirstEvent);
    for (const TBackupTrack& track : Tracks) ReleaseList(song.Pool, track.TrkFirstEvent);
  }

  /// Copies the tracks from `first` up to `last`. Raises EMidiError or std::bad_alloc.
  void Copy(std::size_t first, std::size_t last) {
    CollectReferenced();
    std::size_t events = 0;
    for (std::size_t t = first; t < last; ++t)
      events += static_cast<std::size_t>(std::max(0, song.MidiTrack[t].TrkEventCounter));
    song.Pool.Reserve(events);
    Tracks.reserve(last - first);
    for (std::size_t t = first; t < last; ++t) CopyTrack(song.MidiTrack[t]);
    CopySong();
  }

  TMyTrack MidiTrackBackup;          ///< the copy that is in work
  std::vector<TBackupTrack> Tracks;  ///< those that are complete
  TBackupSong Rest;

 private:
  void CollectReferenced() {
    const auto collect = [this](PtrMidiEvent e) {
      if (e != nullptr) copies.emplace(e, nullptr);
    };
    song.ForEachReference(collect);
    for (const TMyTrack& track : song.MidiTrack) {
      collect(track.TrkPlayEvent);
      collect(track.TrkLoopStart);
    }
  }

  void CopyTrack(const TMyTrack& track) {
    TBackupTrack copied;
    copied.TrkName = track.TrkName;
    for (PtrMidiEvent e = track.TrkFirstEvent; e != nullptr; e = Following(e)) {
      const PtrMidiEvent copy = NewCopy(song.Pool, *e);
      if (MidiTrackBackup.TrkFirstEvent == nullptr) {
        MidiTrackBackup.TrkFirstEvent = MidiTrackBackup.TrkLastEvent = copy;
        MidiTrackBackup.TrkEventCounter = 1;
      } else {
        Append(MidiTrackBackup, copy);
      }
      if (const auto found = copies.find(e); found != copies.end()) found->second = copy;
    }
    copied.TrkFirstEvent = std::exchange(MidiTrackBackup.TrkFirstEvent, nullptr);
    copied.TrkLastEvent = std::exchange(MidiTrackBackup.TrkLastEvent, nullptr);
    copied.TrkEventCounter = std::exchange(MidiTrackBackup.TrkEventCounter, 0);
    copied.TrkPlayEvent = CopyOf(track.TrkPlayEvent).value_or(nullptr);
    copied.TrkLoopStart = CopyOf(track.TrkLoopStart).value_or(nullptr);
    copied.TrkDelay = track.TrkDelay;
    copied.TrkListIndex = track.TrkListIndex;
    copied.TrkNoteOnCnt = track.TrkNoteOnCnt;
    copied.TrkMidiIndex = track.TrkMidiIndex;
    copied.TrkPatchNumber = track.TrkPatchNumber;
    copied.TrkIgnore = track.TrkIgnore;
    Tracks.push_back(std::move(copied));
  }

  [[nodiscard]] std::optional<PtrMidiEvent> CopyOf(PtrMidiEvent e) const {
    if (e == nullptr) return PtrMidiEvent{nullptr};
    const auto found = copies.find(e);
    if (found == copies.end() || found->second == nullptr) return std::nullopt;
    return found->second;
  }

  void CopySong() {
    Rest.Tracks = song.MidiTrack.size();
    Rest.KeySignArray = song.KeySignArray;
    for (TKeySignArray& keys : Rest.KeySignArray)
      for (TKeySigns& key : keys.ValArray) key.MidiEvent = CopyOf(key.MidiEvent).value_or(nullptr);
    // Counted first: inside the walk nothing may fail while the key signatures are out of the song.
    std::size_t count = 0;
    ForEachFixedReference(song, [&](PtrMidiEvent&) { ++count; });
    Rest.References.reserve(count);
    ForEachFixedReference(song, [&](PtrMidiEvent& e) { Rest.References.push_back(CopyOf(e)); });
    Rest.CountInArray = song.CountInArray;
    Rest.SourceTempo = song.SourceTempo;
    Rest.TimeSignature = song.TimeSignature;
    Rest.BackupTempo = song.BackupTempo;
    Rest.NotesVelocities = song.NotesVelocities;
    for (std::size_t c = 0; c < ChannelCount; ++c) {
      Rest.Active[c] = song.MidiData[c].Active;
      Rest.ActiveNotes[c] = song.MidiData[c].ActiveNotes;
    }
    Rest.ManualTransposeArray = song.ManualTransposeArray;
    Rest.TransposeNew = song.TransposeNew;
    Rest.MaxSongPosition = song.MaxSongPosition;
    Rest.TickPositionOfFirstNote = song.TickPositionOfFirstNote;
    Rest.TickOrgPosOfFirstNote = song.TickOrgPosOfFirstNote;
    Rest.CountInIdx = song.CountInIdx;
    Rest.SysexTrack = song.SysexTrack;
    Rest.SysexFoundOnTrack = song.SysexFoundOnTrack;
    Rest.XF_Track = song.XF_Track;
    Rest.XF_ChordsArrayElements = song.XF_ChordsArrayElements;
    Rest.XF_Format = song.XF_Format;
    Rest.RolandDelaySysexTrack = song.RolandDelaySysexTrack;
    Rest.RolandInsFxOnTrack = song.RolandInsFxOnTrack;
  }

  Song& song;
  /// From an event that something outside the lists points at to its copy.
  std::unordered_map<const TypMidiEvent*, PtrMidiEvent> copies;
};

// --- Taking a backup

void TUndo::BeginRangeCommand(TUndoKind kind, std::string_view name) {
  Begin(kind, std::string(name), AllTracks);
}

void TUndo::BeginRecording(std::int32_t track, int channel) {
  const std::string number = std::to_string(channel);
  Begin(TUndoKind::Recording,
        Text("Aufnahme auf MIDI Kanal " + number, "Recording on midi channel " + number), track);
}

void TUndo::Begin(TUndoKind kind, std::string name, std::int32_t track) {
  TBackup backup(song);
  try {
    const auto held = gate.Enter();
    const auto first = static_cast<std::size_t>(track == AllTracks ? 0 : track);
    const auto last =
        track == AllTracks ? static_cast<std::size_t>(song.NumberOfSourceTracks) : first + 1;
    backup.Copy(first, last);
    backup.Rest.TempoOffset = TempoOffset();
  } catch (const std::bad_alloc&) {
    throw EMidiError(OutOfMemoryText());
  }
  FreeBackup();
  if (track == AllTracks) {
    BackupMidiTrack.swap(backup.Tracks);
  } else {
    RecBackupTrack = std::move(backup.Tracks.front());
    RecBackupTrackIndex = track;
    backup.Tracks.clear();
  }
  kept = std::move(backup.Rest);
  ShowMenu(kind, std::move(name));
}

void TUndo::FreeBackup() noexcept {
  for (const TBackupTrack& track : BackupMidiTrack) ReleaseList(song.Pool, track.TrkFirstEvent);
  if (RecBackupTrackIndex >= 0) ReleaseList(song.Pool, RecBackupTrack.TrkFirstEvent);
  BackupMidiTrack.clear();
  RecBackupTrack = {};
  RecBackupTrackIndex = -1;
}

void TUndo::Discard() {
  FreeBackup();
  kept = {};
  ShowMenu(TUndoKind::None, {});
}

void TUndo::Forget() {
  BackupMidiTrack.clear();
  RecBackupTrack = {};
  RecBackupTrackIndex = -1;
  kept = {};
  ShowMenu(TUndoKind::None, {});
}

// --- The menu

void TUndo::ShowMenu(TUndoKind kind, std::string name) {
  tag = kind;
  command = std::move(name);
  Call(Hooks.MenuChanged);
}

std::string TUndo::MenuText() const {
  const std::string word = Text("Rückgängig", "Undo");
  return IsEnabled() ? word + " - " + command : word;
}

std::string TUndo::CommandName() const { return command; }

std::string TUndo::Question() const {
  return Text("Soll der Befehl \"" + command + "\" rückgängig gemacht werden?",
              "Undo the command \"" + command + "\"?");
}

// --- Undo

bool TUndo::Undo() {
  if (!IsEnabled()) return false;
  if (Hooks.IsPlaying && Hooks.IsPlaying()) Call(Hooks.StopButtonClick);
  if (!messages.Ask(Question())) return false;
  Revert();
  return true;
}

void TUndo::Revert() {
  if (!IsEnabled()) return;
  try {
    Restore();
  } catch (const std::bad_alloc&) {
    messages.Show(OutOfMemoryText());
  }
}

std::int32_t TUndo::TempoOffset() const { return Hooks.TempoOffset ? Hooks.TempoOffset() : 0; }

void TUndo::Restore() {
  MakeRoom();
  const bool transposed =
      kept.TransposeNew != song.TransposeNew || kept.ManualTransposeArray != song.ManualTransposeArray;
  ShowMenu(TUndoKind::None, {});
  {
    const auto held = gate.Enter();
    RestoreReferences();
    RestoreTracks();
    RestoreSong();
  }
  Call(Hooks.MoveToStart);
  bool paired = false;
  {
    const auto held = gate.Enter();
    RestoreTimes();
    functions.SetFirstValues();
    paired = PairNotes();
  }
  kept = {};
  if (transposed) Call(Hooks.Transpose);
  Call(Hooks.ReadAndShowLyrics);
  if (!paired)
    messages.Show(Text("Fehler beim Berechnen der NoteOnOff-Pointer.",
                       "Error processing the NoteOnOff pointers."));
  Call(Hooks.UpdateKeyEditor);
  Call(Hooks.UpdateEventList);
  Call(Hooks.ResetLyrics);
  Call(Hooks.Changed);
}

/// What may fail for want of memory comes before the first change.
void TUndo::MakeRoom() {
  song.MidiTrack.reserve(kept.Tracks);
  song.KeySignArray.reserve(kept.KeySignArray.size());
}

/// References get the copies of what they pointed at. Of one track alone, only those that point into it
/// or did so are touched.
void TUndo::RestoreReferences() noexcept {
  const bool all = RecBackupTrackIndex < 0;
  if (all) {
    for (const TMyTrack& track : song.MidiTrack) Doom(track.TrkFirstEvent);
    song.CountInArray = kept.CountInArray;
    song.KeySignArray = std::move(kept.KeySignArray);
  } else {
    const auto t = static_cast<std::size_t>(RecBackupTrackIndex);
    Doom(song.MidiTrack[t].TrkFirstEvent);
    if (t < song.KeySignArray.size() && t < kept.KeySignArray.size())
      song.KeySignArray[t] = std::move(kept.KeySignArray[t]);
  }
  std::size_t n = 0;
  ForEachFixedReference(song, [&](PtrMidiEvent& e) {
    const std::optional<PtrMidiEvent>& copy = kept.References[n++];
    if (copy.has_value() && (all || *copy != nullptr))
      e = *copy;
    else if (IsDoomed(e))
      e = nullptr;
  });
}

namespace {

void PutBack(TMyTrack& track, TBackupTrack& kept) noexcept {
  track.TrkDelay = kept.TrkDelay;
  track.TrkEventCounter = kept.TrkEventCounter;
  track.TrkFirstEvent = kept.TrkFirstEvent;
  track.TrkLastEvent = kept.TrkLastEvent;
  track.TrkPlayEvent = kept.TrkPlayEvent != nullptr ? kept.TrkPlayEvent : kept.TrkFirstEvent;
  track.TrkLoopStart = kept.TrkLoopStart != nullptr ? kept.TrkLoopStart : kept.TrkFirstEvent;
  track.TrkListIndex = kept.TrkListIndex;
  track.TrkNoteOnCnt = kept.TrkNoteOnCnt;
  track.TrkMidiIndex = kept.TrkMidiIndex;
  track.TrkPatchNumber = kept.TrkPatchNumber;
  track.TrkIgnore = kept.TrkIgnore;
  track.TrkName = std::move(kept.TrkName);
  track.TrkCopyRDest = track.TrkCopyRFirst = track.TrkCopyRLast = nullptr;
  track.TrkCopyRDestArr.reset();
  track.TrkCopyRFirstArr.reset();
  track.TrkCopyRLastArr.reset();
}

}  // namespace

void TUndo::RestoreTracks() noexcept {
  if (RecBackupTrackIndex >= 0) {
    TMyTrack& track = song.MidiTrack[static_cast<std::size_t>(RecBackupTrackIndex)];
    ReleaseList(song.Pool, track.TrkFirstEvent);
    PutBack(track, RecBackupTrack);
  } else {
    for (const TMyTrack& track : song.MidiTrack) ReleaseList(song.Pool, track.TrkFirstEvent);
    song.MidiTrack.resize(kept.Tracks);
    for (std::size_t t = 0; t < song.MidiTrack.size(); ++t) {
      TBackupTrack nothing;
      PutBack(song.MidiTrack[t], t < BackupMidiTrack.size() ? BackupMidiTrack[t] : nothing);
    }
    song.NumberOfSourceTracks = static_cast<std::int32_t>(BackupMidiTrack.size());
  }
  functions.SourceSysexes.clear();  // they were the file's
  // The copies are the song's own now.
  BackupMidiTrack.clear();
  RecBackupTrack = {};
}

void TUndo::RestoreSong() noexcept {
  const bool all = RecBackupTrackIndex < 0;
  RecBackupTrackIndex = -1;
  for (std::size_t c = 0; c < ChannelCount; ++c) {
    song.MidiData[c].Active = kept.Active[c];
    song.MidiData[c].ActiveNotes = kept.ActiveNotes[c];
    // The range that velocities are mapped to is the desk's, not the tool's.
    TNotesVelocities& velocities = song.NotesVelocities[c];
    velocities.Minimum = kept.NotesVelocities[c].Minimum;
    velocities.Maximum = kept.NotesVelocities[c].Maximum;
    velocities.Mean = kept.NotesVelocities[c].Mean;
  }
  if (!all) return RestoreEnd();
  song.MaxSongPosition = kept.MaxSongPosition;
  song.TickPositionOfFirstNote = kept.TickPositionOfFirstNote;
  song.TickOrgPosOfFirstNote = kept.TickOrgPosOfFirstNote;
  song.CountInIdx = kept.CountInIdx;
  song.SysexTrack = kept.SysexTrack;
  song.SysexFoundOnTrack = kept.SysexFoundOnTrack;
  song.XF_Track = kept.XF_Track;
  song.XF_ChordsArrayElements = kept.XF_ChordsArrayElements;
  song.XF_Format = kept.XF_Format;
  song.RolandDelaySysexTrack = kept.RolandDelaySysexTrack;
  song.RolandInsFxOnTrack = kept.RolandInsFxOnTrack;
}

/// A recording may have made the song longer: it ends where it did unless another track reaches further
/// by now.
void TUndo::RestoreEnd() noexcept {
  std::int32_t end = kept.MaxSongPosition;
  const auto tracks =
      std::span(song.MidiTrack).first(static_cast<std::size_t>(song.NumberOfSourceTracks));
  for (const TMyTrack& track : tracks)
    if (const PtrMidiEvent last = track.TrkLastEvent->PrevEvent; last != nullptr)
      end = std::max(end, last->Position);
  song.MaxSongPosition = end;
  for (const TMyTrack& track : tracks) track.TrkLastEvent->Position = end;
}

namespace {

bool SameTempi(const std::vector<TTempo>& a, const std::vector<TTempo>& b) {
  return std::ranges::equal(a, b, [](const TTempo& x, const TTempo& y) {
    return x.SongPosition == y.SongPosition && x.TempoLongInt == y.TempoLongInt;
  });
}

bool SameSignatures(const std::vector<TTimeSign>& a, const std::vector<TTimeSign>& b) {
  return std::ranges::equal(a, b, [](const TTimeSign& x, const TTimeSign& y) {
    return x.SongPosition == y.SongPosition && x.Numerator == y.Numerator &&
           x.Denominator == y.Denominator;
  });
}

}  // namespace

/// The time map is built from the events that came back. Metas that did not count for it when the
/// backup was taken, such as a tempo behind the first track, do not count afterwards either.
void TUndo::RestoreTimes() {
  functions.UpdateTimeZoneData();
  const bool same = SameTempi(song.SourceTempo, kept.SourceTempo) &&
                    SameSignatures(song.TimeSignature, kept.TimeSignature);
  song.SourceTempo = std::move(kept.SourceTempo);
  song.TimeSignature = std::move(kept.TimeSignature);
  song.BackupTempo = std::move(kept.BackupTempo);
  if (!same) {
    functions.SetTimeZones();
    functions.SetTimePositions();
    EndTimeZonesBehindSong(song);
  }
  // The tempi that came back are those with the offset of then.
  if (const std::int32_t offset = TempoOffset(); offset != kept.TempoOffset)
    ApplyTempoOffset(song, functions, offset, TempoNumbering::Stopped);
}

bool TUndo::PairNotes() {
  const std::int32_t tracks =
      song.MidiFileFormat == 0 ? std::min(song.NumberOfSourceTracks, 1) : song.NumberOfSourceTracks;
  bool paired = true;
  for (std::int32_t t = 0; t < tracks; ++t) {
    const TMyTrack& track = song.MidiTrack[static_cast<std::size_t>(t)];
    if (!track.TrkIgnore && !TMidiFunctions::SetNoteOnOffPointers(track.TrkFirstEvent)) paired = false;
  }
  return paired;
}

}  // namespace Sonarello
